#include <tov/allocator/Allocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectSerialization.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/Memory.h>

#include "support/MemoryText.h"

#include <gtest/gtest.h>

#include <string>

using namespace tov::utils;
using tov::testing::memoryWith;
using tov::testing::textOf;

namespace {

std::string save(const DynamicObject& object)
{
    unsigned int size = 0;
    char* buffer = serializeDynamicObject(size, object, nullptr);
    EXPECT_NE(nullptr, buffer);
    std::string text = buffer == nullptr ? std::string() : std::string(buffer, size);
    TOV_DELETE_ARRAY(buffer);
    return text;
}

bool load(const std::string& text, DynamicObject& object, AbstractLogger* logger = nullptr)
{
    return deserializeDynamicObject(text.data(), static_cast<unsigned int>(text.size()), object, logger);
}

std::string json(const DynamicObject& object)
{
    tov::utils::MemoryInputOutput out;
    EXPECT_TRUE(serializeDynamicObjectToJson(object, out, nullptr));
    return textOf(out);
}

DynamicObject fromJson(const std::string& text)
{
    DynamicObject object;
    tov::utils::MemoryInputOutput in = memoryWith(text);
    EXPECT_TRUE(deserializeDynamicObjectFromJson(object, in, nullptr));
    return object;
}

std::string lastMessage(const BufferLogger& log)
{
    return log.getMessages().empty() ? std::string() : log.getMessages().back().message.c_str();
}

const char* const versionBlock = "version {\n  major: 0\n  minor: 4\n  patch: 0\n}\n";

} // namespace

TEST(SavedForm, ObjectsComeBackEqualAndNothingButTheCallersBufferStays)
{
    const char* documents[] = {
        R"({"a":1,"b":true,"c":false,"d":null,"e":"text","f":-2.5})",
        R"({"agents":[{"name":"forager","pos":{"x":1.0,"y":-3.25}},{"name":"scout","pos":null}],"tick":42})",
        R"([[1],[2,[3]],{"deep":{"deeper":{"deepest":"h\u00e9llo"}}}])",
        R"({"max":9223372036854775807,"min":-9223372036854775808,"tiny":5e-324})",
    };
    // The saved buffer is the caller's, released by save(); nothing else stays.
    tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    const unsigned long long liveBlocks = memory.getLiveBlocks();
    for (const char* document : documents) {
        const DynamicObject original = fromJson(document);
        DynamicObject loaded;
        BufferLogger log(false, false, false);
        ASSERT_TRUE(load(save(original), loaded, &log)) << document << lastMessage(log);
        EXPECT_EQ(json(original), json(loaded)) << document;
    }
    EXPECT_EQ(liveBlocks, memory.getLiveBlocks());
}

TEST(SavedForm, StartsWithTheVersionAndSavesNullAsAnEmptyObject)
{
    DynamicObject object = fromJson(R"({"gone":null,"n":3})");
    const std::string text = save(object);
    EXPECT_EQ(0u, text.find(std::string(versionBlock) + "root {\n  type: Object\n  objectValue {\n    key: \"gone\"\n"
                                                        "    value {\n      type: Object\n    }\n  }\n"))
        << text;
    DynamicObject loaded;
    ASSERT_TRUE(load(text, loaded));
    EXPECT_TRUE(loaded.hasProperty("gone"));
    EXPECT_EQ(type::null, loaded.getType("gone"));
    EXPECT_EQ(3, loaded.getInt("n"));
}

TEST(SavedForm, ReadingChecksTheMajorVersionOnly)
{
    const std::string root = "root { type: Object objectValue { key: \"n\" value { type: Int intValue: 5 } } }";
    DynamicObject object;
    BufferLogger log(false, false, false);
    EXPECT_FALSE(load("version { major: 1 minor: 2 patch: 3 } " + root, object, &log));
    EXPECT_EQ("Error while deserializing: The file originates from a version, v1.2.3, that is not compatible with "
              "the current version, v0.4.0.",
              lastMessage(log));
    EXPECT_EQ(error::invalidData, log.getMessages().back().errorType);
    EXPECT_FALSE(object.hasProperty("n"));

    EXPECT_TRUE(load("version { major: 0 minor: 9 patch: 7 } " + root, object, &log));
    EXPECT_EQ(5, object.getInt("n"));

    EXPECT_TRUE(load("version { major: 0 minor: 4 patch: 0 }", object, &log)); // no root: unchanged
    EXPECT_EQ(5, object.getInt("n"));
}

TEST(SavedForm, DamagedTextsAreRefused)
{
    BufferLogger log(false, false, false);
    DynamicObject object;
    EXPECT_FALSE(load("root { type: Object }", object, &log)); // the version is required
    EXPECT_EQ(0u, lastMessage(log).find("Unable to deserialize a dynamic object: "));
    EXPECT_FALSE(load("version { major: 0 minor: 4 patch: 0 } root { type: Int }", object, &log));
    EXPECT_EQ(1u, log.getMessages().size()); // the replay has no logger: only the result tells
    EXPECT_FALSE(load("version { major: 0 minor: 4 patch: 0 } root { type: Object objectValue { key: \"a.b\" "
                      "value { type: Int intValue: 1 } } }",
                      object, &log));
    EXPECT_FALSE(object.hasProperty("a"));
    const char* garbage[] = {"", "version {", "\x01\x02\x03", "version { major: 0 minor: 4 patch: 0 } root { type: 9 }",
                             "version { major: 0 minor: 4 patch: 0 } root { type: Array arrayValue { type: Bool } }"};
    for (const char* text : garbage) {
        DynamicObject untouched;
        EXPECT_FALSE(load(text, untouched, nullptr)) << text;
    }
}
