#include <tov/utils/RandomManager.h>

namespace tov {
namespace utils {

namespace {
const unsigned int defaultSeed = 0xFFFF000;
}

RandomManager::RandomManager() : managerSeed(defaultSeed) {}

void RandomManager::seed(unsigned int seed)
{
    managerSeed = seed;
}

unsigned int RandomManager::getSeed() const
{
    return managerSeed;
}

Random RandomManager::createRandomStream(unsigned int index) const
{
    return Random(managerSeed ^ index);
}

} // namespace utils
} // namespace tov
