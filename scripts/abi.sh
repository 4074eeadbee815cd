#!/usr/bin/env bash
# Compares the library's binary interface with that of the last release: abi.sh [--release]
# On x86-64 with Debian 12's compiler, as the description is: a later one describes destructors otherwise.
# Fails where a program that was built with the release might not run any more. What is new is no
# fault: for operations debian/libaux1.symbols says since when they are there. With --release it writes
# the interface down for the next time. Needs the preset ci built.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/ci
release=src/libaux.abi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One unit of all: of a class that several units know, abidw keeps only what the first one defines.
unit() {
    sed -n 's|^    \([a-z0-9]*/[a-z0-9]*\.cpp\)$|#include "\1"|p' src/CMakeLists.txt
    echo "#include \"$build/src/aux-objects_autogen/mocs_compilation.cpp\""
    # What an operation has inside a container alone is not looked into.
    echo 'namespace aux { AUX_EXPORT void contained(SystemHelper::WifiInfo) {} }'
}

# Optimised, so that no more symbols leave it than leave the library.
# shellcheck disable=SC2046
unit | c++ -std=c++17 -O2 -g -w -fPIC -shared -fvisibility=hidden -fvisibility-inlines-hidden \
    -DQT_NO_KEYWORDS -I. -Isrc -Iinclude -I"$build/include" $(pkg-config --cflags Qt5Core Qt5Network libgcrypt) \
    -Wl,-soname,libaux.so.1 -Wl,--version-script=src/libaux.map -o "$work/libaux.so.1" -x c++ -
abidw --suppressions src/libaux.abignore --exported-interfaces-only --no-corpus-path --no-comp-dir-path \
    --no-show-locs --no-elf-needed --no-parameter-names --out-file "$work/libaux.abi" "$work/libaux.so.1"
if [ "${1:-}" = --release ]; then
    cp "$work/libaux.abi" "$release"
else
    abidiff --no-added-syms "$release" "$work/libaux.abi"
fi
