#pragma once
// Timer: a stopwatch over the wall clock, to the millisecond. `start` on a running timer is a lap.
//   tov::utils::Timer timer; timer.start();
//   work(); tov::utils::Time spent = timer.stop();

#include <tov/utils/Export.h>
#include <tov/utils/Time.h>

namespace tov {
namespace utils {

class TOV_UTILS_API Timer {
public:
    Timer();

    // Gives what stop() gives (zero when not started), then starts again.
    Time start();
    // The elapsed time, zero when not started.
    Time stop();
    // Zero when not started; zero too when the wall clock was set back.
    Time getTime() const;
    bool isStarted() const;

private:
    struct ClockReading {
        long long seconds;
        unsigned short milliseconds;
    };

    static ClockReading readClock();

    bool started;
    ClockReading startTime;
};

} // namespace utils
} // namespace tov
