#!/usr/bin/env bash
# Builds libaux within another project, static and shared, and runs that project's program:
# inside.sh CMAKE BUILD_DIR QT CXX CXX_FLAGS
set -euo pipefail
cmake=$1 build=$2 qt=$3 cxx=$4 flags=$5
here=$(cd "$(dirname "$0")" && pwd)

try() { # OPTION...
    "$cmake" -G Ninja -S "$here/consumer/inside" -B "$build" -DCMAKE_CXX_COMPILER="$cxx" \
        -DCMAKE_CXX_FLAGS="$flags" -DAUX_QT="$qt" "$@" >/dev/null
    "$cmake" --build "$build"
    rm -rf "$build/prefix"
    "$cmake" --install "$build" --prefix "$build/prefix" >/dev/null
    "$here/../kit/sandbox" --empty --writable "$build" "$build/inside"
}

try -DFETCHED=OFF -DBUILD_SHARED_LIBS=OFF -DAUX_INSTALL=OFF
[ ! -e "$build/prefix" ] || exit 1
try -DFETCHED=ON -DBUILD_SHARED_LIBS=ON
[ ! -e "$build/prefix" ] || exit 1
try -DAUX_INSTALL=ON
[ -e "$build/prefix/include/aux/error.h" ]
