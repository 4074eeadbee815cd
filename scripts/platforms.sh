#!/usr/bin/env bash
# Tries the README's two commands, and then Qt 6, on a bare root of each Debian release that it promises:
# platforms.sh [--brief] [--keep] [RELEASE...]
#
# First as an ordinary user with sudo, then the two commands as root too, from a clone whose path has a
# blank and an é, in another language and with a TMPDIR of its own; a warning of the compiler is an
# error. Prints a table; fails where one of them fails. Exits with 77 and the reason where the machine
# cannot do that.
#
#   --brief  as an ordinary user only
#   --keep   keeps the roots, and tries the last commit on those that it kept before
set -euo pipefail
cd "$(dirname "$0")/.."
readonly user=developer

skip() {
    echo "SKIPPED: $1" >&2
    exit 77
}

main() {
    local options release brief='' keep=''
    options=$(getopt -n platforms.sh -o '' -l brief,keep -- "$@")
    eval set -- "$options"
    while [ "$1" != -- ]; do
        declare "${1#--}=yes" && shift
    done
    shift
    [ "$(id -u)" -eq 0 ] || skip "a fresh root is made by root only"
    unshare --mount true 2>/dev/null || skip "this machine refuses private mounts"
    [ $# -gt 0 ] || set -- bookworm trixie
    scripts/bootstrap git mmdebstrap
    directory=$PWD/build/platforms
    mkdir -p "$directory"
    : >"$directory/table"
    for release in "$@"; do
        if [ -z "$keep" ] || [ ! -e "$directory/$release/libaux.bundle" ]; then
            make_root "$release"
        fi
        git bundle create --quiet "$directory/$release/libaux.bundle" HEAD
        try "$release" 5 "$user"
        try "$release" 6 "$user"
        [ -n "$brief" ] || try "$release" 5 root
        [ -n "$keep" ] || rm -rf --one-file-system "${directory:?}/$release"
    done
    column --table --separator $'\t' --table-columns SYSTEM,QT,USER,BUILD,DEMO,TESTS,SKIPPED "$directory/table"
    ! grep -q FAILED "$directory/table"
}

make_root() { # RELEASE
    echo "Making a root of $1" >&2
    rm -rf --one-file-system "${directory:?}/$1"
    # shellcheck disable=SC2016
    kit/terminal/debian-root --release "$1" "$directory/$1" --variant=minbase --format=directory \
        --dpkgopt=force-unsafe-io --include=git,locales,sudo \
        --customize-hook='echo "de_DE.UTF-8 UTF-8" >"$1/etc/locale.gen"; chroot "$1" locale-gen >/dev/null' \
        --customize-hook="chroot \"\$1\" useradd --create-home $user" \
        --customize-hook="echo '$user ALL=(ALL) NOPASSWD: ALL' >\"\$1/etc/sudoers.d/$user\""
}

# Adds a row to the table. The demo has one Qt, the one that the README's commands take.
try() { # RELEASE QT USER
    local root=$directory/$1 log=$directory/$1-$2-$3.log preset="dev" demo="-" status=0
    local version build="FAILED" tests="FAILED" skipped=''
    echo "Trying $1 with Qt $2 as $3: $log" >&2
    if [ "$2" -eq 5 ]; then
        demo="done"
        enter "$root" "$3" scripts/demo.sh >"$log.demo" 2>&1 || demo="FAILED ($?)"
    else
        preset=qt$2
    fi
    enter "$root" "$3" scripts/test.sh "$preset" >"$log" 2>&1 || status=$?
    ! grep -q ' tests passed, ' "$log" || {
        build="done" tests=$(tail -n 1 "$log")
        [ "$status" -eq 0 ] || tests="FAILED: $tests"
        skipped=$(sed -n 's/ tests skipped, and cases.*//p' "$log")
    }
    ! grep -q ': warning: .*\[-W' "$log"* || build="FAILED: warnings"
    [ "$status" -eq 0 ] || tail -n 60 "$log" >&2
    version=$(enter "$root" "$3" pkg-config --modversion "Qt$2Core") || version="$2 FAILED"
    printf '%s\t' "$1" "$version" "$3" "$build" "$demo" "$tests" >>"$directory/table"
    echo "$skipped" >>"$directory/table"
}

# Runs it in the clone.
enter() { # ROOT USER COMMAND...
    scripts/in-root "$@" <<'END'
checkout="/tmp/$(id -un) é/libaux"
[ -e "$checkout" ] || git clone --quiet /libaux.bundle "$checkout"
cd "$checkout"
git fetch --quiet /libaux.bundle HEAD
git checkout --quiet FETCH_HEAD
export LANG=de_DE.UTF-8 TMPDIR=/var/tmp
exec "$@"
END
}

main "$@"
