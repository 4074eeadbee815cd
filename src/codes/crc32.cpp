// SPDX-License-Identifier: MIT
#include "aux/crc32.h"

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

constexpr Remainder append(Remainder remainder, unsigned char byte)
{
    return table[(remainder ^ byte) & 0xFFU] ^ (remainder >> 8U);
}

Remainder appendAll(Remainder remainder, const unsigned char *data, std::size_t length)
{
    for (const unsigned char *end = data + length; data != end; ++data)
        remainder = append(remainder, *data);
    return remainder;
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
/// Below this length joining the stretches costs more than they save.
constexpr std::size_t worthwhile = 1024;

/// Appends eight stretches of `n` bytes each, the first continuing `a`.
Remainder appendStretches(Remainder a, const unsigned char *data, std::size_t n)
{
    // Eight names, not an array: they must live in registers.
    Remainder b = 0;
    Remainder c = 0;
    Remainder d = 0;
    Remainder e = 0;
    Remainder f = 0;
    Remainder g = 0;
    Remainder h = 0;
    for (const unsigned char *end = data + n; data != end; ++data) {
        a = append(a, data[0]);
        b = append(b, data[n]);
        c = append(c, data[2 * n]);
        d = append(d, data[3 * n]);
        e = append(e, data[4 * n]);
        f = append(f, data[5 * n]);
        g = append(g, data[6 * n]);
        h = append(h, data[7 * n]);
    }
    const Remainder shift = shiftBy(n);
    for (const Remainder next : {b, c, d, e, f, g, h})
        a = multiply(a, shift) ^ next;
    return a;
}

} // namespace

// NOLINTNEXTLINE(readability-non-const-parameter): callers hand over writable buffers
unsigned int crc32(unsigned int crc, unsigned char *data, unsigned int length)
{
    std::size_t rest = length;
    const unsigned char *next = data;
    Remainder remainder = ~crc;
    if (rest >= worthwhile) {
        const std::size_t n = rest / stretches;
        remainder = appendStretches(remainder, next, n);
        next += stretches * n;
        rest -= stretches * n;
    }
    return ~appendAll(remainder, next, rest);
}

} // namespace aux
