#!/usr/bin/env bash
# Builds the fuzz targets and runs each from its seeds: run.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --workflow --preset fuzz
found=$(mktemp -d)
trap 'rm -rf "$found"' EXIT
build/fuzz/tests/fuzz/fuzz_unpack -max_total_time="${1:-60}" -max_len=4096 -print_final_stats=1 \
    -artifact_prefix=build/fuzz/ "$found" tests/fuzz/corpus
