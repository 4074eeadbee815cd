#!/usr/bin/env bash
# Checks the form of all sources: clang-format, shellcheck, clang-tidy, and what only the linker sees;
# and that programs built with the last release still run.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t sources < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run -Werror "${sources[@]}"
mapfile -t scripts < <(git grep -l '^#!/usr/bin/env bash')
shellcheck "${scripts[@]}"
scripts/check-includes
scripts/test-share
cmake --preset ci
cmake --build --preset ci # generated sources
scripts/abi.sh
run-clang-tidy -quiet -p build/ci "$PWD/(src|tests|tools|bench|docs|kit)/.*\.cpp\$"
cmake --preset odr
cmake --build --preset odr
