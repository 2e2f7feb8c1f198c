#pragma once
// The state transitions of the two algorithms, forwards and exactly backwards.

#include <tov/utils/Assertion.h>

namespace tov {
namespace utils {
namespace impl {

// ---- MT19937 ---------------------------------------------------------------------------------------

template <class Word>
String MT19937<Word>::Name()
{
    return Word::width == 32 ? "MT19937<Random_u32>" : "MT19937<Random_u64>";
}

template <class Word>
typename MT19937<Word>::word_type MT19937<Word>::Twist(word_type y)
{
    return (y >> 1) ^ (static_cast<word_type>(0 - (y & 1)) & Matrix);
}

// The matrix word has its top bit set and y >> 1 has not, so the top bit of a twisted word tells the
// low bit of y, and with it the rest.
template <class Word>
typename MT19937<Word>::word_type MT19937<Word>::Untwist(word_type twisted)
{
    const word_type low = twisted >> (Word::width - 1);
    return static_cast<word_type>(((twisted ^ (static_cast<word_type>(0 - low) & Matrix)) << 1) | low);
}

// The low bits of word 0 never enter a transition, so a transition cannot restore them; they are the
// ones the last twist of the previous round combined into word N-1.
template <class Word>
typename MT19937<Word>::word_type MT19937<Word>::FreeBitsOfWordZero(const word_type* state)
{
    return Untwist(state[N - 1] ^ state[M - 1]) & LowerMask;
}

template <class Word>
void MT19937<Word>::Transition(word_type* state)
{
    unsigned int i = 0;
    for (; i < N - M; ++i) {
        state[i] = state[i + M] ^ Twist((state[i] & UpperMask) | (state[i + 1] & LowerMask));
    }
    for (; i < N - 1; ++i) {
        state[i] = state[i + M - N] ^ Twist((state[i] & UpperMask) | (state[i + 1] & LowerMask));
    }
    state[N - 1] = state[M - 1] ^ Twist((state[N - 1] & UpperMask) | (state[0] & LowerMask));
}

// Word i of a round came from y_i (the top of old word i and the low bits of old word i+1), twisted and
// XORed with word i+M, which is new for i >= N-M and old below. Walking down from N-1, everything below i
// is still new, and old word i+M has been written whole (from y_{i+M} and y_{i+M-1}) before it is read.
template <class Word>
void MT19937<Word>::InverseTransition(word_type* state)
{
    // y_{N-1} also holds the low bits of the new word 0, which need no restoring.
    word_type above = Untwist(state[N - 1] ^ state[M - 1]);
    for (unsigned int i = N - 1; i-- > N - M;) {
        const word_type y = Untwist(state[i] ^ state[i + M - N]);
        state[i + 1] = (above & UpperMask) | (y & LowerMask);
        above = y;
    }
    for (unsigned int i = N - M; i-- > 0;) {
        const word_type y = Untwist(state[i] ^ state[i + M]);
        state[i + 1] = (above & UpperMask) | (y & LowerMask);
        above = y;
    }
    state[0] = above & UpperMask;
    state[0] |= FreeBitsOfWordZero(state);
}

template <class Word>
typename MT19937<Word>::word_type MT19937<Word>::Output(word_type y)
{
    if constexpr (Word::width == 32) {
        y ^= y >> 11;
        y ^= (y << 7) & 0x9D2C5680u;
        y ^= (y << 15) & 0xEFC60000u;
        y ^= y >> 18;
    } else {
        y ^= (y >> 29) & 0x5555555555555555ull;
        y ^= (y << 17) & 0x71D67FFFEDA60000ull;
        y ^= (y << 37) & 0xFFF7EEE000000000ull;
        y ^= y >> 43;
    }
    return y;
}

// Makes the free bits of word 0 what a transition would have left there, so that every state the engine
// holds has an exact predecessor and backward steps are exact from the first round on.
template <class Word>
void MT19937<Word>::Normalize(word_type* state)
{
    state[0] &= UpperMask;
    bool allZero = true;
    for (unsigned int i = 0; i < N && allZero; ++i) {
        allZero = state[i] == 0;
    }
    if (allZero) {
        state[0] = TopBit;
    }
    state[0] |= FreeBitsOfWordZero(state);
}

template <class Word>
std::uint32_t MT19937<Word>::CheckState(const word_type* state, std::uint32_t checksum)
{
    bool allZero = (state[0] & UpperMask) == 0;
    for (unsigned int i = 0; i < N; ++i) {
        if constexpr (Word::width == 64) {
            checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(state[i] >> 32));
        }
        checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(state[i]));
        if (i > 0 && state[i] != 0) {
            allZero = false;
        }
    }
    TOV_ASSERT(!allZero, "MT19937: All-zero state");
    TOV_ASSERT((state[0] & LowerMask) == FreeBitsOfWordZero(state), "MT19937: Invalid state");
    return checksum;
}

// ---- SFMT19937 -------------------------------------------------------------------------------------
// A lane is handled as two 64-bit halves; the per-32-bit shifts of the recursion become 64-bit shifts
// with the bits that would cross a 32-bit boundary masked away.

namespace sfmt {
constexpr std::uint64_t ShiftRightMask = 0x001FFFFF001FFFFFull; // after >> 11 in each 32-bit word
constexpr std::uint64_t ShiftLeftMask = 0xFFFC0000FFFC0000ull;  // after << 18 in each 32-bit word
constexpr std::uint64_t MaskLow = 0xDDFECB7FDFFFFFEFull & ShiftRightMask;
constexpr std::uint64_t MaskHigh = 0xBFFFFFF6BFFAFFFFull & ShiftRightMask;
constexpr std::uint32_t Parity3 = 0x13C9E684u;
} // namespace sfmt

template <class Word>
String SFMT19937<Word>::Name()
{
    return Word::width == 32 ? "SFMT19937<Random_u32>" : "SFMT19937<Random_u64>";
}

template <class Word>
typename SFMT19937<Word>::Lane SFMT19937<Word>::Load(const word_type* state, unsigned int lane)
{
    if constexpr (Word::width == 32) {
        const word_type* w = state + 4 * lane;
        return Lane{static_cast<std::uint64_t>(w[0]) | static_cast<std::uint64_t>(w[1]) << 32,
                    static_cast<std::uint64_t>(w[2]) | static_cast<std::uint64_t>(w[3]) << 32};
    } else {
        return Lane{state[2 * lane], state[2 * lane + 1]};
    }
}

template <class Word>
void SFMT19937<Word>::Store(word_type* state, unsigned int lane, const Lane& value)
{
    if constexpr (Word::width == 32) {
        word_type* w = state + 4 * lane;
        w[0] = static_cast<word_type>(value.low);
        w[1] = static_cast<word_type>(value.low >> 32);
        w[2] = static_cast<word_type>(value.high);
        w[3] = static_cast<word_type>(value.high >> 32);
    } else {
        state[2 * lane] = value.low;
        state[2 * lane + 1] = value.high;
    }
}

template <class Word>
std::uint32_t SFMT19937<Word>::Word32(const word_type* state, unsigned int index)
{
    if constexpr (Word::width == 32) {
        return state[index];
    } else {
        return static_cast<std::uint32_t>(state[index / 2] >> (32 * (index % 2)));
    }
}

// (b >> 11 per word, masked) ^ (c >> 8 as 128 bits) ^ (d << 18 per word).
template <class Word>
typename SFMT19937<Word>::Lane SFMT19937<Word>::Feedback(const Lane& b, const Lane& c, const Lane& d)
{
    return Lane{((b.low >> 11) & sfmt::MaskLow) ^ (c.low >> 8) ^ (c.high << 56) ^ ((d.low << 18) & sfmt::ShiftLeftMask),
                ((b.high >> 11) & sfmt::MaskHigh) ^ (c.high >> 8) ^ ((d.high << 18) & sfmt::ShiftLeftMask)};
}

// Lane i becomes a ^ (a << 8 as 128 bits) ^ Feedback(lane i+122, the two lanes made just before).
// The two previous lanes stay in locals.
template <class Word>
void SFMT19937<Word>::Transition(word_type* state)
{
    Lane c = Load(state, Lanes - 2);
    Lane d = Load(state, Lanes - 1);
    for (unsigned int i = 0; i < Lanes; ++i) {
        const Lane a = Load(state, i);
        const Lane f = Feedback(Load(state, i < Lanes - Pos1 ? i + Pos1 : i + Pos1 - Lanes), c, d);
        const Lane r{a.low ^ (a.low << 8) ^ f.low, a.high ^ (a.high << 8) ^ (a.low >> 56) ^ f.high};
        Store(state, i, r);
        c = d;
        d = r;
    }
}

// Walking down, the lanes below i are still new and lane i+122 (when it doesn't wrap) is already old,
// which is what the forward step read. a ^ (a << 8) is undone by XORing in the shifts by 8, 16, ... 120,
// done in four doubling steps.
template <class Word>
void SFMT19937<Word>::InverseTransition(word_type* state)
{
    for (unsigned int i = Lanes; i-- > 0;) {
        const Lane c = Load(state, i >= 2 ? i - 2 : i + Lanes - 2);
        const Lane d = Load(state, i >= 1 ? i - 1 : Lanes - 1);
        const Lane f = Feedback(Load(state, i < Lanes - Pos1 ? i + Pos1 : i + Pos1 - Lanes), c, d);
        Lane z = Load(state, i);
        z.low ^= f.low;
        z.high ^= f.high;
        z.high ^= (z.high << 8) | (z.low >> 56);
        z.low ^= z.low << 8;
        z.high ^= (z.high << 16) | (z.low >> 48);
        z.low ^= z.low << 16;
        z.high ^= (z.high << 32) | (z.low >> 32);
        z.low ^= z.low << 32;
        z.high ^= z.low;
        Store(state, i, z);
    }
}

template <class Word>
void SFMT19937<Word>::Normalize(word_type* state)
{
    std::uint32_t inner = (Word32(state, 0) & 1u) ^ (Word32(state, 3) & sfmt::Parity3);
    for (unsigned int shift = 16; shift > 0; shift >>= 1) {
        inner ^= inner >> shift;
    }
    if ((inner & 1u) == 0) {
        state[0] ^= 1u; // bit 0 of the first 32-bit word, also in the 64-bit view
    }
}

template <class Word>
std::uint32_t SFMT19937<Word>::CheckState(const word_type* state, std::uint32_t checksum)
{
    bool allZero = true;
    for (unsigned int i = 0; i < N; ++i) {
        if constexpr (Word::width == 64) {
            checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(state[i] >> 32));
        }
        checksum = RandomChecksumStep(checksum, static_cast<std::uint32_t>(state[i]));
        allZero = allZero && state[i] == 0;
    }
    TOV_ASSERT(!allZero, "SFMT19937: All-zero state");
    return checksum;
}

} // namespace impl
} // namespace utils
} // namespace tov
