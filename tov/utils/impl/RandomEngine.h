#pragma once
// RandomEngine: a long-period generator (the algorithm) seeded through a mixer, with a position that can
// be told and set in both directions, a leapfrog stride, a checksummed save format and a self test.
//   RandomEngine<SFMT19937<Random_u32>, MixerSFMT> engine(42u);
//   unsigned int word = engine();   engine.SetCount(0);   // engine() gives `word` again
//
// The templates are complete here (with the .inl files included at the end), so a host can instantiate
// any member of the family without exported symbols.

#include <tov/utils/Containers.h>
#include <tov/utils/String.h>

#include <cstdint>
#include <istream>
#include <ostream>

namespace tov {
namespace utils {
namespace impl {

// Word types: an unsigned integer of exactly 32 or 64 bits and its width.
struct Random_u32 {
    using type = std::uint32_t;
    static constexpr unsigned int width = 32;
};

struct Random_u64 {
    using type = std::uint64_t;
    static constexpr unsigned int width = 64;
};

// A seed is a vector of 32-bit words of any length, empty included.
using RandomSeedVector = Vector<unsigned long>;

// Four characters as one word, the first in the top byte: how members of the family tag a save.
constexpr std::uint32_t RandomVersionWord(char a, char b, char c, char d)
{
    return static_cast<std::uint32_t>(static_cast<unsigned char>(a)) << 24 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(b)) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(d));
}

// One step of the save checksum: rotate left by one bit, add the word.
inline std::uint32_t RandomChecksumStep(std::uint32_t checksum, std::uint32_t word)
{
    return ((checksum << 1) | (checksum >> 31)) + word;
}

// The Mersenne Twister on 32-bit (N 624) or 64-bit (N 312) words. The engine owns the state; these
// functions work on it in place, one whole round of N words at a time.
template <class Word>
class MT19937 {
public:
    using word_type = typename Word::type;
    static constexpr unsigned int N = Word::width == 32 ? 624 : 312;
    static constexpr unsigned int M = Word::width == 32 ? 397 : 156;
    static constexpr std::uint32_t Version =
        Word::width == 32 ? RandomVersionWord('E', 'n', 'M', 'T') : RandomVersionWord('E', 'n', 'M', 'U');

    static String Name();
    static void Transition(word_type* state);
    // Exactly undoes Transition on any state that Transition or Normalize produced.
    static void InverseTransition(word_type* state);
    static word_type Output(word_type word);
    static void Normalize(word_type* state);
    // Folds the state into `checksum` as Save writes it, and asserts on a state that no seed can give.
    static std::uint32_t CheckState(const word_type* state, std::uint32_t checksum);

private:
    static constexpr word_type Matrix =
        static_cast<word_type>(Word::width == 32 ? 0x9908B0DFull : 0xB5026F5AA96619E9ull);
    // Of word 0 only the bits above LowerMask take part in a transition.
    static constexpr word_type LowerMask = 0x7FFFFFFF;
    static constexpr word_type UpperMask = static_cast<word_type>(~LowerMask);
    static constexpr word_type TopBit = static_cast<word_type>(word_type(1) << (Word::width - 1));

    static word_type Twist(word_type y);
    static word_type Untwist(word_type twisted);
    static word_type FreeBitsOfWordZero(const word_type* state);
};

// The SIMD-oriented Fast Mersenne Twister of exponent 19937, in plain scalar code: 156 lanes of
// 128 bits, read as 624 words of 32 bits or 312 words of 64 bits (the first 32-bit word in the low half).
template <class Word>
class SFMT19937 {
public:
    using word_type = typename Word::type;
    static constexpr unsigned int N = Word::width == 32 ? 624 : 312;
    static constexpr std::uint32_t Version =
        Word::width == 32 ? RandomVersionWord('E', 'n', 'S', 'M') : RandomVersionWord('E', 'n', 'S', 'N');

    static String Name();
    static void Transition(word_type* state);
    static void InverseTransition(word_type* state);
    static word_type Output(word_type word) { return word; }
    // The period certification.
    static void Normalize(word_type* state);
    static std::uint32_t CheckState(const word_type* state, std::uint32_t checksum);

private:
    struct Lane {
        std::uint64_t low;
        std::uint64_t high;
    };
    static constexpr unsigned int Lanes = 156;
    static constexpr unsigned int Pos1 = 122;

    static Lane Load(const word_type* state, unsigned int lane);
    static void Store(word_type* state, unsigned int lane, const Lane& value);
    // Everything of one step of the recursion except the lane being replaced and its own shift.
    static Lane Feedback(const Lane& b, const Lane& c, const Lane& d);
    static std::uint32_t Word32(const word_type* state, unsigned int index);
};

// The mixers turn a seed vector into a raw state of N words; the algorithm normalises it afterwards.
class MixerSFMT {
public:
    static constexpr std::uint32_t Version = RandomVersionWord('M', 'x', 'S', 'M');
    static String Name() { return "MixerSFMT"; }
    // Works on 32-bit words; a 64-bit state is packed from pairs, the first in the low half.
    static void Mix(const RandomSeedVector& seed, std::uint32_t* state, unsigned int n);
    static void Mix(const RandomSeedVector& seed, std::uint64_t* state, unsigned int n);
};

// The 2002 initialisation of the Mersenne Twister: the linear fill from one word, then init_by_array.
template <class Word>
class MixerMT0 {
public:
    using word_type = typename Word::type;
    static constexpr std::uint32_t Version =
        Word::width == 32 ? RandomVersionWord('M', 'x', 'M', 'T') : RandomVersionWord('M', 'x', 'M', 'U');
    static String Name();
    static void Mix(const RandomSeedVector& seed, word_type* state, unsigned int n);
};

// As MixerMT0, but the fill starts from 5489 plus the seed length and both passes cycle over all words.
template <class Word>
class MixerMT1 {
public:
    using word_type = typename Word::type;
    static constexpr std::uint32_t Version =
        Word::width == 32 ? RandomVersionWord('M', 'x', 'M', 'V') : RandomVersionWord('M', 'x', 'M', 'W');
    static String Name();
    static void Mix(const RandomSeedVector& seed, word_type* state, unsigned int n);
};

// Fresh, unrepeatable seeds, for those who don't want a repeatable stream.
class RandomSeed {
public:
    // Counter (low, high), seconds, process id, current UTC year.
    static RandomSeedVector SeedVector();
    // Four bytes of /dev/urandom (0 without it) with SeedVector folded in.
    static std::uint32_t SeedWord();
    // Every number in the text, read with strtoul in base 0 ("12 0x1F 017").
    static RandomSeedVector StringToVector(const String& text);
};

// The two words that SelfTest expects of a member: the 10000th word with an empty seed, and the
// 1000000th with the seed {0x1234, 0x5678, 0x9ABC, 0xDEF0}. A member without them skips the comparisons.
template <class Algorithm, class Mixer>
struct RandomSelfTestValues {
    static constexpr bool known = false;
    static constexpr typename Algorithm::word_type first = 0;
    static constexpr typename Algorithm::word_type second = 0;
};

template <class Algorithm, class Mixer>
class RandomEngine {
public:
    using result_type = typename Algorithm::word_type;
    static constexpr unsigned int N = Algorithm::N;
    // The position of an engine whose state has not been worked out from its seed yet.
    static constexpr std::uint32_t Uninitialized = 0xFFFFFFFF;
    // "Rand" "Lib0": the save format's own version, the same for every member.
    static constexpr std::uint64_t SaveVersion = 0x52616E644C696230ull;

    explicit RandomEngine(std::uint32_t seed);
    explicit RandomEngine(const RandomSeedVector& seed);
    // Loads what Save wrote; asserts on anything that Save could not have written.
    RandomEngine(std::istream& in, bool binary);
    virtual ~RandomEngine() = default;
    RandomEngine(const RandomEngine&) = default;
    RandomEngine& operator=(const RandomEngine&) = default;

    void Reseed(std::uint32_t seed);
    void Reseed(const RandomSeedVector& seed);
    // Loads like the stream constructor; the loaded state is kept.
    void Reseed(std::istream& in, bool binary);
    // Back to the seed: the state is worked out again at the next draw or step; the stride becomes 1.
    virtual void Reset();

    result_type operator()()
    {
        if (position >= N) {
            Next();
        }
        const result_type word = state[position];
        position += stride;
        return Algorithm::Output(word);
    }

    static constexpr result_type min() { return 0; }
    static constexpr result_type max() { return static_cast<result_type>(~result_type(0)); }

    // Words passed since the seed: 0 before the first draw, else rounds * N + position.
    std::int64_t Count() const;
    // Moves to an absolute count, forwards or backwards, without drawing.
    void SetCount(std::int64_t count);
    void StepCount(std::int64_t steps);
    // Leapfrog: this engine sees words offset, offset + stride, ... of the plain sequence.
    void SetStride(unsigned int stride, unsigned int offset = 0);
    unsigned int GetStride() const { return stride; }

    void Save(std::ostream& out, bool binary) const;
    static String Name();
    static void SelfTest();

    // Equal counts, seeds and strides; the state follows from those.
    bool operator==(const RandomEngine& other) const;
    bool operator!=(const RandomEngine& other) const { return !(*this == other); }

private:
    void Init();
    void Next();
    void Transitions(std::int64_t count);
    void Load(std::istream& in, bool binary);
    std::uint32_t Check(std::uint64_t version, std::uint32_t algorithm, std::uint32_t mixer,
                        const RandomSeedVector& seedRead, std::uint32_t positionRead, std::uint32_t strideRead,
                        std::int64_t roundsRead, const result_type* stateRead) const;
    static String SeedText(const RandomSeedVector& seed);

    RandomSeedVector seed;
    result_type state[N];
    std::uint32_t position;
    std::int64_t rounds;
    std::uint32_t stride;
};

} // namespace impl
} // namespace utils
} // namespace tov

#include <tov/utils/impl/RandomAlgorithms.inl>
#include <tov/utils/impl/RandomEngine.inl>
#include <tov/utils/impl/RandomMixers.inl>
