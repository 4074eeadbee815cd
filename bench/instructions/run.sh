#!/usr/bin/env bash
# Counts what the hot paths cost on the terminals' processors, in instructions, and fails where it is
# more than 5 % above the budget: run.sh [ARCH...]
#
# What the packages are made of is run by an emulator, which counts the same each time.
set -euo pipefail

# One of the kind that terminals have.
declare -A processors=([armhf]=cortex-a15 [arm64]=cortex-a53)

main() {
    local arch checkout kept=true
    checkout=$(cd "$(dirname "$0")/../.." && pwd)
    [ "$(id -u)" -eq 0 ] || { echo "SKIPPED: a root for another architecture is made by root only" >&2 && exit 77; }
    "$checkout/scripts/bootstrap" mmdebstrap rsync
    [ $# -gt 0 ] || set -- "${!processors[@]}"
    for arch in "$@"; do
        mkdir -p "$checkout/build/terminal/$arch"
        "$checkout/scripts/cross-build" "$arch" "$checkout/build/terminal/$arch" \
            /libaux/bench/instructions/run.sh --inside "$arch" || kept=false
    done
    $kept
}

inside() { # ARCH
    cd /libaux
    eval "$(dpkg-architecture -f -a"$1" 2>/dev/null)"
    built=build/debian
    build >/build.log 2>&1 || fail
    scratch=$(mktemp -d)
    trap 'rm -rf "$scratch"' EXIT
    emulator=("qemu-$DEB_HOST_GNU_CPU" -cpu "${processors[$1]}" -plugin "$built/counter.so")
    printf '%-6s %-9s %9s %12s %12s\n' '' path bytes counted budget
    kept=true
    while read -r path bytes budget; do
        report "$1" "$path" "$bytes" "$budget" || kept=false
    done < <(sed -n "s/^$1 //p" bench/instructions/budgets)
    $kept
}

fail() {
    cat /build.log
    exit 1
}

build() { # the status is asked for, so that bash itself stops nowhere
    cmake --build "$built" --target hotpaths &&
        gcc -Wall -Wextra -Werror -O2 -shared -fPIC -DPLUGIN_API="$(plugin_api)" -o "$built/counter.so" \
            bench/instructions/counter.c
}

plugin_api() {
    local release
    release=$("qemu-$DEB_HOST_GNU_CPU" --version | sed -n 's/.*version \([0-9]*\).*/\1/p')
    [ "$release" -lt 9 ] && echo 1 || echo 2
}

report() { # ARCH PATH BYTES BUDGET
    counted=$(per_unit "$2" "$3")
    awk -v arch="$1" -v path="$2" -v bytes="$3" -v counted="$counted" -v budget="$4" 'BEGIN {
        over = counted <= 0 || counted > 1.05 * budget # what did not run counts nothing
        printf "%-6s %-9s %9s %12.*f %12s%s\n", arch, path, bytes, path == "country" ? 0 : 2, counted, budget,
            over ? "  EXCEEDED" : ""
        exit over
    }'
}

# Two runs that differ by the repetitions alone: what is left is a whole number of them. There are
# enough for the few instructions that the start of a process takes more or less.
per_unit() { # PATH BYTES
    local few many times
    if [ "$1" = country ]; then
        count "$built/tools/auxctl/auxctl" country 13
        return
    fi
    times=$((1000000 / $2 + 2))
    few=$(count "$built/bench/instructions/hotpaths" "$1" 1 "$2" "$scratch")
    many=$(count "$built/bench/instructions/hotpaths" "$1" "$((times + 1))" "$2" "$scratch")
    awk -v few="$few" -v many="$many" -v bytes="$2" -v times="$times" \
        'BEGIN { print (many - few) / times / bytes }'
}

# Prints nothing for a program that fails, but says why.
count() { # PROGRAM ARGUMENT...
    local counted
    if counted=$({ env -i HOME=/root LC_ALL=C.UTF-8 QT_HASH_SEED=0 "${emulator[@]}" "$@" </dev/null >/dev/null; } 2>&1); then
        echo "$counted"
    else
        echo "$* failed: $counted" >&2
    fi
}

if [ "${1:-}" = --inside ]; then
    inside "$2"
else
    main "$@"
fi
