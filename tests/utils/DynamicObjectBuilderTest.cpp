// AbstractObjectBuilder's defaults and DynamicObjectBuilder, with keys and arrays as they come from outside.
#include "utils/DynamicObjectTestSupport.h"

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/ErrorType.h>

#include <gtest/gtest.h>

#include <string>

namespace tov {
namespace utils {
namespace {

using testing::AssertionTest;

class PlainBuilder : public AbstractObjectBuilder {};

// Overrides only the counted forms, as concrete builders do.
class CountedBuilder : public AbstractObjectBuilder {
public:
    using AbstractObjectBuilder::objectChild;
    using AbstractObjectBuilder::string;
    bool string(const char* text, unsigned int length) override
    {
        received.assign(text, length);
        return true;
    }
    bool objectChild(const char* key, unsigned int length) override
    {
        received.assign(key, length);
        return true;
    }
    std::string received;
};

std::string lastMessage(const BufferLogger& logger)
{
    return logger.getMessages().empty() ? "" : std::string(logger.getMessages().back().message.c_str());
}

TEST(AbstractObjectBuilderTest, EveryValueKindIsRefusedByDefault)
{
    PlainBuilder builder;
    EXPECT_EQ(nullptr, builder.getLogger());
    EXPECT_TRUE(builder.begin());
    EXPECT_TRUE(builder.end());
    EXPECT_FALSE(builder.null()); // silently, without a logger

    BufferLogger logger(true, true, true);
    builder.setLogger(&logger);
    struct Case {
        bool result;
        const char* message;
    };
    const Case cases[] = {
        {builder.null(), "Null properties not supported by this object builder."},
        {builder.boolean(true), "Boolean properties not supported by this object builder."},
        {builder.integer(1), "Integer properties not supported by this object builder."},
        {builder.real(1.5), "Real properties not supported by this object builder."},
        {builder.string("x"), "String properties not supported by this object builder."},
        {builder.string("x", 1), "String properties not supported by this object builder."},
        {builder.beginObject(), "Object properties not supported by this object builder."},
        {builder.objectChild("x"), "Object properties not supported by this object builder."},
        {builder.objectChild("x", 1), "Object properties not supported by this object builder."},
        {builder.endObject(), "Object properties not supported by this object builder."},
        {builder.beginArray(), "Array properties not supported by this object builder."},
        {builder.arrayChild(), "Array properties not supported by this object builder."},
        {builder.endArray(), "Array properties not supported by this object builder."},
    };
    ASSERT_EQ(sizeof(cases) / sizeof(cases[0]), logger.getMessages().size());
    for (unsigned int i = 0; i < sizeof(cases) / sizeof(cases[0]); ++i) {
        EXPECT_FALSE(cases[i].result);
        EXPECT_EQ(cases[i].message, std::string(logger.getMessages()[i].message.c_str()));
        EXPECT_EQ(error::invalidOperation, logger.getMessages()[i].errorType);
    }
}

TEST(AbstractObjectBuilderTest, TerminatedFormsReachTheCountedOverrides)
{
    CountedBuilder builder;
    AbstractObjectBuilder& base = builder;
    EXPECT_TRUE(base.string("speed"));
    EXPECT_EQ("speed", builder.received);
    EXPECT_TRUE(base.objectChild("name"));
    EXPECT_EQ("name", builder.received);
    BufferLogger logger(true, true, true);
    CountedBuilder copy(builder);
    copy.setLogger(&logger);
    CountedBuilder assigned;
    assigned = copy;
    EXPECT_EQ(&logger, assigned.getLogger());
}

class DynamicObjectBuilderTest : public AssertionTest {
protected:
    DynamicObjectBuilderTest() : logger(true, true, true), builder(object) { builder.setLogger(&logger); }

    DynamicObject object;
    BufferLogger logger;
    DynamicObjectBuilder builder;
};

TEST_F(DynamicObjectBuilderTest, BuildsNestedObjectsAndArraysAlsoBelowAChosenPropertyAndMergesIntoAnObject)
{
    // {"name":"ship","pos":{"x":1.5,"y":-2},"tags":["a",true,null],"grid":[[1],[2]],"empty":{},"none":[]}
    ASSERT_TRUE(builder.begin());
    ASSERT_TRUE(builder.beginObject());
    ASSERT_TRUE(builder.objectChild("name") && builder.string("ship"));
    ASSERT_TRUE(builder.objectChild("pos") && builder.beginObject());
    ASSERT_TRUE(builder.objectChild("x") && builder.real(1.5));
    ASSERT_TRUE(builder.objectChild("y") && builder.integer(-2));
    ASSERT_TRUE(builder.endObject());
    ASSERT_TRUE(builder.objectChild("tags") && builder.beginArray());
    ASSERT_TRUE(builder.arrayChild() && builder.string("a"));
    ASSERT_TRUE(builder.arrayChild() && builder.boolean(true));
    ASSERT_TRUE(builder.arrayChild() && builder.null());
    ASSERT_TRUE(builder.endArray());
    ASSERT_TRUE(builder.objectChild("grid") && builder.beginArray());
    ASSERT_TRUE(builder.arrayChild() && builder.beginArray() && builder.arrayChild() && builder.integer(1) &&
                builder.endArray());
    ASSERT_TRUE(builder.arrayChild() && builder.beginArray() && builder.arrayChild() && builder.integer(2) &&
                builder.endArray());
    ASSERT_TRUE(builder.endArray());
    ASSERT_TRUE(builder.objectChild("empty") && builder.beginObject() && builder.endObject());
    ASSERT_TRUE(builder.objectChild("none") && builder.beginArray() && builder.endArray());
    ASSERT_TRUE(builder.endObject());
    ASSERT_TRUE(builder.end());

    EXPECT_STREQ("ship", object.getString("name"));
    EXPECT_EQ(1.5, object.getReal("pos.x"));
    EXPECT_EQ(-2, object.getInt("pos.y"));
    EXPECT_EQ(3u, object.countChildren("tags"));
    EXPECT_STREQ("a", object.getString("tags[0]"));
    EXPECT_TRUE(object.getBool("tags[1]"));
    EXPECT_EQ(type::null, object.getType("tags[2]"));
    EXPECT_EQ(2u, object.countChildren("grid"));
    EXPECT_EQ(1, object.getInt("grid[0][0]"));
    EXPECT_EQ(2, object.getInt("grid[1][0]"));
    // A container gets its type from its first child: empty ones stay null, yet present.
    EXPECT_EQ(type::null, object.getType("empty"));
    EXPECT_EQ(type::null, object.getType("none"));
    EXPECT_TRUE(logger.getMessages().empty());
    // The target's own value is done: the stacks are empty.
    EXPECT_FALSE(builder.integer(3));
    EXPECT_EQ("No current property.", lastMessage(logger));
    EXPECT_FALSE(builder.objectChild("x"));
    EXPECT_FALSE(builder.arrayChild());
    EXPECT_FALSE(builder.beginObject());

    // A builder below a chosen property, and another one that merges into the root object.
    object.setInt("keep", 1);
    DynamicObjectBuilder below(object, object.addProperty("sub"));
    ASSERT_TRUE(below.beginObject() && below.objectChild("v") && below.integer(7) && below.endObject());
    EXPECT_EQ(7, object.getInt("sub.v"));
    DynamicObjectBuilder again(object);
    ASSERT_TRUE(again.beginObject() && again.objectChild("b") && again.integer(2) && again.endObject());
    EXPECT_EQ(1, object.getInt("keep"));
    EXPECT_EQ(2, object.getInt("b"));
}

TEST_F(DynamicObjectBuilderTest, KeysWithPathCharactersAreRefusedWithoutAssertion)
{
    // The default assertion function, which ends the process, stays in place: a key from outside must
    // never reach it.
    setAssertionFailedFunction(exitOnAssertionFailed);
    ASSERT_TRUE(builder.beginObject());
    struct Case {
        std::string key;
        std::string message;
        const ErrorType& category;
    };
    const Case cases[] = {
        {"a.b", "Unable to create a child named a.b to the current property, invalid character '.' found.",
         error::invalidArgument},
        {"x[1]", "Unable to create a child named x[1] to the current property, invalid character '[' found.",
         error::invalidArgument},
        {"]", "Unable to create a child named ] to the current property, invalid character ']' found.",
         error::invalidArgument},
        {"", "Unable to create a child named  to the current property.", error::invalidOperation},
        // The message ends at the zero byte.
        {std::string("a\0b", 3), "Unable to create a child named a", error::invalidOperation},
    };
    for (const Case& c : cases) {
        logger.clear();
        EXPECT_FALSE(builder.objectChild(c.key.data(), static_cast<unsigned int>(c.key.size()))) << c.key;
        ASSERT_EQ(1u, logger.getMessages().size());
        EXPECT_EQ(c.message, lastMessage(logger));
        EXPECT_EQ(c.category, logger.getMessages().back().errorType);
    }
    EXPECT_EQ(0u, object.countChildren(object.getRoot()));
    // Still usable afterwards.
    EXPECT_TRUE(builder.objectChild("fine") && builder.integer(1) && builder.endObject());
    EXPECT_EQ(1, object.getInt("fine"));
}

TEST_F(DynamicObjectBuilderTest, KeysGivenTwiceWithOtherKindsFailCleanly)
{
    setAssertionFailedFunction(exitOnAssertionFailed);
    // {"a":5,"a":{"b":1}} then {"c":{"x":1},"c":[1]}
    ASSERT_TRUE(builder.beginObject());
    ASSERT_TRUE(builder.objectChild("a") && builder.integer(5));
    ASSERT_TRUE(builder.objectChild("a") && builder.beginObject());
    EXPECT_FALSE(builder.objectChild("b"));
    EXPECT_EQ("The current property is not an object.", lastMessage(logger));
    DynamicObjectBuilder second(object);
    ASSERT_TRUE(second.beginObject() && second.objectChild("c") && second.beginObject() && second.objectChild("x") &&
                second.integer(1) && second.endObject());
    ASSERT_TRUE(second.objectChild("c") && second.beginArray());
    second.setLogger(&logger);
    EXPECT_FALSE(second.arrayChild());
    EXPECT_EQ("The current property is not an array.", lastMessage(logger));
    EXPECT_EQ(5, object.getInt("a"));
    EXPECT_EQ(1, object.getInt("c.x"));
}

TEST_F(DynamicObjectBuilderTest, ContainersOfTheWrongKindAreReportedAndEndingOneIsAFramingFault)
{
    ASSERT_TRUE(builder.beginObject());
    EXPECT_FALSE(builder.arrayChild());
    EXPECT_EQ("The current property is not an array.", lastMessage(logger));
    ASSERT_TRUE(builder.objectChild("list") && builder.beginArray());
    EXPECT_FALSE(builder.objectChild("x"));
    EXPECT_EQ("The current property is not an object.", lastMessage(logger));
    EXPECT_FALSE(builder.beginObject());
    EXPECT_EQ("The current property is not of the expected type", lastMessage(logger));
    // Ending a container of another kind is a framing fault of the caller.
    EXPECT_EQ("Invalid call sequence", assertionOf([&] { builder.endObject(); }));
}

TEST_F(DynamicObjectBuilderTest, AScalarOfAnotherKindOverwritesTheTargetAndIsReported)
{
    object.setString("", 0, "text", 4);
    ASSERT_EQ(type::string, object.getType(object.getRoot()));
    // Written anyway and accepted; reported; and, the value being from outside, no assertion.
    DynamicObjectBuilder over(object);
    over.setLogger(&logger);
    setAssertionFailedFunction(exitOnAssertionFailed);
    EXPECT_TRUE(over.integer(4));
    EXPECT_EQ("The current property is not of the expected type", lastMessage(logger));
    EXPECT_EQ(4, object.getInt(object.getRoot()));
    EXPECT_FALSE(over.integer(5));
    EXPECT_EQ("No current property.", lastMessage(logger));
}

TEST_F(DynamicObjectBuilderTest, ArraysStopAtTheirMaximumSizeWithAMessage)
{
    setAssertionFailedFunction(exitOnAssertionFailed);
    const unsigned int list = object.addProperty("list");
    ASSERT_TRUE(object.resize(list, DynamicObject::getMaximumArraySize() - 2));
    DynamicObjectBuilder filler(object, list);
    filler.setLogger(&logger);
    ASSERT_TRUE(filler.beginArray());
    ASSERT_TRUE(filler.arrayChild() && filler.integer(1));
    EXPECT_EQ(99999u, object.countChildren(list));
    EXPECT_EQ(1, object.getInt("list[99998]"));
    EXPECT_FALSE(filler.arrayChild());
    EXPECT_EQ("The current array property (" + std::to_string(list) + ") reached its maximum size: 100000.",
              lastMessage(logger));
    EXPECT_EQ(99999u, object.countChildren(list));
}

} // namespace
} // namespace utils
} // namespace tov
