#include <tov/utils/details/Remainder.h>

#include <gtest/gtest.h>

#include <random>

using tov::utils::details::Remainder;

// Every kind of divisor (one, powers of two, the bucket counts, either side of 2^32, the largest) against
// the numerators where a multiplier off by one shows first, and random ones.
TEST(RemainderTest, GivesWhatTheDivisionGives)
{
    std::mt19937_64 random(7);
    std::vector<unsigned long long> divisors = {
        1, 2, 3, 10, 24, 1u << 20, 7919, 0xFFFFFFFFull, 1ull << 32, 0x100000001ull, (1ull << 63) - 1};
    for (int i = 0; i < 200; ++i) {
        divisors.push_back(random() >> (random() % 63) | 1);
    }
    for (const unsigned long long divisor : divisors) {
        const Remainder byDivisor(divisor);
        std::vector<unsigned long long> numerators = {0, divisor - 1, divisor, divisor + 1, ~0ull, ~0ull - divisor};
        for (int i = 0; i < 2000; ++i) {
            numerators.push_back(random());
        }
        for (const unsigned long long numerator : numerators) {
            ASSERT_EQ(byDivisor.of(numerator), numerator % divisor) << numerator << " % " << divisor;
        }
    }
}
