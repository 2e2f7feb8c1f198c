#include <tov/utils/BufferLogger.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/RandomManager.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/System.h>

#include "support/AssertionGuard.h"

#include <cstring>

using namespace tov::utils;

namespace {

class LifeCycle : public tov::testing::AssertionTest {
protected:
    void TearDown() override
    {
        terminate(nullptr);
        AssertionTest::TearDown();
    }
};

} // namespace

TEST_F(LifeCycle, InitializeAndTerminateLogOnlyWhenTheyActAndSingletonMisuseIsAnAssertion)
{
    EXPECT_ASSERTION(Facilities::instance(), "accessing uninitialized singleton");
    Facilities::destroy(); // nothing to destroy: silent
    BufferLogger log(true, true, true);
    EXPECT_TRUE(terminate(&log)); // nothing to do yet
    EXPECT_TRUE(log.getMessages().empty());

    EXPECT_TRUE(initialize(&log));
    EXPECT_TRUE(isInitialized());
    ASSERT_EQ(1u, log.getMessages().size());
    EXPECT_EQ("Initializing the runtime utils systems.", log.getMessages()[0].message);

    EXPECT_TRUE(initialize(&log)); // already running: silent
    EXPECT_EQ(1u, log.getMessages().size());

    EXPECT_TRUE(terminate(&log));
    EXPECT_FALSE(isInitialized());
    EXPECT_FALSE(Facilities::isSet());
    ASSERT_EQ(2u, log.getMessages().size());
    EXPECT_EQ("Terminating the runtime utils systems.", log.getMessages()[1].message);
    ASSERT_TRUE(initialize(nullptr));
    EXPECT_ASSERTION(Facilities::create(), "trying to overwrite singleton instance");
}

TEST_F(LifeCycle, ASecondRunStartsWithFreshServicesAndSetLoggerReplacesUntilClearLogger)
{
    ASSERT_TRUE(initialize(nullptr));
    Facilities::instance().getStringTable().add("first run", nullptr);
    ASSERT_TRUE(terminate(nullptr));
    ASSERT_TRUE(initialize(nullptr));
    // Only what the services themselves stored comes back: the path of the debugger's engine.
    const StringTable& strings = Facilities::instance().getStringTable();
    EXPECT_EQ(nullptr, strings.retrieve(StringTable::computeHash("first run", 9, strings.getSeed()), nullptr));
    EXPECT_STREQ("debug", strings.retrieve(StringTable::computeHash("debug", 5, strings.getSeed()), nullptr));
    EXPECT_EQ(0u, strings.getSeed());

    // setLogger replaces the logger, clearLogger restores the default.
    Facilities& facilities = Facilities::instance();
    AbstractLogger* defaultLogger = &facilities.getLogger();
    BufferLogger a(true, true, true), b(true, true, true);
    facilities.setLogger(a);
    facilities.setLogger(b);
    EXPECT_EQ(&b, &facilities.getLogger());
    facilities.clearLogger();
    EXPECT_EQ(defaultLogger, &facilities.getLogger());
    EXPECT_TRUE(defaultLogger->isLoggingInfo() && defaultLogger->isLoggingWarning() && defaultLogger->isLoggingTrace());
}

TEST(RandomManager, FacilitiesOwnOneWithTheDefaultSeed)
{
    ASSERT_FALSE(Facilities::isSet());
    Facilities::create();
    RandomManager& manager = Facilities::instance().getRandomNumberGenerator();
    EXPECT_EQ(0xFFFF000u, manager.getSeed());
    manager.seed(3);
    const Facilities& facilities = Facilities::instance();
    EXPECT_EQ(3u, facilities.getRandomNumberGenerator().getSeed());
    Facilities::destroy();

    Facilities::create();
    EXPECT_EQ(0xFFFF000u, Facilities::instance().getRandomNumberGenerator().getSeed());
    Facilities::destroy();
}

TEST(Version, EntryPointsAndConstants)
{
    EXPECT_STREQ("0.4.0", getVersionTOV_UTILS());
    EXPECT_TRUE(tov_utils::check_0());
    EXPECT_TRUE(tov_utils::check_0_4());
    EXPECT_STREQ("tov", uriScheme);
    EXPECT_EQ(0xFFFFFFFFu, invalidIndex);
    char text[37];
    uniqueId.computeString(text);
    EXPECT_STREQ("0ba23f91-d30e-4574-b0ed-ee0aa81d00b9", text);
}
