// SPDX-License-Identifier: MIT
// crc32 against the plain table loop and against zlib.
#include <aux/crc32.h>

#include "ratios.h"

#include <array>

#include <zlib.h>

namespace
{

std::array<unsigned int, 256> makeTable()
{
    std::array<unsigned int, 256> table{};
    for (unsigned int byte = 0; byte < table.size(); ++byte) {
        unsigned int crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1U) ^ (0xEDB88320U & (0U - (crc & 1U)));
        table[byte] = crc;
    }
    return table;
}

/// What everybody writes first: one byte after the other.
[[gnu::noinline]] unsigned int plainLoop(unsigned int crc, const unsigned char *data,
                                         unsigned int length)
{
    static const std::array<unsigned int, 256> table = makeTable();
    crc = ~crc;
    for (unsigned int i = 0; i < length; ++i)
        crc = table[(crc ^ data[i]) & 0xFFU] ^ (crc >> 8U);
    return ~crc;
}

template <typename Function>
void measure(benchmark::State &state, Function function)
{
    std::vector<unsigned char> data(static_cast<std::size_t>(state.range(0)));
    std::iota(data.begin(), data.end(), static_cast<unsigned char>(1));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(function(data.data(), static_cast<unsigned int>(data.size())));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void ours(benchmark::State &state)
{
    measure(state, [](auto *data, auto length) { return aux::crc32(0, data, length); });
}
void plain(benchmark::State &state)
{
    measure(state, [](auto *data, auto length) { return plainLoop(0, data, length); });
}
void zlib(benchmark::State &state)
{
    measure(state, [](auto *data, auto length) { return ::crc32(0, data, length); });
}

const std::vector<int64_t> shortSizes{16, 100, 512, 1000, 1024, 4096};
const std::vector<int64_t> longSizes{64 << 10, 1000000, 16 << 20};

} // namespace

int main(int argc, char **argv)
{
    std::vector<bench::Comparison> comparisons;
    const auto add = [&](int64_t size, const char *peer, double goal) {
        const std::string suffix = '/' + std::to_string(size);
        comparisons.push_back(
            {"speed of " + std::string(peer) + ", " + std::to_string(size) + " bytes",
             "ours" + suffix,
             {peer + suffix},
             goal,
             true});
    };
    for (auto *benchmark :
         {benchmark::RegisterBenchmark("ours", ours), benchmark::RegisterBenchmark("plain", plain),
          benchmark::RegisterBenchmark("zlib", zlib)}) {
        for (const auto &sizes : {shortSizes, longSizes}) {
            for (const int64_t size : sizes)
                benchmark->Arg(size);
        }
    }
    for (const int64_t size : shortSizes)
        add(size, "plain", 1.0);
    for (const int64_t size : longSizes) {
        add(size, "plain", 6.0);
        add(size, "zlib", 0.8);
    }
    return bench::run(argc, argv, comparisons);
}
