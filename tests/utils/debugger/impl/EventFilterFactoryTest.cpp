#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Memory.h>
#include <tov/utils/debugger/AbstractEventFilterFactory.h>
#include <tov/utils/debugger/EntitiesFilter.h>
#include <tov/utils/debugger/HitCountFilter.h>
#include <tov/utils/debugger/LocationFilter.h>
#include <tov/utils/debugger/impl/EntitiesFilterFactory.h>
#include <tov/utils/debugger/impl/HitCountFilterFactory.h>
#include <tov/utils/debugger/impl/LocationFilterFactory.h>

#include <gtest/gtest.h>

#include <memory>

using namespace tov::utils;
using namespace tov::utils::debugger;

namespace {

struct Released {
    void operator()(AbstractEventFilter* filter) const { TOV_DELETE(filter); }
};
using Filter = std::unique_ptr<AbstractEventFilter, Released>;

// The filters of one subscription body: {"filters": {"<key>": <value>}} as the event engine reads it.
Filter make(const AbstractEventFilterFactory& factory, const DynamicObject& body, const char* key)
{
    return Filter(factory(body, body.getProperty(key)));
}

} // namespace

// These run with the assertion function that ends the process: a value sent by a client must not
// reach an assertion, so reaching one fails the whole test program.
TEST(EventFilterFactories, ValuesFromAClientNeverReachAnAssertion)
{
    ASSERT_EQ(&exitOnAssertionFailed, getAssertionFailedFunction());
    DynamicObject body;
    body.setString("notUri", "tov:agents/a forager");
    body.setString("empty", "");
    body.setInt("number", 4);
    body.setReal("real", 2.5);
    body.setBool("flag", true);
    body.setInt("entities[2]", 7);
    body.setString("entities[0]", "x");
    body.setInt("nested.hitcount", 3);
    body.addProperty("nothing");

    const impl::LocationFilterFactory location;
    const impl::EntitiesFilterFactory entities;
    const impl::HitCountFilterFactory hitCount;
    const AbstractEventFilterFactory unknown;
    for (const char* key : {"notUri", "number", "real", "flag", "entities", "nested", "nothing"}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(nullptr, make(location, body, key));
        EXPECT_EQ(nullptr, make(unknown, body, key));
    }
    for (const char* key : {"notUri", "number", "real", "flag", "nested", "nothing"}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(nullptr, make(entities, body, key));
    }
    for (const char* key : {"notUri", "real", "flag", "entities", "nested", "nothing"}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(nullptr, make(hitCount, body, key));
    }

    // An empty text is the empty Uri, which no breakpoint location equals.
    const Filter nowhere = make(location, body, "empty");
    ASSERT_NE(nullptr, nowhere);
    EXPECT_TRUE(static_cast<const LocationFilter&>(*nowhere).getLocation().empty());

    // The array's elements are not read: each integer among them stands for entity 0.
    const Filter listed = make(entities, body, "entities");
    ASSERT_NE(nullptr, listed);
    ASSERT_EQ(EntitiesFilter::getClassTypeId(), listed->getTypeId());
    EXPECT_EQ(Vector<unsigned int>{0}, static_cast<const EntitiesFilter&>(*listed).getEntities());
}

TEST(EventFilterFactories, EachFactoryBuildsItsFilterFromAValueOfItsType)
{
    DynamicObject body;
    body.setString("location", "tov:simulation");
    body.setInt("hitcount", 3);
    body.setInt("entities[0]", 1);
    ASSERT_TRUE(body.eraseChild("entities", 0u)); // an emptied array stays one

    const Filter location = make(impl::LocationFilterFactory(), body, "location");
    ASSERT_NE(nullptr, location);
    ASSERT_EQ(LocationFilter::getClassTypeId(), location->getTypeId());
    EXPECT_TRUE(static_cast<const LocationFilter&>(*location)(Uri::create("tov:simulation")));

    const Filter hitCount = make(impl::HitCountFilterFactory(), body, "hitcount");
    ASSERT_NE(nullptr, hitCount);
    ASSERT_EQ(HitCountFilter::getClassTypeId(), hitCount->getTypeId());
    const HitCountFilter& hits = static_cast<const HitCountFilter&>(*hitCount);
    EXPECT_EQ(3, hits.getCount());
    EXPECT_EQ(HitCountFilter::atLeast, hits.getMode());

    const Filter none = make(impl::EntitiesFilterFactory(), body, "entities");
    ASSERT_NE(nullptr, none);
    EXPECT_TRUE(static_cast<const EntitiesFilter&>(*none).getEntities().empty());
}
