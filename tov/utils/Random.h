#pragma once
// Random: a repeatable stream of 32-bit random numbers that knows how many it has drawn, so that a
// simulation draws the same numbers again after a save and a reload.
//   tov::utils::Random dice(42);
//   unsigned int face = dice(1, 6);   unsigned int word = dice();

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class AbstractLogger;
class Random;

namespace impl {
class Random;
}

[[nodiscard]] TOV_UTILS_API char* serializeRandom(unsigned int& size, const Random& random, AbstractLogger* logger);
[[nodiscard]] TOV_UTILS_API bool deserializeRandom(const char* buffer, unsigned int size, Random& random,
                                                   AbstractLogger* logger);

class TOV_UTILS_API Random {
public:
    // The state is worked out from the seed at the first draw.
    explicit Random(unsigned int seed);
    // A copy goes on with the same sequence, independently.
    Random(const Random& other);
    Random& operator=(const Random& other);
    ~Random();

    // The next word; every value equally likely.
    unsigned int operator()();
    // From 0 to n, both included, without bias; 0 draws nothing.
    unsigned int operator()(unsigned int n);
    // From a to b, both included, in either order; a == b draws nothing.
    unsigned int operator()(unsigned int a, unsigned int b);

private:
    friend char* serializeRandom(unsigned int& size, const Random& random, AbstractLogger* logger);
    friend bool deserializeRandom(const char* buffer, unsigned int size, Random& random, AbstractLogger* logger);

    unsigned int getSeed() const;
    // Words drawn since the seed.
    long long getCount() const;
    // Moves to an absolute count, either way, without drawing.
    void advance(long long count);

    impl::Random* engine; // owned
};

} // namespace utils
} // namespace tov
