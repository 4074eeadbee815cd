#!/usr/bin/env bash
# Installs everything to a staging prefix, and there builds the example application, runs its tests, and
# the application itself once through all that it does: example.sh CMAKE BUILD_DIR QT CXX CXX_FLAGS
set -euo pipefail
examples=$(cd "$(dirname "$0")/../examples" && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
for component in Runtime Devel Tools Kit; do
    "$1" --install "$2" --prefix "$stage/prefix" --component $component >/dev/null
done
PATH=$stage/prefix/bin:$PATH
"$1" -S "$examples/terminal" -B "$stage" -DCMAKE_PREFIX_PATH="$stage/prefix" -DQT="$3" \
    -DCMAKE_CXX_COMPILER="$4" -DCMAKE_CXX_FLAGS="$5 -Werror" >/dev/null
"$1" --build "$stage" >/dev/null
cd "$stage"
ctest --output-on-failure
aux-sandbox ./terminal
