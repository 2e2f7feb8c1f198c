#include "apps/inspect/JsonText.h"
#include "apps/inspect/Tables.h"

#include <tov/utils/DynamicObject.h>

#include <gtest/gtest.h>

#include <sstream>

namespace tov {
namespace inspect {
namespace {

TEST(JsonTextTest, IndentsOneMemberALineAndKeepsTheOrderOfTheReply)
{
    const std::pair<std::string, std::string> cases[] = {
        {"{\"z\":1,\"a\":[true,null,\"x\"]}", "{\n  \"z\": 1,\n  \"a\": [\n    true,\n    null,\n    \"x\"\n  ]\n}"},
        {"[{},[],{\"e\":{}}]", "[\n  {},\n  [],\n  {\n    \"e\": {}\n  }\n]"},
        {"[0.1,2.0,-1.5e300,7]", "[\n  0.1,\n  2.0,\n  -1.5e+300,\n  7\n]"},
        {"{\"q\\\"\\\\\\n\\u0001\":\"\\t\"}", "{\n  \"q\\\"\\\\\\n\\u0001\": \"\\t\"\n}"},
        {"  {}  ", "{}"},
    };
    for (const auto& c : cases) {
        std::string indented;
        EXPECT_TRUE(indentJson(c.first, indented)) << c.first;
        EXPECT_EQ(c.second, indented) << c.first;
    }
}

TEST(JsonTextTest, TextThatIsNotOneWholeValueIsRefused)
{
    for (const char* text : {"", "{", "[1,2", "{\"a\":}", "nope", "{\"a\" 1}", "]"}) {
        std::string indented = "untouched";
        EXPECT_FALSE(indentJson(text, indented)) << text;
        EXPECT_EQ("untouched", indented) << text;
        utils::DynamicObject object;
        EXPECT_FALSE(readJson(text, object)) << text;
    }
}

TEST(JsonTextTest, ReadsRepliesIntoAnObjectButNotNamesItCannotHold)
{
    utils::DynamicObject object;
    ASSERT_TRUE(readJson("{\"id\":3,\"type\":\"breakpoint\",\"location\":\"tov:a\"}", object));
    EXPECT_EQ(3, object.getInt("id"));
    EXPECT_STREQ("tov:a", object.getString("location"));
    utils::DynamicObject dotted;
    EXPECT_FALSE(readJson("{\"a.b\":1}", dotted));
    utils::DynamicObject empty;
    EXPECT_TRUE(readJson("[]", empty));
}

TEST(JsonTextTest, QuotingEscapesWhatJsonCannotHoldAsIs)
{
    EXPECT_EQ("\"plain é\"", quoteJson("plain é"));
    EXPECT_EQ("\"\\\"\\\\\\r\\n\\t\\u001f\"", quoteJson("\"\\\r\n\t\x1f"));
    // A quoted text reads back as itself.
    std::string indented;
    ASSERT_TRUE(indentJson("[" + quoteJson("a\"b\\c\x01") + "]", indented));
    EXPECT_EQ("[\n  " + quoteJson("a\"b\\c\x01") + "\n]", indented);
}

TEST(TableTest, AlignsColumnsOnTheirWidestCell)
{
    Table table({"ID", "LOCATION", "X"});
    table.addRow({"10", "tov:simulation", "a"});
    table.addRow({"7", "tov:a"});              // completed with an empty cell, printed without blanks
    table.addRow({"1", "2", "3", "dropped"});
    std::ostringstream out;
    table.print(out);
    EXPECT_EQ("ID  LOCATION        X\n"
              "10  tov:simulation  a\n"
              "7   tov:a\n"
              "1   2               3\n",
              out.str());
}

TEST(TableTest, MinimumWidthsLineUpTablesPrintedOneAfterAnother)
{
    std::ostringstream out;
    for (const char* id : {"1", "22"}) {
        Table table({"ID", "TYPE", "ENTITY"});
        table.setMinimumWidths({4, 10});
        table.addRow({id, "suspension", "0"});
        table.print(out, std::string(id) == "1");
    }
    EXPECT_EQ("ID    TYPE        ENTITY\n"
              "1     suspension  0\n"
              "22    suspension  0\n",
              out.str());
    EXPECT_TRUE(Table({"A"}).empty());
}

} // namespace
} // namespace inspect
} // namespace tov
