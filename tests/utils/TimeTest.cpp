#include <tov/utils/Time.h>
#include <tov/utils/Timer.h>

#include "support/AssertionGuard.h"

#include <cmath>
#include <sstream>

using namespace tov::utils;

TEST(Time, ConversionsTruncateAndDifferencesSaturate)
{
    Time t(5.0);
    t.sub(Time(7.0));
    EXPECT_TRUE(t.isZero());
    EXPECT_EQ(1u, Time(1999999ULL).getMilliseconds());
    EXPECT_EQ(1999u, Time(1999999ULL).getMicroseconds());
    Time fraction;
    fraction.setTime(1, 4);
    EXPECT_EQ(250000000u, fraction.getNanoseconds());
    Time sum;
    sum.setAdd(Time(~0ULL), Time(2ULL)); // wraps silently
    EXPECT_EQ(1u, sum.getNanoseconds());
    Time difference;
    difference.setSub(Time(9ULL), Time(4ULL));
    EXPECT_EQ(Time(5ULL), difference);
    std::ostringstream text;
    text << Time(1.5);
    EXPECT_EQ("1.5s", text.str());
}

class TimeAssertions : public tov::testing::AssertionTest {};

TEST_F(TimeAssertions, RefusesNegativeNanAndOverflow)
{
    Time t;
    EXPECT_ASSERTION(t.setSeconds(-1.0), "Can't set a negative time.");
    EXPECT_ASSERTION(t.setSeconds(std::nan("")), "Can't set a negative time.");
    EXPECT_ASSERTION(t.setSeconds(1e11),
                     "Overflow happened when setting 1e+11seconds, the resulting value 1e+20 is too "
                     "high in nanosecond resolution.");
    EXPECT_ASSERTION(t.setMilliseconds(0),
                     "Overflow happened when converting 0 milliseconds to nanosecond resolution.");
    // 2^64 / 1000 + 1 wraps to a product below itself.
    EXPECT_ASSERTION(t.setMicroseconds(18446744073709552ULL),
                     "Overflow happened when converting 18446744073709552 microseconds to nanosecond resolution.");
    t.setMilliseconds(3);
    EXPECT_EQ(3000000u, t.getNanoseconds());
}

TEST(Timer, MeasuresWallClockTimeAndLaps)
{
    Timer timer;
    EXPECT_TRUE(timer.stop().isZero());
    EXPECT_FALSE(timer.isStarted());
    EXPECT_TRUE(timer.start().isZero());
    sleep(Time(0.02));
    const Time lap = timer.start(); // a lap: gives the elapsed time and starts again
    EXPECT_TRUE(timer.isStarted());
    EXPECT_GE(lap.getMilliseconds(), 19u);
    EXPECT_LT(lap.getMilliseconds(), 5000u);
    EXPECT_LE(timer.getTime().getMilliseconds(), lap.getMilliseconds() + 5000u);
    timer.stop();
    EXPECT_TRUE(timer.getTime().isZero());
}
