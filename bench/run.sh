#!/usr/bin/env bash
# Builds the benchmarks as shipped and runs them one after the other: one table of what they
# compare, with its goals. Fails where a goal is missed.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/bootstrap libbenchmark-dev libgcrypt20-dev zlib1g-dev
cmake --preset release
cmake --build --preset release --target bench_codes bench_config bench_files bench_system
met=true
for name in codes files config; do
    echo "$name"
    kit/sandbox --empty "build/release/bench/bench_$name" | grep -E ' (met|MISSED) ' || met=false
done
build/release/bench/bench_system --benchmark_repetitions=1 | grep -E '^(scan|network|IPv4)'
$met
