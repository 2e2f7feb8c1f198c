#include <tov/allocator/Allocator.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/StaticObject.h>
#include <tov/utils/System.h>
#include <tov/utils/TypeManager.h>

#include "support/AssertionGuard.h"
#include "utils/TypeTestSupport.h"

using namespace tov::utils;

namespace {

class TypeLifeCycle : public tov::testing::AssertionTest {
protected:
    void TearDown() override
    {
        terminate(nullptr);
        AssertionTest::TearDown();
    }
};

} // namespace

TEST_F(TypeLifeCycle, InitializeRegistersTheBaseTypesForTheRun)
{
    ASSERT_TRUE(initialize(nullptr));
    TypeManager& types = Facilities::instance().getTypeManager();
    EXPECT_EQ(&types, &static_cast<const Facilities&>(Facilities::instance()).getTypeManager());
    EXPECT_TRUE(types.isTypeRegistered("tov::utils::Quaternionr"));
    EXPECT_TRUE(types.isStaticObject(StaticObject::getClassTypeId()));

    // The host's classes join for the run and go with it.
    ASSERT_TRUE(types.registerType<sim::Agent>(nullptr));
    ASSERT_TRUE(types.registerType<sim::Forager>(nullptr));
    ASSERT_TRUE(
        types.getCreatorFactory().registerCreator<sim::ForagerCreator>(sim::Forager::getClassTypeId(), nullptr));
    ASSERT_TRUE(terminate(nullptr));
    ASSERT_TRUE(initialize(nullptr));
    EXPECT_FALSE(Facilities::instance().getTypeManager().isTypeRegistered("sim::Forager"));
    EXPECT_TRUE(Facilities::instance().getTypeManager().isTypeRegistered("int"));

    // Only the library's own classes make a run: the base types may go.
    Facilities::instance().getTypeManager().unregisterBaseTypes();
    EXPECT_TRUE(isInitialized());
}

TEST_F(TypeLifeCycle, ARunWithHostTypesLeavesNoMemoryBehind)
{
    const tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    const unsigned long long liveBlocks = memory.getLiveBlocks();
    ASSERT_TRUE(initialize(nullptr));
    TypeManager& types = Facilities::instance().getTypeManager();
    ASSERT_TRUE(types.registerType<sim::Agent>(nullptr));
    ASSERT_TRUE(types.registerType<sim::Forager>(nullptr));
    ASSERT_TRUE(
        types.getCreatorFactory().registerCreator<sim::ForagerCreator>(sim::Forager::getClassTypeId(), nullptr));
    types.destroyStaticObject(types.createStaticObject(sim::Forager::getClassTypeId(), nullptr));
    ASSERT_TRUE(terminate(nullptr));
    EXPECT_EQ(liveBlocks, memory.getLiveBlocks());
}
