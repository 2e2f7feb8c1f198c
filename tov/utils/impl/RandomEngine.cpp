#include <tov/utils/impl/RandomEngine.h>

namespace tov {
namespace utils {
namespace impl {

// Every member of the family is built once here, so that a change that breaks one of them breaks the
// library's build and not only a host's.
template class RandomEngine<MT19937<Random_u32>, MixerSFMT>;
template class RandomEngine<MT19937<Random_u64>, MixerSFMT>;
template class RandomEngine<SFMT19937<Random_u32>, MixerSFMT>;
template class RandomEngine<SFMT19937<Random_u64>, MixerSFMT>;
template class RandomEngine<MT19937<Random_u32>, MixerMT0<Random_u32>>;
template class RandomEngine<MT19937<Random_u64>, MixerMT0<Random_u64>>;
template class RandomEngine<MT19937<Random_u32>, MixerMT1<Random_u32>>;
template class RandomEngine<MT19937<Random_u64>, MixerMT1<Random_u64>>;

} // namespace impl
} // namespace utils
} // namespace tov
