#include <tov/utils/impl/Random.h>

namespace tov {
namespace utils {
namespace impl {

Random::Random(unsigned int seed) : RandomEngine(seed), seed(seed) {}

unsigned int Random::getSeed() const
{
    return seed;
}

} // namespace impl
} // namespace utils
} // namespace tov
