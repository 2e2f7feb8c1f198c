#pragma once
// Seed vectors to raw states, and fresh seeds from the machine.

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <unistd.h>

namespace tov {
namespace utils {
namespace impl {

// ---- MixerSFMT -------------------------------------------------------------------------------------

inline void MixerSFMT::Mix(const RandomSeedVector& seed, std::uint32_t* s, unsigned int n)
{
    const unsigned int lag = n >= 623 ? 11 : n >= 68 ? 7 : n >= 39 ? 5 : n >= 7 ? 3 : (n - 1) / 2;
    const std::size_t m = seed.size();
    for (unsigned int i = 0; i < n; ++i) {
        s[i] = 0x8B8B8B8Bu;
    }
    unsigned int i = 0;
    unsigned int j = (n - lag) / 2;
    unsigned int k = j + lag;
    // r always equals the word just before i: it is the last one written.
    std::uint32_t r = s[n - 1];
    const std::size_t rounds = m + 1 > n ? m + 1 : n;
    for (std::size_t c = 0; c < rounds; ++c) {
        r ^= s[i] ^ s[j];
        r = (r ^ (r >> 27)) * 1664525u;
        s[j] += r;
        r += i + (c == 0 ? static_cast<std::uint32_t>(m) : c <= m ? static_cast<std::uint32_t>(seed[c - 1]) : 0u);
        s[k] += r;
        s[i] = r;
        i = i + 1 == n ? 0 : i + 1;
        j = j + 1 == n ? 0 : j + 1;
        k = k + 1 == n ? 0 : k + 1;
    }
    for (unsigned int c = 0; c < n; ++c) {
        r += s[i] + s[j];
        r = (r ^ (r >> 27)) * 1566083941u;
        s[j] ^= r;
        r -= i;
        s[k] ^= r;
        s[i] = r;
        i = i + 1 == n ? 0 : i + 1;
        j = j + 1 == n ? 0 : j + 1;
        k = k + 1 == n ? 0 : k + 1;
    }
}

inline void MixerSFMT::Mix(const RandomSeedVector& seed, std::uint64_t* state, unsigned int n)
{
    std::uint32_t words[2 * 312];
    Mix(seed, words, 2 * n);
    for (unsigned int i = 0; i < n; ++i) {
        state[i] = static_cast<std::uint64_t>(words[2 * i]) | static_cast<std::uint64_t>(words[2 * i + 1]) << 32;
    }
}

// ---- MixerMT0, MixerMT1 ----------------------------------------------------------------------------

namespace mt {

template <class Word>
struct MixerConstants;

template <>
struct MixerConstants<Random_u32> {
    static constexpr unsigned int shift = 30;
    static constexpr std::uint32_t fill = 1812433253u;
    static constexpr std::uint32_t first = 1664525u;
    static constexpr std::uint32_t second = 1566083941u;
    static constexpr std::uint32_t top = 0x80000000u;
};

template <>
struct MixerConstants<Random_u64> {
    static constexpr unsigned int shift = 62;
    static constexpr std::uint64_t fill = 6364136223846793005ull;
    static constexpr std::uint64_t first = 3935559000370003845ull;
    static constexpr std::uint64_t second = 2862933555777941757ull;
    // The top bit, as 0x80000000 is of a 32-bit word: what the published 64-bit seeding sets.
    static constexpr std::uint64_t top = 0x8000000000000000ull;
};

// The seed as words of the state's width: 64-bit keys take the seed words in pairs, the first in the
// low half, and a last single word stands alone.
template <class Word>
Vector<typename Word::type> Key(const RandomSeedVector& seed)
{
    using word_type = typename Word::type;
    Vector<word_type> key;
    if constexpr (Word::width == 32) {
        key.assign(seed.begin(), seed.end());
    } else {
        for (std::size_t i = 0; i < seed.size(); i += 2) {
            word_type word = static_cast<std::uint32_t>(seed[i]);
            if (i + 1 < seed.size()) {
                word |= static_cast<word_type>(static_cast<std::uint32_t>(seed[i + 1])) << 32;
            }
            key.push_back(word);
        }
    }
    return key;
}

template <class Word>
void Fill(typename Word::type* s, unsigned int n, typename Word::type first)
{
    using C = MixerConstants<Word>;
    s[0] = first;
    for (unsigned int i = 1; i < n; ++i) {
        s[i] = C::fill * (s[i - 1] ^ (s[i - 1] >> C::shift)) + i;
    }
}

template <class Word>
typename Word::type Scramble(typename Word::type previous, typename Word::type multiplier)
{
    return (previous ^ (previous >> MixerConstants<Word>::shift)) * multiplier;
}

} // namespace mt

template <class Word>
String MixerMT0<Word>::Name()
{
    return Word::width == 32 ? "MixerMT0<Random_u32>" : "MixerMT0<Random_u64>";
}

// The passes skip index 0, copying the last word there whenever they wrap around.
template <class Word>
void MixerMT0<Word>::Mix(const RandomSeedVector& seed, word_type* s, unsigned int n)
{
    using C = mt::MixerConstants<Word>;
    mt::Fill<Word>(s, n, seed.empty() ? 5489u : 19650218u);
    if (seed.empty()) {
        return;
    }
    const Vector<word_type> key = mt::Key<Word>(seed);
    unsigned int i = 1;
    std::size_t j = 0;
    for (std::size_t c = n > key.size() ? n : key.size(); c > 0; --c) {
        s[i] = (s[i] ^ mt::Scramble<Word>(s[i - 1], C::first)) + key[j] + static_cast<word_type>(j);
        if (++i >= n) {
            s[0] = s[n - 1];
            i = 1;
        }
        if (++j >= key.size()) {
            j = 0;
        }
    }
    for (unsigned int c = n - 1; c > 0; --c) {
        s[i] = (s[i] ^ mt::Scramble<Word>(s[i - 1], C::second)) - i;
        if (++i >= n) {
            s[0] = s[n - 1];
            i = 1;
        }
    }
    s[0] = C::top;
}

template <class Word>
String MixerMT1<Word>::Name()
{
    return Word::width == 32 ? "MixerMT1<Random_u32>" : "MixerMT1<Random_u64>";
}

template <class Word>
void MixerMT1<Word>::Mix(const RandomSeedVector& seed, word_type* s, unsigned int n)
{
    using C = mt::MixerConstants<Word>;
    mt::Fill<Word>(s, n, static_cast<word_type>(5489u + seed.size()));
    if (seed.empty()) {
        return;
    }
    const Vector<word_type> key = mt::Key<Word>(seed);
    unsigned int i = 0;
    std::size_t j = 0;
    for (std::size_t c = n > key.size() ? n : key.size(); c > 0; --c) {
        s[i] = (s[i] ^ mt::Scramble<Word>(s[i == 0 ? n - 1 : i - 1], C::first)) + key[j] + static_cast<word_type>(j);
        i = i + 1 == n ? 0 : i + 1;
        if (++j >= key.size()) {
            j = 0;
        }
    }
    for (unsigned int c = n; c > 0; --c) {
        s[i] = (s[i] ^ mt::Scramble<Word>(s[i == 0 ? n - 1 : i - 1], C::second)) - i;
        i = i + 1 == n ? 0 : i + 1;
    }
}

// ---- RandomSeed ------------------------------------------------------------------------------------

inline RandomSeedVector RandomSeed::SeedVector()
{
    const unsigned long mask = 0xFFFFFFFFul;
    RandomSeedVector seed;
    timespec counter{};
    if (clock_gettime(CLOCK_MONOTONIC, &counter) == 0) {
        const unsigned long long ticks = static_cast<unsigned long long>(counter.tv_sec) * 1000000000ull +
                                         static_cast<unsigned long long>(counter.tv_nsec);
        seed.push_back(static_cast<unsigned long>(ticks) & mask);
        seed.push_back(static_cast<unsigned long>(ticks >> 32) & mask);
    }
    const std::time_t now = std::time(nullptr);
    seed.push_back(static_cast<unsigned long>(now) & mask);
    seed.push_back(static_cast<unsigned long>(getpid()) & mask);
    std::tm calendar{};
    if (gmtime_r(&now, &calendar) != nullptr) {
        seed.push_back(static_cast<unsigned long>(calendar.tm_year + 1900) & mask);
    }
    return seed;
}

inline std::uint32_t RandomSeed::SeedWord()
{
    std::uint32_t t = 0;
    if (std::FILE* device = std::fopen("/dev/urandom", "rb")) {
        unsigned char bytes[4] = {0, 0, 0, 0};
        if (std::fread(bytes, 1, sizeof(bytes), device) == sizeof(bytes)) {
            t = static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
                static_cast<std::uint32_t>(bytes[2]) << 8 | static_cast<std::uint32_t>(bytes[3]);
        }
        std::fclose(device);
    }
    const RandomSeedVector words = SeedVector();
    for (std::size_t i = words.size(); i-- > 0;) {
        t = RandomChecksumStep(t, static_cast<std::uint32_t>(words[i]));
    }
    return t;
}

inline RandomSeedVector RandomSeed::StringToVector(const String& text)
{
    RandomSeedVector seed;
    const char* cursor = text.c_str();
    const char* const end = cursor + text.size();
    while (cursor < end) {
        if (*cursor < '0' || *cursor > '9') {
            ++cursor;
            continue;
        }
        char* behind = nullptr;
        seed.push_back(std::strtoul(cursor, &behind, 0));
        cursor = behind;
    }
    return seed;
}

} // namespace impl
} // namespace utils
} // namespace tov
