#pragma once
// Time: a span of time as an unsigned 64-bit count of nanoseconds; never negative.
//   tov::utils::Time step(0.016);                // 16 ms
//   tov::utils::sleep(step); std::cout << step;  // prints 0.016s

#include <tov/utils/Export.h>

#include <iosfwd>

namespace tov {
namespace utils {

class TOV_UTILS_API Time {
public:
    explicit Time(double seconds);
    explicit Time(unsigned long long nanoseconds = 0);

    void setToZero();
    bool isZero() const;

    // numerator / denominator seconds, computed in double.
    void setTime(unsigned long long numerator, unsigned long long denominator);
    // Asserts on a negative value, a NaN and an overflow of the nanosecond count.
    void setSeconds(double seconds);
    // Assert unless the product in nanoseconds is strictly greater than the argument, so 0 asserts too.
    void setMilliseconds(unsigned long long milliseconds);
    void setMicroseconds(unsigned long long microseconds);
    void setNanoseconds(unsigned long long nanoseconds);

    double getSeconds() const;
    unsigned long long getMilliseconds() const;
    unsigned long long getMicroseconds() const;
    unsigned long long getNanoseconds() const;

    bool operator==(const Time& other) const;
    bool operator!=(const Time& other) const;

    // Sums wrap silently; differences saturate at zero.
    void add(const Time& other);
    void setAdd(const Time& a, const Time& b);
    void sub(const Time& other);
    void setSub(const Time& a, const Time& b);

private:
    unsigned long long nanoseconds;
};

TOV_UTILS_API std::ostream& operator<<(std::ostream& stream, const Time& time);

// Sleeps for duration.getMilliseconds(), of which only the low 32 bits take effect; under a
// millisecond it only yields the time slice.
TOV_UTILS_API void sleep(const Time& duration);

} // namespace utils
} // namespace tov
