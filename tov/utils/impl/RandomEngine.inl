#pragma once
// The engine frame: lazy initialisation, drawing, positioning, save and load, self test.

#include <tov/utils/Assertion.h>

#include <ios>

namespace tov {
namespace utils {
namespace impl {

// What SelfTest expects of each member. The words at count 9999 of the empty seed are those of the
// published generators (for the MT members, of the standard library's default-seeded engines).
#define TOV_RANDOM_SELF_TEST_VALUES(AlgorithmType, MixerType, firstValue, secondValue)                                 \
    template <>                                                                                                        \
    struct RandomSelfTestValues<AlgorithmType, MixerType> {                                                            \
        static constexpr bool known = true;                                                                            \
        static constexpr AlgorithmType::word_type first = firstValue;                                                  \
        static constexpr AlgorithmType::word_type second = secondValue;                                                \
    }

TOV_RANDOM_SELF_TEST_VALUES(MT19937<Random_u32>, MixerSFMT, 0x27BA6C6Fu, 0x82294E6Cu);
TOV_RANDOM_SELF_TEST_VALUES(MT19937<Random_u64>, MixerSFMT, 0xA8FB83FC5A45842Cull, 0x00EDB9FA5CB2D515ull);
TOV_RANDOM_SELF_TEST_VALUES(SFMT19937<Random_u32>, MixerSFMT, 0xA0A2CEB3u, 782200760u);
TOV_RANDOM_SELF_TEST_VALUES(SFMT19937<Random_u64>, MixerSFMT, 0x1452D01C8A5782DDull, 0x46177B0D79905965ull);
TOV_RANDOM_SELF_TEST_VALUES(MT19937<Random_u32>, MixerMT0<Random_u32>, 4123659995u, 0xB3CB1AB1u);
TOV_RANDOM_SELF_TEST_VALUES(MT19937<Random_u64>, MixerMT0<Random_u64>, 9981545732273789042ull, 0x1335170145C17745ull);
TOV_RANDOM_SELF_TEST_VALUES(MT19937<Random_u32>, MixerMT1<Random_u32>, 4123659995u, 0xAE50AEACu);
TOV_RANDOM_SELF_TEST_VALUES(MT19937<Random_u64>, MixerMT1<Random_u64>, 9981545732273789042ull, 0x4C12272E9080ABA6ull);

#undef TOV_RANDOM_SELF_TEST_VALUES

namespace saving {

// Writes 32-bit words, folding each into the checksum: 4 bytes high first, or lower-case hex with a
// space between words and a line end before every eighth.
class Writer {
public:
    Writer(std::ostream& out, bool binary) : out(out), binary(binary), flags(out.flags()) { out.flags(std::ios::hex); }
    ~Writer() { out.flags(flags); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    // A seed word may be wider than 32 bits; the text form keeps all of it so that loading can tell.
    void Put(unsigned long word)
    {
        checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(word));
        Emit(word);
    }
    void PutChecksum() { Emit(checksum); }

private:
    void Emit(unsigned long word)
    {
        if (binary) {
            const char bytes[4] = {static_cast<char>(word >> 24), static_cast<char>(word >> 16),
                                   static_cast<char>(word >> 8), static_cast<char>(word)};
            out.write(bytes, sizeof(bytes));
        } else {
            if (count > 0) {
                out.put(count % 8 == 0 ? '\n' : ' ');
            }
            out << word;
        }
        ++count;
    }

    std::ostream& out;
    const bool binary;
    const std::ios::fmtflags flags;
    std::uint32_t checksum = 0;
    unsigned long count = 0;
};

// Reads what Writer wrote. Once the stream fails every further read fails and leaves its word at 0.
class Reader {
public:
    Reader(std::istream& in, bool binary) : in(in), binary(binary), flags(in.flags())
    {
        in.flags(std::ios::hex | std::ios::skipws);
    }
    ~Reader() { in.flags(flags); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    bool Get(unsigned long& word)
    {
        word = 0;
        if (!in) {
            return false;
        }
        if (binary) {
            unsigned char bytes[4];
            if (!in.read(reinterpret_cast<char*>(bytes), sizeof(bytes))) {
                return false;
            }
            word = static_cast<unsigned long>(bytes[0]) << 24 | static_cast<unsigned long>(bytes[1]) << 16 |
                   static_cast<unsigned long>(bytes[2]) << 8 | static_cast<unsigned long>(bytes[3]);
            return true;
        }
        if (!(in >> word)) {
            word = 0;
            return false;
        }
        return true;
    }

    // Only seed words may be wider than 32 bits: a wider word elsewhere ends the reading.
    bool Get(std::uint32_t& word)
    {
        unsigned long wide = 0;
        word = 0;
        if (!Get(wide)) {
            return false;
        }
        if (wide > 0xFFFFFFFFul) {
            in.setstate(std::ios::failbit);
            return false;
        }
        word = static_cast<std::uint32_t>(wide);
        return true;
    }

private:
    std::istream& in;
    const bool binary;
    const std::ios::fmtflags flags;
};

} // namespace saving

template <class Algorithm, class Mixer>
RandomEngine<Algorithm, Mixer>::RandomEngine(std::uint32_t seedWord)
    : seed(1, seedWord), state{}, position(Uninitialized), rounds(-1), stride(1)
{
}

template <class Algorithm, class Mixer>
RandomEngine<Algorithm, Mixer>::RandomEngine(const RandomSeedVector& seedVector)
    : seed(seedVector), state{}, position(Uninitialized), rounds(-1), stride(1)
{
}

template <class Algorithm, class Mixer>
RandomEngine<Algorithm, Mixer>::RandomEngine(std::istream& in, bool binary)
    : state{}, position(Uninitialized), rounds(-1), stride(1)
{
    Load(in, binary);
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Reseed(std::uint32_t seedWord)
{
    seed.assign(1, seedWord);
    Reset();
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Reseed(const RandomSeedVector& seedVector)
{
    seed = seedVector;
    Reset();
}

// Unlike the other forms this does not Reset: what was loaded is the point of loading.
template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Reseed(std::istream& in, bool binary)
{
    Load(in, binary);
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Reset()
{
    position = Uninitialized;
    stride = 1;
}

// The state after Init counts as round -1 used up, so the first draw makes the transition into round 0.
template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Init()
{
    Mixer::Mix(seed, state, N);
    Algorithm::Normalize(state);
    rounds = -1;
    position = N;
}

// A stride can carry the position past more than one round.
template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Next()
{
    if (position == Uninitialized) {
        Init();
    }
    const std::uint32_t passed = position / N;
    rounds += passed;
    Transitions(passed);
    position %= N;
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Transitions(std::int64_t count)
{
    for (; count > 0; --count) {
        Algorithm::Transition(state);
    }
    for (; count < 0; ++count) {
        Algorithm::InverseTransition(state);
    }
}

template <class Algorithm, class Mixer>
std::int64_t RandomEngine<Algorithm, Mixer>::Count() const
{
    return position == Uninitialized ? 0 : rounds * static_cast<std::int64_t>(N) + position;
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::SetCount(std::int64_t count)
{
    StepCount(count - Count());
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::StepCount(std::int64_t steps)
{
    if (position == Uninitialized) {
        Init();
    }
    const std::int64_t target = Count() + steps;
    std::int64_t targetRounds = target / N;
    std::int64_t targetPosition = target % N;
    if (targetPosition < 0) {
        --targetRounds;
        targetPosition += N;
    } else if (targetPosition == 0 && targetRounds > rounds) {
        // Standing at the end of the previous round defers the transition to the next draw, as drawing
        // the last word of a round does.
        --targetRounds;
        targetPosition = N;
    }
    if (targetRounds != rounds) {
        Transitions(targetRounds - rounds);
    }
    rounds = targetRounds;
    position = static_cast<std::uint32_t>(targetPosition);
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::SetStride(unsigned int newStride, unsigned int offset)
{
    TOV_ASSERT(newStride > 0 && newStride < 0x80000000u, "RandomEngine: Invalid stride");
    TOV_ASSERT(offset < newStride, "RandomEngine: Invalid offset");
    stride = newStride;
    StepCount(offset);
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Save(std::ostream& out, bool binary) const
{
    saving::Writer writer(out, binary);
    writer.Put(static_cast<unsigned long>(SaveVersion >> 32));
    writer.Put(static_cast<unsigned long>(SaveVersion & 0xFFFFFFFFull));
    writer.Put(Algorithm::Version);
    writer.Put(Mixer::Version);
    writer.Put(static_cast<unsigned long>(seed.size()));
    for (unsigned long word : seed) {
        writer.Put(word);
    }
    writer.Put(position);
    writer.Put(stride);
    if (position != Uninitialized) {
        const std::uint64_t roundBits = static_cast<std::uint64_t>(rounds);
        writer.Put(static_cast<unsigned long>(roundBits >> 32));
        writer.Put(static_cast<unsigned long>(roundBits & 0xFFFFFFFFull));
        for (unsigned int i = 0; i < N; ++i) {
            if constexpr (sizeof(result_type) == 8) {
                writer.Put(static_cast<unsigned long>(static_cast<std::uint64_t>(state[i]) >> 32));
            }
            writer.Put(static_cast<unsigned long>(state[i] & 0xFFFFFFFFu));
        }
    }
    writer.PutChecksum();
}

// Everything is read before anything is checked; after a failed check whose handler returns, the
// engine carries on with what it read.
template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::Load(std::istream& in, bool binary)
{
    saving::Reader reader(in, binary);
    std::uint32_t versionHigh = 0;
    std::uint32_t versionLow = 0;
    std::uint32_t algorithm = 0;
    std::uint32_t mixer = 0;
    std::uint32_t length = 0;
    reader.Get(versionHigh);
    reader.Get(versionLow);
    reader.Get(algorithm);
    reader.Get(mixer);
    reader.Get(length);
    // The length is not trusted for a reservation: a damaged one ends with the stream.
    RandomSeedVector seedRead;
    unsigned long word = 0;
    for (std::uint32_t i = 0; i < length && reader.Get(word); ++i) {
        seedRead.push_back(word);
    }
    std::uint32_t positionRead = 0;
    std::uint32_t strideRead = 0;
    reader.Get(positionRead);
    reader.Get(strideRead);
    std::int64_t roundsRead = -1;
    if (positionRead != Uninitialized) {
        std::uint32_t high = 0;
        std::uint32_t low = 0;
        reader.Get(high);
        reader.Get(low);
        roundsRead = static_cast<std::int64_t>(static_cast<std::uint64_t>(high) << 32 | low);
        for (unsigned int i = 0; i < N; ++i) {
            std::uint32_t part = 0;
            result_type value = 0;
            if constexpr (sizeof(result_type) == 8) {
                reader.Get(part);
                value = static_cast<result_type>(part) << 32;
            }
            reader.Get(part);
            state[i] = value | part;
        }
    }
    std::uint32_t checksumRead = 0;
    reader.Get(checksumRead);

    const std::uint32_t checksum = Check(static_cast<std::uint64_t>(versionHigh) << 32 | versionLow, algorithm, mixer,
                                         seedRead, positionRead, strideRead, roundsRead, state);
    TOV_ASSERT(checksum == checksumRead, Name() << ": Checksum failure");
    seed.swap(seedRead);
    position = positionRead;
    stride = strideRead;
    rounds = roundsRead;
}

// Folds every word that Save writes, the version, algorithm and mixer words included, as Save's writer
// does, so that the checksum covers the whole save.
template <class Algorithm, class Mixer>
std::uint32_t RandomEngine<Algorithm, Mixer>::Check(std::uint64_t version, std::uint32_t algorithm, std::uint32_t mixer,
                                                    const RandomSeedVector& seedRead, std::uint32_t positionRead,
                                                    std::uint32_t strideRead, std::int64_t roundsRead,
                                                    const result_type* stateRead) const
{
    TOV_ASSERT(version == SaveVersion, Name() << ": Unknown version");
    TOV_ASSERT(algorithm == Algorithm::Version, Name() << ": Algorithm mismatch");
    TOV_ASSERT(mixer == Mixer::Version, Name() << ": Mixer mismatch");
    std::uint32_t checksum = 0;
    checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(version >> 32));
    checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(version));
    checksum = RandomChecksumStep(checksum, algorithm);
    checksum = RandomChecksumStep(checksum, mixer);
    checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(seedRead.size()));
    for (unsigned long word : seedRead) {
        TOV_ASSERT(word <= 0xFFFFFFFFul, Name() << ": Illegal seed value");
        checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(word));
    }
    checksum = RandomChecksumStep(checksum, positionRead);
    TOV_ASSERT(strideRead > 0 && strideRead < 0x80000000u, Name() << ": Invalid stride");
    checksum = RandomChecksumStep(checksum, strideRead);
    if (positionRead != Uninitialized) {
        TOV_ASSERT(positionRead < static_cast<std::uint64_t>(N) + strideRead, Name() << ": Invalid pointer");
        const std::uint64_t roundBits = static_cast<std::uint64_t>(roundsRead);
        checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(roundBits >> 32));
        checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(roundBits));
        checksum = Algorithm::CheckState(stateRead, checksum);
    }
    return checksum;
}

template <class Algorithm, class Mixer>
String RandomEngine<Algorithm, Mixer>::Name()
{
    return "RandomEngine<" + Algorithm::Name() + "," + Mixer::Name() + ">";
}

// As RandomSeed::StringToVector reads it back.
template <class Algorithm, class Mixer>
String RandomEngine<Algorithm, Mixer>::SeedText(const RandomSeedVector& seedVector)
{
    OStringStream text;
    text << "{" << std::hex;
    for (std::size_t i = 0; i < seedVector.size(); ++i) {
        text << (i > 0 ? ", 0x" : "0x") << seedVector[i];
    }
    text << "}";
    return text.str();
}

template <class Algorithm, class Mixer>
bool RandomEngine<Algorithm, Mixer>::operator==(const RandomEngine& other) const
{
    return Count() == other.Count() && seed == other.seed && stride == other.stride;
}

template <class Algorithm, class Mixer>
void RandomEngine<Algorithm, Mixer>::SelfTest()
{
    using Expected = RandomSelfTestValues<Algorithm, Mixer>;
    RandomEngine engine{RandomSeedVector()};
    engine.SetCount(9999);
    const result_type first = engine();
    TOV_ASSERT(!Expected::known || first == Expected::first,
               Name() << ": Incorrect result with seed " << SeedText(engine.seed));

    // Far behind the start and back again, through both save forms.
    engine.Reseed(RandomSeedVector{0x1234, 0x5678, 0x9ABC, 0xDEF0});
    engine.StepCount(-20000);
    OStringStream text;
    engine.Save(text, false);
    engine.Reset();
    IStringStream textIn(text.str());
    engine.Reseed(textIn, false);
    engine.SetCount(10000);
    OStringStream binary;
    engine.Save(binary, true);
    IStringStream binaryIn(binary.str());
    RandomEngine loaded(binaryIn, true);
    // Compared as loaded: once the loaded engine has moved on, the counts differ by design.
    const bool equal = engine == loaded;

    loaded.SetCount(999999);
    const result_type second = loaded();
    TOV_ASSERT(!Expected::known || second == Expected::second,
               Name() << ": Incorrect result with seed " << SeedText(loaded.seed));
    TOV_ASSERT(equal, Name() << ": Comparison failure");
}

} // namespace impl
} // namespace utils
} // namespace tov
