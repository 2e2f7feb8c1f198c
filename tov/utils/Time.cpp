#include <tov/utils/Time.h>

#include <tov/utils/Assertion.h>

#include <cmath>
#include <ostream>

#include <sched.h>
#include <time.h>

namespace tov {
namespace utils {

Time::Time(double seconds) : nanoseconds(0)
{
    setSeconds(seconds);
}

Time::Time(unsigned long long nanoseconds) : nanoseconds(nanoseconds) {}

void Time::setToZero()
{
    nanoseconds = 0;
}

bool Time::isZero() const
{
    return nanoseconds == 0;
}

void Time::setTime(unsigned long long numerator, unsigned long long denominator)
{
    setSeconds(static_cast<double>(numerator) / static_cast<double>(denominator));
}

void Time::setSeconds(double seconds)
{
    TOV_ASSERT(seconds >= 0, "Can't set a negative time.");
    TOV_ASSERT(!std::isnan(seconds), "Can't set a NaN value.");
    const double product = seconds * 1e9;
    TOV_ASSERT(product <= static_cast<double>(~0ULL), "Overflow happened when setting "
                                                          << seconds << "seconds, the resulting value " << product
                                                          << " is too high in nanosecond resolution.");
    // Out of range values (which only pass when the assertion function returns) store 0 rather than
    // the undefined result of the conversion.
    nanoseconds = product >= 0 && product < 18446744073709551616.0 ? static_cast<unsigned long long>(product) : 0;
}

void Time::setMilliseconds(unsigned long long milliseconds)
{
    const unsigned long long product = milliseconds * 1000000ULL;
    TOV_ASSERT(product > milliseconds,
               "Overflow happened when converting " << milliseconds << " milliseconds to nanosecond resolution.");
    nanoseconds = product;
}

void Time::setMicroseconds(unsigned long long microseconds)
{
    const unsigned long long product = microseconds * 1000ULL;
    TOV_ASSERT(product > microseconds,
               "Overflow happened when converting " << microseconds << " microseconds to nanosecond resolution.");
    nanoseconds = product;
}

void Time::setNanoseconds(unsigned long long count)
{
    nanoseconds = count;
}

double Time::getSeconds() const
{
    return static_cast<double>(nanoseconds) / 1e9;
}

unsigned long long Time::getMilliseconds() const
{
    return static_cast<unsigned long long>(static_cast<double>(nanoseconds) / 1e6);
}

unsigned long long Time::getMicroseconds() const
{
    return static_cast<unsigned long long>(static_cast<double>(nanoseconds) / 1000.0);
}

unsigned long long Time::getNanoseconds() const
{
    return nanoseconds;
}

bool Time::operator==(const Time& other) const
{
    return nanoseconds == other.nanoseconds;
}

bool Time::operator!=(const Time& other) const
{
    return nanoseconds != other.nanoseconds;
}

void Time::add(const Time& other)
{
    nanoseconds += other.nanoseconds;
}

void Time::setAdd(const Time& a, const Time& b)
{
    nanoseconds = a.nanoseconds + b.nanoseconds;
}

void Time::sub(const Time& other)
{
    nanoseconds = nanoseconds <= other.nanoseconds ? 0 : nanoseconds - other.nanoseconds;
}

void Time::setSub(const Time& a, const Time& b)
{
    nanoseconds = a.nanoseconds <= b.nanoseconds ? 0 : a.nanoseconds - b.nanoseconds;
}

std::ostream& operator<<(std::ostream& stream, const Time& time)
{
    return stream << time.getSeconds() << "s";
}

void sleep(const Time& duration)
{
    // The platform sleep takes 32 bits of milliseconds: larger counts keep only their remainder.
    const unsigned int milliseconds = static_cast<unsigned int>(duration.getMilliseconds());
    if (milliseconds == 0) {
        sched_yield();
        return;
    }
    timespec request{static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1000000L};
    timespec remaining{};
    while (nanosleep(&request, &remaining) != 0) {
        request = remaining;
    }
}

} // namespace utils
} // namespace tov
