#include <tov/allocator/Allocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/FileInputOutput.h>
#include <tov/utils/FileUtils.h>
#include <tov/utils/JsonObjectBuilder.h>
#include <tov/utils/JsonSerialization.h>

#include "support/MemoryText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

using namespace tov::utils;
using tov::testing::memoryWith;
using tov::testing::textOf;

namespace {

std::string toJson(const DynamicObject& object, AbstractLogger* logger = nullptr)
{
    tov::utils::MemoryInputOutput out;
    EXPECT_TRUE(serializeDynamicObjectToJson(object, out, logger));
    return textOf(out);
}

std::string reparse(const std::string& text, AbstractLogger* logger = nullptr)
{
    DynamicObject object;
    tov::utils::MemoryInputOutput in = memoryWith(text);
    EXPECT_TRUE(deserializeDynamicObjectFromJson(object, in, logger));
    return toJson(object, logger);
}

std::string lastMessage(const BufferLogger& log)
{
    return log.getMessages().empty() ? std::string() : log.getMessages().back().message.c_str();
}

} // namespace

TEST(JsonRoundTrip, TextToObjectToTextKeepsEveryValueKindAndGivesEveryBlockBack)
{
    // Members come back in the order of their names' bytes; empty containers take no type and come
    // back null; a whole real keeps ".0"; reals are written with all the digits of "%.20g".
    struct Case {
        const char* input;
        const char* output;
    };
    const Case cases[] = {
        {R"({"a":1,"b":true,"c":false,"d":null,"e":"text"})", R"({"a":1,"b":true,"c":false,"d":null,"e":"text"})"},
        {R"({"z":1,"a":2,"M":3})", R"({"M":3,"a":2,"z":1})"},
        {R"([1,[2,[3,[4]]],{"k":[{"x":-1}]}])", R"([1,[2,[3,[4]]],{"k":[{"x":-1}]}])"},
        {R"({"max":9223372036854775807,"min":-9223372036854775807})",
         R"({"max":9223372036854775807,"min":-9223372036854775807})"},
        // yajl reads -2^63 as an overflow and stops there, so the member stays null.
        {R"({"least":-9223372036854775808})", R"({"least":null})"},
        {R"([1.0,0.5,-2.25,1e300,100.0])", R"([1.0,0.5,-2.25,1.0000000000000000525e+300,100.0])"},
        {R"([0.1])", R"([0.10000000000000000555])"},
        {R"({"empty":{},"list":[],"null":null})", R"({"empty":null,"list":null,"null":null})"},
        {R"({"unicode":"h\u00e9llo \u6f22\u5b57 \ud83d\ude00","raw":"é"})",
         "{\"raw\":\"\xc3\xa9\",\"unicode\":\"h\xc3\xa9llo \xe6\xbc\xa2\xe5\xad\x97 \xf0\x9f\x98\x80\"}"},
        {R"({"escapes":"quote \" backslash \\ tab \t newline \n"})",
         R"({"escapes":"quote \" backslash \\ tab \t newline \n"})"},
        {R"({})", R"({})"},
        {R"([])", R"({})"},
        {R"({"agents":[{"name":"forager","energy":0.75,"target":[1,2]}],"tick":42})",
         R"({"agents":[{"energy":0.75,"name":"forager","target":[1,2]}],"tick":42})"},
    };
    // Parsing and writing give every block back.
    const unsigned long long liveBlocks = tov::allocator::Allocator::instance().getLiveBlocks();
    for (const Case& c : cases) {
        BufferLogger log(false, false, false);
        const std::string written = reparse(c.input, &log);
        EXPECT_EQ(c.output, written) << c.input;
        EXPECT_EQ(written, reparse(written)) << "not a fixed point: " << written;
        EXPECT_FALSE(log.hasErrors()) << c.input << ": " << lastMessage(log);
    }
    EXPECT_EQ(liveBlocks, tov::allocator::Allocator::instance().getLiveBlocks());
}

TEST(JsonRoundTrip, ANameThatExtendsASiblingObjectsNameShowsInsideIt)
{
    // "a-c" extends "a" by a character below ".", so the walk of "a", bounded by trie links, meets it
    // as "-c"; and the root's walk reaches "a.x" by the path that does not count levels. Kept as it is.
    EXPECT_EQ(R"({"a":{"-c":2,"x":1},"a-c":2,"a.x":1})", reparse(R"({"a":{"x":1},"a-c":2})"));
}

TEST(JsonParsing, AKeyTheObjectRefusesCancelsTheParseButNotTheResult)
{
    DynamicObject object;
    BufferLogger log(false, false, false);
    tov::utils::MemoryInputOutput in(R"({"ok":1,"a.b":2,"after":3})");
    EXPECT_TRUE(deserializeDynamicObjectFromJson(object, in, &log));
    EXPECT_EQ(1, object.getInt("ok"));
    EXPECT_FALSE(object.hasProperty("after"));
    EXPECT_EQ("Unable to create a child named a.b to the current property, invalid character '.' found.",
              lastMessage(log));
}

TEST(JsonParsing, MalformedAndHostileTextsEndCleanly)
{
    const unsigned long long liveBlocks = tov::allocator::Allocator::instance().getLiveBlocks();
    const std::string deep(100000, '[');
    const char* texts[] = {"", "{", "}", "[1,", "{\"a\":}", "nul", "[\"\\ud800\"]", "\x01\x02", "{\"a\":1}}"};
    for (const char* text : texts) {
        DynamicObject object;
        tov::utils::MemoryInputOutput in = memoryWith(text);
        EXPECT_TRUE(deserializeDynamicObjectFromJson(object, in, nullptr)) << text;
    }
    {
        DynamicObject object;
        BufferLogger log(false, false, false);
        tov::utils::MemoryInputOutput in = memoryWith(deep);
        EXPECT_TRUE(deserializeDynamicObjectFromJson(object, in, &log));
        EXPECT_EQ("The JSON document is nested deeper than 128 levels.", lastMessage(log));
    }
    EXPECT_EQ(liveBlocks, tov::allocator::Allocator::instance().getLiveBlocks());
}

TEST(JsonParsing, AFileStreamEndsTheReadAtTheEndOfTheFile)
{
    char path[] = "/tmp/tov_json_XXXXXX";
    const int descriptor = mkstemp(path);
    ASSERT_GE(descriptor, 0);
    const std::string text = R"({"padding":")" + std::string(600, 'p') + R"(","value":7})";
    ASSERT_TRUE(saveToFile(path, text.data(), static_cast<unsigned int>(text.size())));
    FileInputOutput file(path);
    ASSERT_TRUE(file.openForReading());
    DynamicObject object;
    EXPECT_TRUE(deserializeDynamicObjectFromJson(object, file, nullptr)); // returns: no endless loop
    EXPECT_EQ(7, object.getInt("value"));
    std::remove(path);
}

TEST(JsonObjectBuilder, FramesDocumentsRefusesMisuseAndBeautifiesWithFourBlanks)
{
    tov::utils::MemoryInputOutput out;
    BufferLogger log(false, false, false);
    JsonObjectBuilder json(out, false);
    json.setLogger(&log);
    EXPECT_FALSE(json.end());
    EXPECT_EQ("The Json building was already ended or has never begun.", lastMessage(log));
    ASSERT_TRUE(json.begin());
    EXPECT_FALSE(json.begin());
    EXPECT_EQ("The Json building has already begun", lastMessage(log));
    EXPECT_FALSE(json.integer(3));
    EXPECT_EQ("Expected object or array", lastMessage(log));
    EXPECT_TRUE(json.beginArray()); // the first build is still alive
    EXPECT_TRUE(json.arrayChild() && json.real(1) && json.real(-0.5) && json.string("a\"b"));
    EXPECT_FALSE(json.real(std::nan("")));
    EXPECT_EQ(0u, lastMessage(log).find("Invalid real value passed: "));
    EXPECT_EQ(error::invalidArgument, log.getMessages().back().errorType);
    EXPECT_TRUE(json.beginObject());
    EXPECT_FALSE(json.integer(1)); // a number where a key belongs
    EXPECT_EQ("No current property", lastMessage(log));
    EXPECT_TRUE(json.endObject());
    EXPECT_TRUE(json.end()); // the array is left open: end does not look

    EXPECT_TRUE(json.begin());
    EXPECT_TRUE(json.beginArray());
    EXPECT_TRUE(json.endArray());
    EXPECT_FALSE(json.endArray()); // nothing left to close
    EXPECT_EQ("Unexpected YAJL returned status: yajl_gen_generation_complete", lastMessage(log));
    EXPECT_TRUE(json.end());
    EXPECT_FALSE(json.end());

    ASSERT_TRUE(json.begin()); // a second document on the same stream
    EXPECT_TRUE(json.null());  // a null document is an empty object
    EXPECT_TRUE(json.end());
    EXPECT_EQ(R"([1.0,-0.5,"a\"b",{}[]{})", out.getText());

    // The beautified form indents with four blanks.
    DynamicObject object;
    object.setInt("a", 1);
    tov::utils::MemoryInputOutput beautified;
    JsonObjectBuilder indenting(beautified, true);
    ASSERT_TRUE(serializeDynamicObject(object, indenting));
    EXPECT_EQ("{\n    \"a\": 1\n}\n", beautified.getText());
}
