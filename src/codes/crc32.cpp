// SPDX-License-Identifier: MIT
#include "aux/crc32.h"

#include <QtEndian>

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

// A remainder is a polynomial over GF(2) in reflected form: bit 31 is the coefficient of x^0,
// bit 0 that of x^31.
//
// The plain loop waits for each table look-up before it can start the next one. A long buffer is
// therefore cut into stretches of equal length whose remainders do not wait for each other. They
// are joined by the rule
//     remainder(A then B) = remainder(A) * x^(8 * length of B) + remainder(B)   (mod polynomial)

namespace aux
{

namespace
{

using Remainder = std::uint32_t;

/// Bytes read at once; with a remainder added to its lowest ones it is a remainder on its way.
using Word = std::size_t;

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

/// Appends as many bytes, without the counting of a loop.
template <std::size_t bytes>
constexpr Word steps(Word word)
{
    if constexpr (bytes == 0)
        return word;
    else
        return steps<bytes - 1>(step(word));
}

Word wordAt(const unsigned char *data)
{
    return qFromLittleEndian<Word>(data);
}

Remainder appendAll(Word remainder, const unsigned char *data, std::size_t length)
{
    for (; length >= wordSize; length -= wordSize, data += wordSize)
        remainder = steps<wordSize>(remainder ^ wordAt(data));
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

/// Appends as many stretches as there are indices, of `n` bytes each.
template <std::size_t n, std::size_t... stretch>
Remainder appendStretches(Remainder remainder, const unsigned char *data,
                          std::index_sequence<stretch...> /*indices*/)
{
    static_assert(n % wordSize == 0);
    // Only with indices that are constants do the words live in registers.
    std::array<Word, sizeof...(stretch)> words{remainder};
    for (const unsigned char *end = data + n; data != end; data += wordSize) {
        ((words[stretch] ^= wordAt(data + stretch * n)), ...);
        for (std::size_t byte = 0; byte < wordSize; ++byte)
            ((words[stretch] = step(words[stretch])), ...);
    }
    constexpr Remainder shift = shiftBy(n);
    Remainder joined = 0;
    ((joined = multiply(joined, shift) ^ static_cast<Remainder>(words[stretch])), ...);
    return joined;
}

/// A run of bytes that is appended from its front.
struct Rest {
    const unsigned char *data;
    std::size_t length;
};

template <std::size_t count, std::size_t n>
Remainder appendWhileLong(Remainder remainder, Rest &rest)
{
    for (; rest.length >= count * n; rest.length -= count * n, rest.data += count * n)
        remainder = appendStretches<n>(remainder, rest.data, std::make_index_sequence<count>());
    return remainder;
}

} // namespace

unsigned int crc32(unsigned int crc, unsigned char *data, unsigned int length)
{
    // As many stretches as the machine has registers for their words.
    constexpr std::size_t many = wordSize == 8 ? 10 : 4;
    constexpr std::size_t few = 4;
    constexpr std::size_t shortest = 128;
    Rest rest{data, length};
    Remainder remainder = ~crc;
    if (length >= few * shortest) {
        // Joining costs as much as some hundred bytes: the longer the stretches, the better.
        remainder = appendWhileLong<many, 6400>(remainder, rest); // 64 KiB, where there are ten
        remainder = appendWhileLong<many, 800>(remainder, rest);
        remainder = appendWhileLong<many, shortest>(remainder, rest);
        remainder = appendWhileLong<few, shortest>(remainder, rest);
    }
    return ~appendAll(remainder, rest.data, rest.length);
}

} // namespace aux
