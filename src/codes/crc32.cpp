// SPDX-License-Identifier: MIT
#include "aux/crc32.h"

#include <QtEndian>

#include <array>
#include <cstddef>
#include <cstdint>

// A remainder is a polynomial over GF(2) in reflected form: bit 31 is the coefficient of x^0,
// bit 0 that of x^31.
//
// The plain loop waits for each table look-up before it can start the next one. A long buffer is
// therefore cut into eight stretches of equal length whose remainders do not wait for each other.
// They are joined by the rule
//     remainder(A then B) = remainder(A) * x^(8 * length of B) + remainder(B)   (mod polynomial)

namespace aux
{

namespace
{

using Remainder = std::uint32_t;

/// Eight bytes read at once; with a remainder added to the low half it is a remainder on its way.
using Word = std::uint64_t;

constexpr std::size_t wordSize = sizeof(Word);
constexpr Remainder polynomial = 0xEDB88320U;
constexpr Remainder one = 0x80000000U;

constexpr Remainder timesX(Remainder a)
{
    return (a >> 1U) ^ ((a & 1U) != 0 ? polynomial : 0U);
}

constexpr std::array<Remainder, 256> makeTable()
{
    std::array<Remainder, 256> table{};
    for (Remainder byte = 0; byte < table.size(); ++byte) {
        Remainder remainder = byte;
        for (int bit = 0; bit < 8; ++bit)
            remainder = timesX(remainder);
        table[byte] = remainder;
    }
    return table;
}

constexpr std::array<Remainder, 256> table = makeTable();

/// Appends the lowest byte of the word, which the remainder has been added to.
constexpr Word step(Word word)
{
    return table[word & 0xFFU] ^ (word >> 8U);
}

Word wordAt(const unsigned char *data)
{
    return qFromLittleEndian<Word>(data);
}

Remainder appendAll(Word remainder, const unsigned char *data, std::size_t length)
{
    for (; length >= wordSize; length -= wordSize, data += wordSize) {
        remainder ^= wordAt(data);
        for (std::size_t byte = 0; byte < wordSize; ++byte)
            remainder = step(remainder);
    }
    for (; length > 0; --length, ++data)
        remainder = step(remainder ^ *data);
    return static_cast<Remainder>(remainder);
}

constexpr Remainder multiply(Remainder a, Remainder b)
{
    Remainder product = 0;
    for (Remainder power = one; power != 0; power >>= 1U) {
        product ^= (b & power) != 0 ? a : 0U;
        a = timesX(a);
    }
    return product;
}

/// x^(8 * bytes), by repeated squaring.
constexpr Remainder shiftBy(std::size_t bytes)
{
    Remainder result = one;
    for (Remainder square = one >> 8U; bytes != 0; bytes >>= 1U) {
        if ((bytes & 1U) != 0)
            result = multiply(result, square);
        square = multiply(square, square);
    }
    return result;
}

constexpr std::size_t stretches = 8;

/// Appends eight stretches of `n` bytes each.
template <std::size_t n>
Remainder appendStretches(Word a, const unsigned char *data)
{
    static_assert(n % wordSize == 0);
    // Eight names, not an array: they must live in registers, of which a 64-bit machine has enough.
    Word b = 0;
    Word c = 0;
    Word d = 0;
    Word e = 0;
    Word f = 0;
    Word g = 0;
    Word h = 0;
    for (const unsigned char *end = data + n; data != end; data += wordSize) {
        a ^= wordAt(data);
        b ^= wordAt(data + n);
        c ^= wordAt(data + 2 * n);
        d ^= wordAt(data + 3 * n);
        e ^= wordAt(data + 4 * n);
        f ^= wordAt(data + 5 * n);
        g ^= wordAt(data + 6 * n);
        h ^= wordAt(data + 7 * n);
        for (std::size_t byte = 0; byte < wordSize; ++byte) {
            a = step(a);
            b = step(b);
            c = step(c);
            d = step(d);
            e = step(e);
            f = step(f);
            g = step(g);
            h = step(h);
        }
    }
    constexpr Remainder shift = shiftBy(n);
    auto joined = static_cast<Remainder>(a);
    for (const Word next : {b, c, d, e, f, g, h})
        joined = multiply(joined, shift) ^ static_cast<Remainder>(next);
    return joined;
}

/// A run of bytes that is appended from its front.
struct Rest {
    const unsigned char *data;
    std::size_t length;
};

template <std::size_t n>
Remainder appendWhileLong(Remainder remainder, Rest &rest)
{
    for (; rest.length >= stretches * n; rest.length -= stretches * n, rest.data += stretches * n)
        remainder = appendStretches<n>(remainder, rest.data);
    return remainder;
}

} // namespace

unsigned int crc32(unsigned int crc, unsigned char *data, unsigned int length)
{
    Rest rest{data, length};
    Remainder remainder = ~crc;
    // Joining costs as much as some hundred bytes: the longer the stretches, the better.
    remainder = appendWhileLong<65536>(remainder, rest);
    remainder = appendWhileLong<8192>(remainder, rest);
    remainder = appendWhileLong<1024>(remainder, rest);
    remainder = appendWhileLong<128>(remainder, rest);
    return ~appendAll(remainder, rest.data, rest.length);
}

} // namespace aux
