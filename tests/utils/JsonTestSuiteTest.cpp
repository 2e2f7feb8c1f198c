// Every document of the public JSON parsing test suite goes through the reader: none may crash, hang or
// leak, and every accepted document with a container root whose keys a DynamicObject takes must come
// back equal when written out and read again.
#include <tov/allocator/Allocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/FileUtils.h>
#include <tov/utils/JsonSerialization.h>

#include "support/MemoryText.h"

#include <gtest/gtest.h>

#include <dirent.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

using namespace tov::utils;
using tov::testing::memoryWith;
using tov::testing::textOf;

namespace {

const std::string suiteFolder = std::string(TOV_SHARED_DATA_DIR) + "/JSONTestSuite/test_parsing";

std::vector<std::string> listDocuments()
{
    std::vector<std::string> names;
    if (DIR* folder = opendir(suiteFolder.c_str())) {
        while (const dirent* entry = readdir(folder)) {
            const std::string name = entry->d_name;
            if (name.size() > 5 && name.compare(name.size() - 5, 5, ".json") == 0) {
                names.push_back(name);
            }
        }
        closedir(folder);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string readDocument(const std::string& name)
{
    unsigned int size = 0;
    char* buffer = loadFile((suiteFolder + "/" + name).c_str(), size);
    std::string text = buffer == nullptr ? std::string() : std::string(buffer, size);
    TOV_DELETE_ARRAY(buffer);
    return text;
}

bool hasContainerRoot(const std::string& text)
{
    const auto first =
        std::find_if(text.begin(), text.end(), [](char c) { return !std::isspace(static_cast<unsigned char>(c)); });
    return first != text.end() && (*first == '{' || *first == '[');
}

std::string write(const DynamicObject& object)
{
    tov::utils::MemoryInputOutput out;
    EXPECT_TRUE(serializeDynamicObjectToJson(object, out, nullptr));
    return textOf(out);
}

} // namespace

TEST(JsonTestSuite, EveryDocumentIsReadSafelyAndAcceptedOnesRoundTrip)
{
    const std::vector<std::string> names = listDocuments();
    if (names.empty()) {
        GTEST_SKIP() << "the JSON test suite is not at " << suiteFolder;
    }
    tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    unsigned int read = 0, roundTrips = 0, refusedKeys = 0, scalarRoots = 0;
    for (const std::string& name : names) {
        const std::string text = readDocument(name);
        const unsigned long long liveBlocks = memory.getLiveBlocks();
        const unsigned long long liveBytes = memory.getLiveBytes();
        {
            DynamicObject object;
            BufferLogger log(false, false, false);
            tov::utils::MemoryInputOutput in = memoryWith(text);
            ASSERT_TRUE(deserializeDynamicObjectFromJson(object, in, &log)) << name;
            ++read;
            if (name[0] == 'y') {
                if (!hasContainerRoot(text)) {
                    ++scalarRoots;
                } else if (log.hasErrors()) {
                    ++refusedKeys; // a key with path syntax, which a DynamicObject does not take
                } else {
                    const std::string written = write(object);
                    DynamicObject again;
                    tov::utils::MemoryInputOutput second = memoryWith(written);
                    ASSERT_TRUE(deserializeDynamicObjectFromJson(again, second, &log)) << name;
                    EXPECT_FALSE(log.hasErrors()) << name;
                    EXPECT_EQ(written, write(again)) << name;
                    ++roundTrips;
                }
            }
        }
        EXPECT_EQ(liveBlocks, memory.getLiveBlocks()) << name << " leaked";
        EXPECT_EQ(liveBytes, memory.getLiveBytes()) << name << " leaked";
    }
    std::printf("JSON test suite: %u documents read, %u accepted documents round-tripped, %u skipped for keys, "
                "%u for a scalar root\n",
                read, roundTrips, refusedKeys, scalarRoots);
}
