#!/usr/bin/env bash
# Builds the fuzz targets and runs each from its seeds, one per processor at a time:
# run.sh [SECONDS [TARGET...]]
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

fuzz() { # TARGET
    local log=build/fuzz/$1.log
    mkdir "$found/$1"
    "build/fuzz/tests/fuzz/fuzz_$1" -max_total_time="$seconds" -max_len=4096 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/$1-" "$found/$1" "tests/fuzz/corpus/$1" >"$log" 2>&1 ||
        { cat "$log" && return 1; }
    echo "$1: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") runs in $seconds seconds"
}

export -f fuzz
export found seconds
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -c 'fuzz {}'
