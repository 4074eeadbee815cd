#!/usr/bin/env bash
# Builds the fuzz targets and runs each from its seeds: run.sh [SECONDS [TARGET...]]
set -euo pipefail
cd "$(dirname "$0")/../.."
seconds=${1:-20}
shift || true
targets=("$@")
[ $# -gt 0 ] || mapfile -t targets < <(sed -n 's/^aux_add_fuzzer(\(.*\))$/\1/p' tests/fuzz/CMakeLists.txt)
cmake --preset fuzz
cmake --build --preset fuzz --target "${targets[@]/#/fuzz_}"
found=$(mktemp -d)
trap 'rm -rf "$found"' EXIT
for target in "${targets[@]}"; do
    mkdir "$found/$target"
    echo "Fuzzing $target for $seconds seconds"
    "build/fuzz/tests/fuzz/fuzz_$target" -max_total_time="$seconds" -max_len=4096 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/$target-" "$found/$target" "tests/fuzz/corpus/$target"
done
