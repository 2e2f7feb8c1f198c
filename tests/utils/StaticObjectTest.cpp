#include <tov/utils/BufferLogger.h>
#include <tov/utils/StaticObject.h>
#include <tov/utils/TypeManager.h>

#include "support/AssertionGuard.h"
#include "utils/TypeTestSupport.h"

using namespace tov::utils;
using tov::testing::idText;
using tov::testing::textsOf;

TEST(StaticObject, AnObjectTellsTheIdentityOfItsMostDerivedClass)
{
    sim::Scout scout;
    const StaticObject& object = scout;
    EXPECT_STREQ("sim::Scout", object.getTypeName());
    EXPECT_EQ("c2a7e9d4-1f36-4b85-a0c1-7d2e4f6a8b93", idText(object.getTypeId()));
    EXPECT_EQ(&sim::Scout::getClassTypeId(), &object.getTypeId());
    EXPECT_EQ(sim::Scout::getClassMetadataSetter(), scout.getMetadataSetter());
    EXPECT_NE(sim::Forager::getClassMetadataSetter(), scout.getMetadataSetter());
    EXPECT_EQ(&object.getTypeId(), &details::getObjectTypeId(object));
    EXPECT_EQ(details::getClassTypeId<double>(), details::getObjectTypeId(2.0));

    // Ids written in upper case read the same.
    EXPECT_EQ("5f0c6ad2-8e1b-4c3a-b7d4-91e2f3a4b5c6", idText(sim::Forager::getClassTypeId()));
    StaticObject root;
    EXPECT_STREQ("tov::utils::StaticObject", root.getTypeName());
    EXPECT_EQ("7027fee4-32de-4a3a-a634-65811d6429e2", idText(root.getTypeId()));
}

TEST(StaticObject, RegisteringAClassStatesItsMetadataOrUndoesIt)
{
    TypeManager types;
    BufferLogger log(true, true, true);
    ASSERT_TRUE(types.registerBaseTypes(&log));

    // Forager names Agent as its base, which is not registered yet.
    EXPECT_FALSE(types.registerType<sim::Forager>(&log));
    EXPECT_EQ(std::vector<std::string>{"No type having the id 3d1c59a0-6b7e-4f0e-9a51-2f4c8e7d9b10 is registered."},
              textsOf(log));
    EXPECT_FALSE(types.isTypeRegistered("sim::Forager"));

    log.clear();
    ASSERT_TRUE(types.registerType<sim::Agent>(&log));
    ASSERT_TRUE(types.registerType<sim::Forager>(&log));
    ASSERT_TRUE(types.registerType<sim::Scout>(&log));
    EXPECT_TRUE(log.getMessages().empty());
    const Uuid& scout = sim::Scout::getClassTypeId();
    EXPECT_TRUE(types.isDerivedFrom(scout, sim::Agent::getClassTypeId()));
    EXPECT_TRUE(types.isStaticObject(scout));
    EXPECT_EQ(5u, types.countProperties(scout));
    EXPECT_STREQ("energy", types.getProperty(scout, 0u).getKey());

    // A repeat is no failure and adds no second base.
    EXPECT_TRUE(types.registerType<sim::Scout>(&log));
    EXPECT_EQ(5u, types.countProperties(scout));
    EXPECT_EQ(std::vector<std::string>{"Trying to register an already registered type: 'sim::Scout' "
                                       "{c2a7e9d4-1f36-4b85-a0c1-7d2e4f6a8b93}"},
              textsOf(log));
}
