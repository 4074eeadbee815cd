// SPDX-License-Identifier: MIT
#ifndef AUX_BENCH_RATIOS_H
#define AUX_BENCH_RATIOS_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <map>
#include <numeric>
#include <string>
#include <vector>

namespace bench
{

/// What is compared: the time of `ours` against the sum of the times of `peers`.
struct Comparison {
    std::string what;
    std::string ours;
    std::vector<std::string> peers;
    double goal;
    /// True: our speed is to be at least `goal` times theirs. False: our time at most `goal` times.
    bool isSpeed;
};

/// Prints every run as usual and keeps the fastest of each benchmark's repetitions.
class Recorder : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            const double time = run.GetAdjustedRealTime();
            const auto [known, isNew] = m_times.emplace(run.run_name.str(), time);
            known->second = isNew ? time : std::min(known->second, time);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    /// Prints one line per comparison; returns whether all goals were met.
    [[nodiscard]] bool compare(const std::vector<Comparison> &comparisons) const
    {
        bool allMet = true;
        std::puts("\nratio   goal        of");
        for (const Comparison &c : comparisons) {
            const double peers =
                std::accumulate(c.peers.begin(), c.peers.end(), 0.0,
                                [this](double sum, const auto &name) { return sum + time(name); });
            const double ratio = c.isSpeed ? peers / time(c.ours) : time(c.ours) / peers;
            const bool met = c.isSpeed ? ratio >= c.goal : ratio <= c.goal;
            allMet = allMet && met;
            std::printf("%6.3f  %s %.2f  %s  %s\n", ratio, c.isSpeed ? "at least" : "at most ",
                        c.goal, met ? "met   " : "MISSED", c.what.c_str());
        }
        return allMet;
    }

private:
    [[nodiscard]] double time(const std::string &name) const
    {
        for (const auto &[full, time] : m_times) {
            if (full == name || full.rfind(name + '/', 0) == 0)
                return time;
        }
        std::fprintf(stderr, "no benchmark %s was run\n", name.c_str());
        std::exit(2);
    }

    std::map<std::string, double> m_times;
};

/// Runs all benchmarks (five times each unless told otherwise), then compares them; the exit status
/// of the program.
inline int run(int argc, char **argv, const std::vector<Comparison> &comparisons)
{
    std::vector<char *> arguments(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=5";
    std::string aggregates = "--benchmark_report_aggregates_only=false";
    arguments.insert(arguments.begin() + 1, {repetitions.data(), aggregates.data()});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    Recorder recorder;
    benchmark::RunSpecifiedBenchmarks(&recorder);
    return recorder.compare(comparisons) ? 0 : 1;
}

} // namespace bench

#endif
