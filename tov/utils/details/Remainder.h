#pragma once
// Remainder: the remainder of any 64-bit number by one divisor fixed in advance, exactly as `%` gives it,
// by a multiplication and shifts instead of a division. HashTable's rebuild divides every key by the same
// bucket count, where the division was most of the rebuild's time.
//   const details::Remainder byCount(24);   // byCount.of(key) == key % 24, for every key

namespace tov {
namespace utils {
namespace details {

class Remainder {
    // A GNU extension, marked so that a host built with -pedantic is not warned.
    __extension__ typedef unsigned __int128 Wide;

public:
    // `divisor` from 1 to 2^63 - 1. The constants are those of the unsigned division by an invariant
    // integer with a multiplier of 64 bits: l = ceil(log2 divisor), multiplier = 2^64 (2^l - divisor) /
    // divisor + 1, and the quotient (t + ((n - t) >> min(l, 1))) >> max(l - 1, 0) with t the high half of
    // multiplier * n, which is exact for every n below 2^64.
    explicit Remainder(unsigned long long divisor) : Remainder(divisor, ceilLog2(divisor)) {}

    unsigned long long of(unsigned long long numerator) const
    {
        const unsigned long long high =
            static_cast<unsigned long long>((static_cast<Wide>(multiplier) * numerator) >> 64);
        const unsigned long long quotient = (high + ((numerator - high) >> firstShift)) >> secondShift;
        return numerator - quotient * divisor;
    }

private:
    Remainder(unsigned long long divisor, int log)
        : divisor(divisor), firstShift(log < 1 ? 0 : 1), secondShift(log < 1 ? 0 : log - 1),
          multiplier(static_cast<unsigned long long>((static_cast<Wide>((1ull << log) - divisor) << 64) / divisor) + 1)
    {
    }

    static int ceilLog2(unsigned long long value) { return value <= 1 ? 0 : 64 - __builtin_clzll(value - 1); }

    unsigned long long divisor;
    int firstShift;
    int secondShift;
    unsigned long long multiplier;
};

} // namespace details
} // namespace utils
} // namespace tov
