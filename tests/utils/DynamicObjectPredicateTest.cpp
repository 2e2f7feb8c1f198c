// DynamicObjectPropertyComparison and DynamicObjectCompositePredicate over the four kinds of constant.
#include "utils/DynamicObjectTestSupport.h"

#include <tov/utils/BufferLogger.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectCompositePredicate.h>
#include <tov/utils/DynamicObjectPropertyComparison.h>
#include <tov/utils/ErrorType.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace tov {
namespace utils {
namespace {

using testing::AssertionTest;
using Comparison = DynamicObjectPropertyComparison;

class DynamicObjectPredicateTest : public AssertionTest {
protected:
    DynamicObjectPredicateTest() : logger(true, true, true)
    {
        object.setInt("i", 5);
        object.setReal("r", 2.5);
        object.setReal("nan", std::nan(""));
        object.setString("s", "b");
        object.setBool("f", false);
        object.setInt("a.b", 7);
    }
    DynamicObject object;
    BufferLogger logger;
};

TEST_F(DynamicObjectPredicateTest, EachComparatorOnEachKind)
{
    struct Case {
        const char* key;
        DynamicValue constant;
        bool holds[6]; // equal, notEqual, greater, less, greaterOrEqual, lessOrEqual
    };
    const Case cases[] = {
        {"i", DynamicValue(5), {true, false, false, false, true, true}},
        {"i", DynamicValue(4), {false, true, true, false, true, false}},
        {"i", DynamicValue(2.5), {false, true, true, false, true, false}}, // read as a real
        {"r", DynamicValue(2.5), {true, false, false, false, true, true}},
        {"r", DynamicValue(3), {false, true, false, true, false, true}}, // truncated to 2
        {"nan", DynamicValue(1.0), {false, true, false, false, false, false}},
        {"s", DynamicValue("a"), {false, true, true, false, true, false}},
        {"s", DynamicValue("b"), {true, false, false, false, true, true}},
        {"s", DynamicValue("ba"), {false, true, false, true, false, true}},
        {"f", DynamicValue(true), {false, true, false, true, false, true}},
        {"f", DynamicValue(false), {true, false, false, false, true, true}},
        {"a.b", DynamicValue(7), {true, false, false, false, true, true}},
    };
    for (const Case& c : cases) {
        for (int comparator = 0; comparator < 6; ++comparator) {
            const Comparison comparison(c.key, static_cast<Comparison::Comparator>(comparator), c.constant);
            EXPECT_EQ(c.holds[comparator], comparison.evaluate(object, &logger))
                << c.key << " " << comparator << " " << c.constant;
        }
    }
    EXPECT_TRUE(logger.getMessages().empty());
}

TEST_F(DynamicObjectPredicateTest, AMissingPropertyIsFalseWithAMessageAndContractFaultsAssert)
{
    const Comparison missing("nope", Comparison::equal, DynamicValue(1));
    EXPECT_FALSE(missing.evaluate(object, nullptr));
    EXPECT_FALSE(missing.evaluate(object, &logger));
    ASSERT_EQ(1u, logger.getMessages().size());
    EXPECT_EQ("object has no property nope, unable to evaluate condition",
              std::string(logger.getMessages()[0].message.c_str()));
    EXPECT_EQ(error::invalidArgument, logger.getMessages()[0].errorType);

    // What the caller gets wrong is an assertion.
    const auto evaluate = [&](const char* key, int comparator, const DynamicValue& value) {
        return assertionOf([&] {
            const Comparison comparison(key, static_cast<Comparison::Comparator>(comparator), value);
            static_cast<void>(comparison.evaluate(object, nullptr));
        });
    };
    EXPECT_EQ("unexpected value type detected 0", evaluate("i", Comparison::equal, DynamicValue()));
    EXPECT_EQ("unexpected comparator detected 9", evaluate("i", 9, DynamicValue(1)));
    EXPECT_EQ("Not an integer or a compatible type", evaluate("s", Comparison::equal, DynamicValue(1)));
    EXPECT_EQ("null pointer not allowed as key when creating a simple condition",
              assertionOf([] { Comparison(nullptr, Comparison::equal, DynamicValue(1)); }));
    DynamicObjectCompositePredicate composite;
    EXPECT_EQ("index out of bounds when accessing simple conditions", assertionOf([&] { composite.getPredicate(0); }));
}

TEST_F(DynamicObjectPredicateTest, CompositeIsAConjunctionStoppingAtTheFirstFalse)
{
    DynamicObjectCompositePredicate composite;
    EXPECT_TRUE(composite.evaluate(object, &logger));
    composite.addPredicate(Comparison("i", Comparison::greater, DynamicValue(1)));
    composite.addPredicate(Comparison("s", Comparison::equal, DynamicValue("b")));
    EXPECT_TRUE(composite.evaluate(object, &logger));
    EXPECT_EQ(2u, composite.countPredicates());
    EXPECT_EQ("s", std::string(composite.getPredicate(1).getKey().c_str()));
    EXPECT_EQ(Comparison::equal, composite.getPredicate(1).getComparator());
    EXPECT_EQ(DynamicValue("b"), composite.getPredicate(1).getValue());
    // A missing property, then one whose read would assert: one message, false, and no assertion.
    composite.addPredicate(Comparison("missing", Comparison::equal, DynamicValue(1)));
    composite.addPredicate(Comparison("s", Comparison::equal, DynamicValue(1)));
    DynamicObjectCompositePredicate copy(composite);
    EXPECT_FALSE(copy.evaluate(object, &logger));
    EXPECT_EQ(1u, logger.getMessages().size());
}

} // namespace
} // namespace utils
} // namespace tov
