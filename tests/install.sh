#!/usr/bin/env bash
# Installs to a staging prefix, builds a consumer through the CMake package and through pkg-config,
# runs both, and checks what the library exports: install.sh CMAKE BUILD_DIR NAME CXX CXX_FLAGS
set -euo pipefail
cmake=$1 build=$2 name=$3 cxx=$4
read -ra flags <<<"$5"
here=$(cd "$(dirname "$0")" && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

"$cmake" --install "$build" --prefix "$stage/prefix" --component Runtime >/dev/null
library=$(find "$stage/prefix" -name "lib$name.so.1")
[ "$(find "$stage/prefix" -type f)" = "$library" ] # the library alone is the Runtime component
"$cmake" --install "$build" --prefix "$stage/prefix" --component Devel >/dev/null
lib=$(dirname "$library")

"$cmake" -S "$here/consumer" -B "$stage/build" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS="$5" \
    -DAUX_PACKAGE="$name" -DCMAKE_PREFIX_PATH="$stage/prefix" >/dev/null
"$cmake" --build "$stage/build" >/dev/null
"$stage/build/consumer"

PKG_CONFIG_PATH=$lib/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046
"$cxx" "${flags[@]}" -std=c++17 "$here/consumer/main.cpp" -o "$stage/consumer" $(pkg-config --cflags --libs "lib$name")
LD_LIBRARY_PATH=$lib "$stage/consumer"

# Every public header compiles alone.
for header in "$stage"/prefix/include/aux/*.h; do
    # shellcheck disable=SC2046
    "$cxx" "${flags[@]}" -std=c++17 -fsyntax-only -x c++ "$header" $(pkg-config --cflags "lib$name")
done

# Nothing but public names leaves the library.
foreign=$(nm --dynamic --defined-only --demangle "$library" |
    grep -vE ' (aux::|wpa_ctrl_|(vtable|typeinfo|typeinfo name) for aux::)' || true)
if [ -n "$foreign" ]; then
    printf 'exported, but not public:\n%s\n' "$foreign"
    exit 1
fi
classes=$(nm --dynamic --defined-only --demangle "$library" |
    sed -nE 's/^.* aux::([A-Za-z0-9]+)(::|\().*/\1/p' | LC_ALL=C sort -u | tr '\n' ' ')
[ "$classes" = "$(cat "$here/data/exports.txt") " ] || {
    echo "exported: $classes"
    exit 1
}
