#include <tov/utils/impl/RandomEngine.h>

#include "support/AssertionGuard.h"
#include "support/RecordingAssertions.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using namespace tov::utils::impl;
using tov::utils::OStringStream;

namespace {

using MT32Sfmt = RandomEngine<MT19937<Random_u32>, MixerSFMT>;
using MT64Sfmt = RandomEngine<MT19937<Random_u64>, MixerSFMT>;
using SFMT32 = RandomEngine<SFMT19937<Random_u32>, MixerSFMT>;
using SFMT64 = RandomEngine<SFMT19937<Random_u64>, MixerSFMT>;
using MT32Mt0 = RandomEngine<MT19937<Random_u32>, MixerMT0<Random_u32>>;
using MT64Mt0 = RandomEngine<MT19937<Random_u64>, MixerMT0<Random_u64>>;
using MT32Mt1 = RandomEngine<MT19937<Random_u32>, MixerMT1<Random_u32>>;
using MT64Mt1 = RandomEngine<MT19937<Random_u64>, MixerMT1<Random_u64>>;

const RandomSeedVector selfTestSeed{0x1234, 0x5678, 0x9ABC, 0xDEF0};

template <class Engine>
std::string save(const Engine& engine, bool binary)
{
    OStringStream out;
    engine.Save(out, binary);
    return std::string(out.str().data(), out.str().size());
}

template <class Engine>
Engine load(const std::string& text, bool binary)
{
    std::istringstream in(text);
    return Engine(in, binary);
}

std::vector<std::string> tokens(const std::string& text)
{
    std::istringstream in(text);
    std::vector<std::string> words;
    for (std::string word; in >> word;) {
        words.push_back(word);
    }
    return words;
}

std::string withToken(const std::string& text, std::size_t index, unsigned long value)
{
    std::vector<std::string> words = tokens(text);
    std::ostringstream joined;
    for (std::size_t i = 0; i < words.size(); ++i) {
        joined << (i == 0 ? "" : " ");
        i == index ? joined << std::hex << value : joined << words[i];
    }
    return joined.str();
}

unsigned long tokenValue(const std::string& text, std::size_t index)
{
    return std::stoul(tokens(text).at(index), nullptr, 16);
}

// Save tokens: version (2), algorithm, mixer, seed length, the seed words, position, stride, rounds (2),
// then the state. For a one-word seed the state starts here.
const std::size_t firstStateToken = 10;

// ---- independent references: the published seedings written out plainly, fed to the standard engines --

// Hands fixed words to a standard engine's seed(), which takes them as its state.
struct FixedWords {
    using result_type = std::uint32_t;
    std::vector<std::uint32_t> words;
    template <class It>
    void generate(It begin, It end) const
    {
        for (std::size_t i = 0; begin != end; ++begin, ++i) {
            *begin = words.at(i);
        }
    }
};

std::vector<std::uint32_t> toWords32(const std::vector<std::uint64_t>& state)
{
    std::vector<std::uint32_t> words;
    for (std::uint64_t word : state) {
        words.push_back(static_cast<std::uint32_t>(word));
        words.push_back(static_cast<std::uint32_t>(word >> 32));
    }
    return words;
}

std::vector<std::uint32_t> referenceMixerSfmt(const RandomSeedVector& seed)
{
    const std::size_t n = 624, lag = 11, mid = (n - lag) / 2, m = seed.size();
    std::vector<std::uint32_t> s(n, 0x8B8B8B8Bu);
    std::size_t i = 0;
    const std::size_t count = std::max(m + 1, n);
    for (std::size_t c = 0; c < count; ++c, i = (i + 1) % n) {
        std::uint32_t r = s[i] ^ s[(i + mid) % n] ^ s[(i + n - 1) % n];
        r = (r ^ (r >> 27)) * 1664525u;
        s[(i + mid) % n] += r;
        r += static_cast<std::uint32_t>(i) + (c == 0 ? static_cast<std::uint32_t>(m) : c <= m ? seed[c - 1] : 0);
        s[(i + mid + lag) % n] += r;
        s[i] = r;
    }
    for (std::size_t c = 0; c < n; ++c, i = (i + 1) % n) {
        std::uint32_t r = s[i] + s[(i + mid) % n] + s[(i + n - 1) % n];
        r = (r ^ (r >> 27)) * 1566083941u;
        s[(i + mid) % n] ^= r;
        r -= static_cast<std::uint32_t>(i);
        s[(i + mid + lag) % n] ^= r;
        s[i] = r;
    }
    return s;
}

template <class Word>
struct MtConstants { // 32-bit words; the 64-bit ones below
    static const std::size_t n = 624;
    static const int shift = 30;
    static const Word fill = 1812433253u, first = 1664525u, second = 1566083941u;
};
template <>
struct MtConstants<std::uint64_t> {
    static const std::size_t n = 312;
    static const int shift = 62;
    static const std::uint64_t fill = 6364136223846793005ull, first = 3935559000370003845ull,
                               second = 2862933555777941757ull;
};

template <class Word>
std::vector<Word> mtKey(const RandomSeedVector& seed)
{
    std::vector<Word> key;
    for (std::size_t i = 0; i < seed.size(); i += sizeof(Word) / 4) {
        Word word = static_cast<std::uint32_t>(seed[i]);
        if (sizeof(Word) == 8 && i + 1 < seed.size()) {
            word |= static_cast<Word>(seed[i + 1]) << 16 << 16;
        }
        key.push_back(word);
    }
    return key;
}

// init_by_array as published in 2002 (first = true), or its variant over all words from index 0.
template <class Word>
std::vector<Word> referenceMixerMt(const RandomSeedVector& seed, bool variant)
{
    using C = MtConstants<Word>;
    const std::size_t n = C::n;
    std::vector<Word> s(n);
    s[0] = variant ? 5489u + seed.size() : seed.empty() ? 5489u : 19650218u;
    for (std::size_t i = 1; i < n; ++i) {
        s[i] = C::fill * (s[i - 1] ^ (s[i - 1] >> C::shift)) + static_cast<Word>(i);
    }
    if (seed.empty()) {
        return s;
    }
    const std::vector<Word> key = mtKey<Word>(seed);
    auto scramble = [](Word w, Word multiplier) { return (w ^ (w >> C::shift)) * multiplier; };
    std::size_t i = variant ? 0 : 1;
    auto advance = [&] {
        if (++i == n) {
            i = variant ? 0 : 1;
            s[0] = variant ? s[0] : s[n - 1];
        }
    };
    for (std::size_t c = 0; c < std::max(n, key.size()); ++c, advance()) {
        const std::size_t j = c % key.size();
        s[i] = (s[i] ^ scramble(s[(i + n - 1) % n], C::first)) + key[j] + static_cast<Word>(j);
    }
    for (std::size_t c = 0; c < (variant ? n : n - 1); ++c, advance()) {
        s[i] = (s[i] ^ scramble(s[(i + n - 1) % n], C::second)) - static_cast<Word>(i);
    }
    if (!variant) {
        s[0] = static_cast<Word>(Word(1) << (sizeof(Word) * 8 - 1));
    }
    return s;
}

// A standard engine started from a given raw state (its low bits of word 0 never matter).
template <class Standard>
Standard standardFrom(const std::vector<std::uint32_t>& words)
{
    Standard engine;
    FixedWords fixed{words};
    engine.seed(fixed);
    return engine;
}


// SFMT written for clarity: 128-bit lanes as four words, the first the lowest.
class ReferenceSfmt {
public:
    explicit ReferenceSfmt(const RandomSeedVector& seed) : s(referenceMixerSfmt(seed))
    {
        std::uint32_t parity = (s[0] & 1u) ^ (s[3] & 0x13C9E684u);
        for (int shift = 16; shift > 0; shift /= 2) {
            parity ^= parity >> shift;
        }
        if ((parity & 1u) == 0) {
            s[0] ^= 1u;
        }
    }

    std::uint32_t next()
    {
        if (index == 624) {
            generate();
            index = 0;
        }
        return s[index++];
    }

private:
    using Lane = std::array<std::uint32_t, 4>;

    Lane lane(std::size_t i) const { return {s[4 * i], s[4 * i + 1], s[4 * i + 2], s[4 * i + 3]}; }

    static Lane byteShiftLeft(const Lane& x)
    {
        return {x[0] << 8, x[1] << 8 | x[0] >> 24, x[2] << 8 | x[1] >> 24, x[3] << 8 | x[2] >> 24};
    }

    static Lane byteShiftRight(const Lane& x)
    {
        return {x[0] >> 8 | x[1] << 24, x[1] >> 8 | x[2] << 24, x[2] >> 8 | x[3] << 24, x[3] >> 8};
    }

    void generate()
    {
        const std::uint32_t masks[4] = {0xDFFFFFEFu, 0xDDFECB7Fu, 0xBFFAFFFFu, 0xBFFFFFF6u};
        for (std::size_t i = 0; i < 156; ++i) {
            const Lane a = lane(i), b = lane((i + 122) % 156), c = lane((i + 154) % 156), d = lane((i + 155) % 156);
            const Lane x = byteShiftLeft(a), y = byteShiftRight(c);
            for (std::size_t w = 0; w < 4; ++w) {
                s[4 * i + w] = a[w] ^ x[w] ^ ((b[w] >> 11) & masks[w]) ^ y[w] ^ (d[w] << 18);
            }
        }
    }

    std::vector<std::uint32_t> s;
    std::size_t index = 624;
};

// ---- every member ----------------------------------------------------------------------------------

template <class Engine>
class EveryEngine : public tov::testing::AssertionTest {
};

using Engines = ::testing::Types<MT32Sfmt, MT64Sfmt, SFMT32, SFMT64, MT32Mt0, MT64Mt0, MT32Mt1, MT64Mt1>;
TYPED_TEST_SUITE(EveryEngine, Engines);

} // namespace

TYPED_TEST(EveryEngine, PassesItsSelfTest)
{
    EXPECT_NO_THROW(TypeParam::SelfTest());
}

TYPED_TEST(EveryEngine, SetCountZeroAfterAMillionDrawsGivesTheFirstWordsAgain)
{
    TypeParam engine(RandomSeedVector{7, 8, 9});
    std::vector<typename TypeParam::result_type> start;
    for (unsigned int i = 0; i < TypeParam::N + 10; ++i) {
        start.push_back(engine());
    }
    for (int i = 0; i < 1000000; ++i) {
        engine();
    }
    const auto late = engine();
    engine.SetCount(0);
    for (unsigned int i = 0; i < start.size(); ++i) {
        ASSERT_EQ(start[i], engine()) << i;
    }
    engine.SetCount(1000000 + TypeParam::N + 10);
    EXPECT_EQ(late, engine());
}

TYPED_TEST(EveryEngine, BackwardsPastTheSeedAndForwardAgainIsExact)
{
    TypeParam reference(12345u);
    std::vector<typename TypeParam::result_type> words;
    for (unsigned int i = 0; i < 3 * TypeParam::N; ++i) {
        words.push_back(reference());
    }
    TypeParam engine(12345u);
    engine.SetCount(-5 * static_cast<std::int64_t>(TypeParam::N) - 17);
    EXPECT_EQ(-5 * static_cast<std::int64_t>(TypeParam::N) - 17, engine.Count());
    engine.StepCount(5 * TypeParam::N + 17 + 2);
    for (unsigned int i = 2; i < words.size(); ++i) {
        ASSERT_EQ(words[i], engine()) << i;
    }
}

TYPED_TEST(EveryEngine, StrideSubsequencesInterleaveToThePlainSequence)
{
    // A stride above N makes a single draw pass whole rounds.
    for (unsigned int stride : {3u, 2 * TypeParam::N + 5}) {
        TypeParam plain(99u);
        std::vector<TypeParam> lanes;
        for (unsigned int offset = 0; offset < stride; ++offset) {
            lanes.emplace_back(99u);
            lanes.back().SetStride(stride, offset);
            EXPECT_EQ(stride, lanes.back().GetStride());
        }
        for (unsigned int round = 0; round < 3; ++round) {
            for (unsigned int offset = 0; offset < stride; ++offset) {
                ASSERT_EQ(plain(), lanes[offset]()) << "stride " << stride << " offset " << offset;
            }
        }
    }
}

TYPED_TEST(EveryEngine, SavedTextAndBinaryLoadBackToEqualEngines)
{
    TypeParam engine(RandomSeedVector{1, 2, 3, 4, 5});
    auto roundTrip = [](const TypeParam& original, const char* when) {
        for (bool binary : {false, true}) {
            TypeParam copy = original;
            TypeParam loaded = load<TypeParam>(save(original, binary), binary);
            EXPECT_TRUE(loaded == original) << when << (binary ? " binary" : " text");
            for (int i = 0; i < 700; ++i) {
                ASSERT_EQ(copy(), loaded()) << when << " word " << i;
            }
        }
    };
    roundTrip(engine, "before the first draw");
    engine();
    roundTrip(engine, "after one draw");
    engine.SetCount(TypeParam::N);
    roundTrip(engine, "at the end of a round");
    engine.SetStride(5, 2);
    roundTrip(engine, "with a stride");
    engine.Reset();
    engine.SetCount(-1000);
    roundTrip(engine, "before the seed");
}

TYPED_TEST(EveryEngine, ADamagedWordFailsTheChecksumAndTheLoadCarriesOnWithWhatItRead)
{
    TypeParam engine(77u);
    engine.SetCount(1000);
    const std::string text = save(engine, false);
    // A digit of a state word the next draw does not read, then the checksum itself.
    for (std::size_t token : {firstStateToken + 100, tokens(text).size() - 1}) {
        tov::testing::RecordingAssertions recording;
        TypeParam loaded = load<TypeParam>(withToken(text, token, tokenValue(text, token) ^ 1u), false);
        ASSERT_EQ(1u, recording.messages().size()) << token;
        EXPECT_EQ(std::string(TypeParam::Name().c_str()) + ": Checksum failure", recording.messages()[0]);
        EXPECT_EQ(1000, loaded.Count());
        EXPECT_EQ(TypeParam(engine)(), loaded()) << token;
    }
}

// ---- exactness against the standard library and the published seedings ------------------------------

namespace {

// Both MT mixers, on an empty seed, give the default standard engine, whose 10000th word is known.
template <class Mt0, class Mt1, class Standard>
void expectDefaultStandardEngine(typename Standard::result_type tenThousandth)
{
    Mt0 mt0{RandomSeedVector()};
    Mt1 mt1{RandomSeedVector()};
    Standard standard;
    for (int i = 0; i < 9999; ++i) {
        const auto expected = standard();
        ASSERT_EQ(expected, mt0()) << i;
        ASSERT_EQ(expected, mt1()) << i;
    }
    EXPECT_EQ(tenThousandth, mt0());
    EXPECT_EQ(tenThousandth, mt1());
}

} // namespace

TEST(RandomEngineExactness, EmptySeedsGiveTheDefaultStandardEnginesAndMixerMT0ThePublishedFirstWords)
{
    expectDefaultStandardEngine<MT32Mt0, MT32Mt1, std::mt19937>(4123659995u);
    expectDefaultStandardEngine<MT64Mt0, MT64Mt1, std::mt19937_64>(9981545732273789042ull);
    // MixerMT0 gives the published first words.
    MT32Mt0 engine32(RandomSeedVector{0x123, 0x234, 0x345, 0x456});
    EXPECT_EQ(1067595299u, engine32());
    EXPECT_EQ(955945823u, engine32());
    MT64Mt0 engine64(RandomSeedVector{0x12345, 0, 0x23456, 0, 0x34567, 0, 0x45678, 0});
    EXPECT_EQ(7266447313870364031ull, engine64());
    EXPECT_EQ(4946485549665804864ull, engine64());
}

// Every self-test word is re-derived outside the engine: the MT members from the plainly written
// seeding run through the standard engines, the SFMT members from the plain SFMT above.
namespace {

template <class Algorithm, class Mixer, class Draw>
void expectSelfTestWords(Draw referenceWord)
{
    using Values = RandomSelfTestValues<Algorithm, Mixer>;
    ASSERT_TRUE(Values::known);
    EXPECT_EQ(Values::first, referenceWord(RandomSeedVector(), 9999));
    EXPECT_EQ(Values::second, referenceWord(selfTestSeed, 999999));
}

template <class Standard>
typename Standard::result_type wordAt(Standard standard, unsigned long long index)
{
    standard.discard(index);
    return standard();
}

// The index-th word of Word width from the plain SFMT, whose 64-bit words are two 32-bit ones, low first.
template <class Word>
Word sfmtWordAt(const RandomSeedVector& seed, unsigned long long index)
{
    ReferenceSfmt reference(seed);
    const unsigned long long perWord = sizeof(Word) / 4;
    for (unsigned long long i = 0; i < perWord * index; ++i) {
        reference.next();
    }
    const Word low = reference.next();
    return perWord == 1 ? low : low | static_cast<Word>(reference.next()) << 16 << 16;
}

} // namespace

TEST(RandomEngineExactness, SelfTestWordsMatchIndependentSources)
{
    expectSelfTestWords<MT19937<Random_u32>, MixerSFMT>([](const RandomSeedVector& seed, unsigned long long index) {
        return wordAt(standardFrom<std::mt19937>(referenceMixerSfmt(seed)), index);
    });
    // The 64-bit MT takes the mixed 32-bit words two by two, low first, as the standard engine's seed does.
    expectSelfTestWords<MT19937<Random_u64>, MixerSFMT>([](const RandomSeedVector& seed, unsigned long long index) {
        return wordAt(standardFrom<std::mt19937_64>(referenceMixerSfmt(seed)), index);
    });
    expectSelfTestWords<SFMT19937<Random_u32>, MixerSFMT>(sfmtWordAt<std::uint32_t>);
    expectSelfTestWords<SFMT19937<Random_u64>, MixerSFMT>(sfmtWordAt<std::uint64_t>);
    // And so the plain SFMT above gives the published words.
    EXPECT_EQ(0xA0A2CEB3u, (RandomSelfTestValues<SFMT19937<Random_u32>, MixerSFMT>::first));
    EXPECT_EQ(782200760u, (RandomSelfTestValues<SFMT19937<Random_u32>, MixerSFMT>::second));
    auto mt32 = [](bool variant) {
        return [variant](const RandomSeedVector& seed, unsigned long long index) {
            return wordAt(standardFrom<std::mt19937>(referenceMixerMt<std::uint32_t>(seed, variant)), index);
        };
    };
    auto mt64 = [](bool variant) {
        return [variant](const RandomSeedVector& seed, unsigned long long index) {
            return wordAt(standardFrom<std::mt19937_64>(toWords32(referenceMixerMt<std::uint64_t>(seed, variant))),
                          index);
        };
    };
    expectSelfTestWords<MT19937<Random_u32>, MixerMT0<Random_u32>>(mt32(false));
    expectSelfTestWords<MT19937<Random_u64>, MixerMT0<Random_u64>>(mt64(false));
    expectSelfTestWords<MT19937<Random_u32>, MixerMT1<Random_u32>>(mt32(true));
    expectSelfTestWords<MT19937<Random_u64>, MixerMT1<Random_u64>>(mt64(true));
}

TEST(RandomEngineExactness, SeededStreamsFollowTheReferencesWordForWord)
{
    const RandomSeedVector seeds[] = {{}, {42}, {1, 2, 3}, RandomSeedVector(700, 0xDEADBEEF)};
    for (const RandomSeedVector& seed : seeds) {
        std::mt19937 mt32 = standardFrom<std::mt19937>(referenceMixerMt<std::uint32_t>(seed, true));
        MT32Mt1 engine32(seed);
        std::mt19937_64 mt64 = standardFrom<std::mt19937_64>(toWords32(referenceMixerMt<std::uint64_t>(seed, false)));
        MT64Mt0 engine64(seed);
        ReferenceSfmt sfmt(seed);
        SFMT64 engineSfmt(seed);
        for (int i = 0; i < 2000; ++i) {
            ASSERT_EQ(mt32(), engine32()) << "seed length " << seed.size() << " word " << i;
            ASSERT_EQ(mt64(), engine64()) << "seed length " << seed.size() << " word " << i;
            const std::uint64_t low = sfmt.next();
            ASSERT_EQ(low | static_cast<std::uint64_t>(sfmt.next()) << 32, engineSfmt()) << i;
        }
    }
}

// ---- positioning -----------------------------------------------------------------------------------

TEST(RandomEnginePosition, CountsFromZeroStandsAtTheEndOfARoundAndReseedsStartOver)
{
    SFMT32 plain(0u);
    EXPECT_EQ(0, plain.Count());
    std::vector<std::uint32_t> words;
    for (unsigned int i = 0; i < 2 * SFMT32::N + 3; ++i) {
        words.push_back(plain());
        ASSERT_EQ(static_cast<std::int64_t>(i) + 1, plain.Count());
    }
    SFMT32 atEnd(0u);
    atEnd.SetCount(SFMT32::N);
    EXPECT_EQ(static_cast<std::int64_t>(SFMT32::N), atEnd.Count());
    EXPECT_EQ(words[SFMT32::N], atEnd());

    // A whole number of rounds from inside a round changes only the rounds.
    SFMT32 inside(0u);
    inside.SetCount(5);
    inside.StepCount(SFMT32::N);
    EXPECT_EQ(static_cast<std::int64_t>(SFMT32::N) + 5, inside.Count());
    EXPECT_EQ(words[SFMT32::N + 5], inside());

    // Copies carry the position and the stride; a reseed starts over with neither.
    MT64Mt1 engine(5u);
    engine.SetStride(4, 1);
    engine();
    MT64Mt1 copy = engine;
    EXPECT_TRUE(copy == engine);
    EXPECT_EQ(engine(), copy());

    engine.Reseed(5u);
    EXPECT_EQ(0, engine.Count());
    EXPECT_EQ(1u, engine.GetStride());
    EXPECT_EQ(MT64Mt1(5u)(), engine());
    EXPECT_FALSE(engine == MT64Mt1(6u));

    // Normalisation never leaves an all-zero MT state.
    std::vector<std::uint32_t> state(624, 0);
    MT19937<Random_u32>::Normalize(state.data());
    EXPECT_EQ(0x80000000u, state[0]);
    EXPECT_EQ(0u, state[1]);
}

// ---- save format -----------------------------------------------------------------------------------

TEST(RandomEngineSave, WritesHexWordsEightToALineWithTheChecksumLastAndLeavesTheStreamFormat)
{
    SFMT32 engine(RandomSeedVector{0x2A, 0xFFFFFFFF, 3, 4, 5});
    const std::string text = save(engine, false);
    const std::string start = "52616e64 4c696230 456e534d 4d78534d 5 2a ffffffff 3\n4 5 ffffffff 1 ";
    EXPECT_EQ(start, text.substr(0, start.size()));
    std::uint32_t checksum = 0;
    const std::vector<std::string> words = tokens(text);
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        checksum = (checksum << 1 | checksum >> 31) + static_cast<std::uint32_t>(std::stoul(words[i], nullptr, 16));
    }
    EXPECT_EQ(checksum, std::stoul(words.back(), nullptr, 16));

    const std::string binary = save(engine, true);
    EXPECT_EQ(4u * words.size(), binary.size());
    EXPECT_EQ("RandLib0EnSMMxSM", binary.substr(0, 16));
    EXPECT_EQ(std::string("\0\0\0\x05\0\0\0\x2A", 8), binary.substr(16, 8));

    // The stream's own format is left as it was.
    std::ostringstream out;
    out << std::uppercase << std::showbase;
    SFMT32(1u).Save(out, false);
    out << 255;
    EXPECT_EQ("255", out.str().substr(out.str().size() - 3));
    EXPECT_EQ(std::string::npos, out.str().find("0X"));
}

namespace {

class RandomEngineLoad : public tov::testing::AssertionTest {};

std::string drawnSave(unsigned long seed)
{
    MT32Mt0 engine(RandomSeedVector{seed});
    engine.SetCount(100);
    return save(engine, false);
}

std::string allStateWordsZero(std::string text, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        text = withToken(text, firstStateToken + i, 0);
    }
    return text;
}

} // namespace

TEST_F(RandomEngineLoad, RefusesWhatSaveCannotHaveWritten)
{
    const std::string name = MT32Mt0::Name().c_str();
    const std::string good = drawnSave(3);
    const std::size_t positionToken = firstStateToken - 4;
    struct Case {
        std::string text;
        std::string message;
    };
    const Case cases[] = {
        {withToken(good, 0, 0x52616E65), name + ": Unknown version"},
        {withToken(good, 2, MT19937<Random_u64>::Version), name + ": Algorithm mismatch"},
        {withToken(good, 3, MixerMT1<Random_u32>::Version), name + ": Mixer mismatch"},
        {withToken(good, 5, 0x100000000ul), name + ": Illegal seed value"},
        {withToken(good, positionToken + 1, 0), name + ": Invalid stride"},
        {withToken(good, positionToken + 1, 0x80000000ul), name + ": Invalid stride"},
        {withToken(good, positionToken, 625), name + ": Invalid pointer"},
        {withToken(good, firstStateToken, tokenValue(good, firstStateToken) ^ 1u), "MT19937: Invalid state"},
        {allStateWordsZero(good, 624), "MT19937: All-zero state"},
        {good.substr(0, good.find_last_of(" \n")), name + ": Checksum failure"},
    };
    for (const Case& c : cases) {
        EXPECT_ASSERTION(load<MT32Mt0>(c.text, false), c.message.c_str());
    }
    EXPECT_NO_THROW(load<MT32Mt0>(good, false));
}

TEST_F(RandomEngineLoad, RefusesAnAllZeroSfmtStateAWideSeedWordAndABadStrideOrOffset)
{
    SFMT32 sfmt(3u);
    sfmt();
    EXPECT_ASSERTION(load<SFMT32>(allStateWordsZero(save(sfmt, false), 624), false), "SFMT19937: All-zero state");
    // Vector seeds of any width are taken; only a saved text can carry the wide word back.
    MT64Mt0 wide(RandomSeedVector{0x100000000ul});
    EXPECT_ASSERTION(load<MT64Mt0>(save(wide, false), false), (MT64Mt0::Name() + ": Illegal seed value").c_str());
    // SetStride checks as the load does.
    SFMT32 engine(1u);
    EXPECT_ASSERTION(engine.SetStride(0, 0), "RandomEngine: Invalid stride");
    EXPECT_ASSERTION(engine.SetStride(0x80000000u, 0), "RandomEngine: Invalid stride");
    EXPECT_ASSERTION(engine.SetStride(3, 3), "RandomEngine: Invalid offset");
    EXPECT_NO_THROW(engine.SetStride(0x7FFFFFFFu, 5));
}

// ---- names and seeds -------------------------------------------------------------------------------

TEST(RandomEngineNames, NameTheAlgorithmAndTheMixer)
{
    EXPECT_EQ("RandomEngine<MT19937<Random_u32>,MixerSFMT>", MT32Sfmt::Name());
    EXPECT_EQ("RandomEngine<SFMT19937<Random_u64>,MixerSFMT>", SFMT64::Name());
    EXPECT_EQ("RandomEngine<MT19937<Random_u32>,MixerMT0<Random_u32>>", MT32Mt0::Name());
    EXPECT_EQ("RandomEngine<MT19937<Random_u64>,MixerMT1<Random_u64>>", MT64Mt1::Name());
}

TEST(RandomSeeds, StringToVectorReadsEveryNumber)
{
    struct Case {
        const char* text;
        RandomSeedVector seed;
    };
    const Case cases[] = {
        {"", {}},
        {"no digits", {}},
        {"12 0x1F 017", {12, 31, 15}},
        {"{0x1234, 0x5678}", {0x1234, 0x5678}},
        {"a1b-22c", {1, 22}},
        {"08", {0, 8}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.seed, RandomSeed::StringToVector(c.text)) << c.text;
    }
}

TEST(RandomSeeds, SeedVectorEndsWithProcessAndYear)
{
    const RandomSeedVector seed = RandomSeed::SeedVector();
    ASSERT_EQ(5u, seed.size());
    EXPECT_EQ(static_cast<unsigned long>(getpid()), seed[3]);
    const std::time_t now = std::time(nullptr);
    EXPECT_EQ(static_cast<unsigned long>(std::gmtime(&now)->tm_year + 1900), seed[4]);
    EXPECT_NE(RandomSeed::SeedWord(), RandomSeed::SeedWord());
}
