#include <tov/utils/BufferLogger.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectReader.h>

#include "support/AssertionGuard.h"

#include <gtest/gtest.h>

#include <string>

namespace tov {
namespace testing {
namespace {

// Values from a client, as a host's engine gets them: every read of the wrong kind is a false result
// with the reason, and none reaches the object's asserting getters (assertions throw here).
using DynamicObjectReaderTest = AssertionTest;

TEST_F(DynamicObjectReaderTest, ReadersOfOutsideInputRefuseWrongKindsWithTheReason)
{
    utils::DynamicObject query;
    query.setInt("add", 3);
    query.setReal("scale", 2.5);
    query.setBool("on", true);
    query.setString("name", "x");
    query.setInt("o.k", 1);
    const utils::DynamicObjectReader in(query);
    const struct {
        const char* key;
        char kind;           // 'i', 'r', 'b' or 's'
        const char* refusal; // "" when the read succeeds
    } cases[] = {
        {"add", 'i', ""},
        {"add", 'r', ""}, // an integer is a number too
        {"scale", 'r', ""},
        {"on", 'b', ""},
        {"name", 's', ""},
        {"o.k", 'i', ""},
        {"name", 'i', "'name' is a string, not an integer"},
        {"scale", 'i', "'scale' is a real, not an integer"},
        {"on", 'r', "'on' is a boolean, not a number"},
        {"add", 'b', "'add' is an integer, not a boolean"},
        {"o", 's', "'o' is an object, not a string"},
        {"missing", 'i', "'missing' is absent, not an integer"},
    };
    for (const auto& c : cases) {
        utils::BufferLogger log(true, true, true);
        long long integer = 0;
        double real = 0;
        bool boolean = false;
        const char* text = nullptr;
        const bool read = c.kind == 'i'   ? in.readInt(c.key, integer, &log)
                          : c.kind == 'r' ? in.readReal(c.key, real, &log)
                          : c.kind == 'b' ? in.readBool(c.key, boolean, &log)
                                          : in.readString(c.key, text, &log);
        EXPECT_EQ(*c.refusal == '\0', read) << c.key << ' ' << c.kind;
        const std::string message = log.getMessages().empty() ? "" : log.getMessages()[0].message.c_str();
        EXPECT_EQ(c.refusal, message) << c.key << ' ' << c.kind;
    }
    EXPECT_TRUE(in.has("o"));
    EXPECT_FALSE(in.has("missing"));
    long long value = 7;
    EXPECT_FALSE(in.readInt(0u, value, nullptr)); // by handle: 0 is absent, and the value stays
    EXPECT_EQ(7, value);
}

} // namespace
} // namespace testing
} // namespace tov
