#pragma once
// RandomManager: one seed for the whole system, handing out independent streams by index, so that a
// subsystem's numbers don't depend on who drew what before it.
//   tov::utils::Random traffic = manager.createRandomStream(3);   // the same stream in every run

#include <tov/utils/Export.h>
#include <tov/utils/Random.h>

namespace tov {
namespace utils {

class TOV_UTILS_API RandomManager {
public:
    // The seed 0xFFFF000 until seed() is called.
    RandomManager();

    // Streams created earlier keep their seeds.
    void seed(unsigned int seed);
    unsigned int getSeed() const;
    // Seeded with the manager's seed XOR the index: stream 0 has the manager's own seed.
    Random createRandomStream(unsigned int index) const;

private:
    unsigned int managerSeed;
};

} // namespace utils
} // namespace tov
