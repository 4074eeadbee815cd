#!/usr/bin/env bash
# Runs everything that can be tested inside a terminal, and says what cannot.
here=$(dirname "$0")
build=/libaux/build/tests
export TERM=dumb
while read -r name reason; do
    echo "SKIP: $name: $reason"
    names+=("$name")
done <"$here/skipped"
cd "$build" || exit
ctest --parallel 2 --output-on-failure --exclude-regex "^($(IFS='|' && echo "${names[*]}"))\$"
log=$build/Testing/Temporary/LastTest.log
grep '^SKIP ' "$log"
awk '/^Totals: / { passed += $2; failed += $4; skipped += $6 }
    END { printf "cases of the programs: %d passed, %d failed, %d skipped\n", passed, failed, skipped
    }' "$log"
/usr/bin/python3 "$here/../../bench/figures.py" "$build/tests/terminal/consumer"
