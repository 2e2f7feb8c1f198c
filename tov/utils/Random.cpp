#include <tov/utils/Random.h>

#include <tov/utils/Memory.h>
#include <tov/utils/impl/Random.h>

#include <climits>

namespace tov {
namespace utils {

Random::Random(unsigned int seed) : engine(TOV_NEW impl::Random(seed)) {}

Random::Random(const Random& other) : engine(TOV_NEW impl::Random(*other.engine)) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the engine assigns its state to itself unharmed.
Random& Random::operator=(const Random& other)
{
    *engine = *other.engine;
    return *this;
}

Random::~Random()
{
    TOV_DELETE(engine);
}

unsigned int Random::operator()()
{
    return (*engine)();
}

// The range [0, n] gets q + 1 words of the lowest (q + 1) * (n + 1) ones each; words above those are
// drawn again, so no result is favoured, and results come from the high part of the word.
unsigned int Random::operator()(unsigned int n)
{
    if (n == 0) {
        return 0;
    }
    const unsigned int m = n == UINT_MAX ? 1 : n + 1;
    const unsigned int q = (UINT_MAX - n) / m;
    const unsigned int limit = q * m + n;
    unsigned int word = (*engine)();
    while (word > limit) {
        word = (*engine)();
    }
    return word / (q + 1);
}

unsigned int Random::operator()(unsigned int a, unsigned int b)
{
    if (a > b) {
        const unsigned int swapped = a;
        a = b;
        b = swapped;
    }
    return a == b ? a : a + (*this)(b - a);
}

unsigned int Random::getSeed() const
{
    return engine->getSeed();
}

long long Random::getCount() const
{
    return engine->Count();
}

void Random::advance(long long count)
{
    engine->SetCount(count);
}

} // namespace utils
} // namespace tov
