#!/usr/bin/env bash
# Builds everything and runs all tests: test.sh [PRESET [LIST]], a preset of CMakePresets.json.
# Ends with what was skipped, and why, and the result. With a LIST, any other skip is a failure.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-dev}
qt=()
[[ $preset != qt6* ]] || qt=(qt6-base-dev)
scripts/bootstrap "${qt[@]}"
cmake --preset "$preset"
cmake --build --preset "$preset"
log=build/$preset/tests.log
rm -f "build/$preset/tests.xml"
status=0
ctest --preset "$preset" | tee "$log" || status=$?
scripts/skips "build/$preset/tests.xml" ${2:+"$2"} || status=${status/#0/1}
grep ' tests passed, ' "$log"
exit "$status"
