#include <tov/utils/Timer.h>

#include <time.h>

namespace tov {
namespace utils {

namespace {

Time toTime(long long seconds, unsigned short milliseconds)
{
    Time time;
    time.setMilliseconds(static_cast<unsigned long long>(seconds) * 1000ULL + milliseconds);
    return time;
}

} // namespace

Timer::Timer() : started(false), startTime{0, 0} {}

Time Timer::start()
{
    const Time lap = stop();
    startTime = readClock();
    started = true;
    return lap;
}

Time Timer::stop()
{
    if (!started) {
        return Time();
    }
    const Time elapsed = getTime();
    started = false;
    return elapsed;
}

Time Timer::getTime() const
{
    if (!started) {
        return Time();
    }
    const ClockReading now = readClock();
    Time elapsed = toTime(now.seconds, now.milliseconds);
    elapsed.sub(toTime(startTime.seconds, startTime.milliseconds));
    return elapsed;
}

bool Timer::isStarted() const
{
    return started;
}

Timer::ClockReading Timer::readClock()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return ClockReading{static_cast<long long>(now.tv_sec), static_cast<unsigned short>(now.tv_nsec / 1000000)};
}

} // namespace utils
} // namespace tov
