#pragma once
// impl::Random: the engine behind tov::utils::Random, remembering the seed it was made from so that a
// stream can be saved as a seed and a count.
//   impl::Random engine(7);   engine();   // engine.getSeed() == 7, engine.Count() == 1

#include <tov/utils/impl/RandomEngine.h>

namespace tov {
namespace utils {
namespace impl {

class Random : public RandomEngine<SFMT19937<Random_u32>, MixerSFMT> {
public:
    explicit Random(unsigned int seed);

    unsigned int getSeed() const;

private:
    unsigned int seed;
};

} // namespace impl
} // namespace utils
} // namespace tov
