#!/usr/bin/env bash
# Tries the README's two commands on a bare root of each Debian release, of 12 where none is named:
# platforms.sh [--keep] [RELEASE...]
#
# First as an ordinary user with sudo, then as root, from a clone whose path has a blank and an é,
# in another language and with a TMPDIR of its own. Prints a table; fails where one of them fails.
# Exits with 77 and the reason where the machine cannot do that. With --keep it keeps the roots, and
# tries the last commit on those that it kept before.
set -euo pipefail
cd "$(dirname "$0")/.."
readonly user=developer

skip() {
    echo "SKIPPED: $1" >&2
    exit 77
}

main() {
    local release keep=
    [ "${1:-}" != --keep ] || { keep=1 && shift; }
    [ "$(id -u)" -eq 0 ] || skip "a fresh root is made by root only"
    unshare --mount true 2>/dev/null || skip "this machine refuses private mounts"
    [ $# -gt 0 ] || set -- bookworm
    scripts/bootstrap git mmdebstrap
    directory=$PWD/build/platforms
    mkdir -p "$directory"
    : >"$directory/table"
    for release in "$@"; do
        if [ -z "$keep" ] || [ ! -e "$directory/$release/libaux.bundle" ]; then
            make_root "$release"
        fi
        git bundle create --quiet "$directory/$release/libaux.bundle" HEAD
        try "$release" "$user"
        try "$release" root
        [ -n "$keep" ] || rm -rf --one-file-system "${directory:?}/$release"
    done
    column --table --separator $'\t' --table-columns SYSTEM,USER,BUILD,DEMO,TESTS,SKIPPED "$directory/table"
    ! grep -q FAILED "$directory/table"
}

make_root() { # RELEASE
    echo "Making a root of $1" >&2
    rm -rf --one-file-system "${directory:?}/$1"
    # shellcheck disable=SC2016
    scripts/debian-root --release "$1" "$directory/$1" --variant=minbase --format=directory \
        --dpkgopt=force-unsafe-io --include=git,locales,sudo \
        --customize-hook='echo "de_DE.UTF-8 UTF-8" >"$1/etc/locale.gen"; chroot "$1" locale-gen >/dev/null' \
        --customize-hook="chroot \"\$1\" useradd --create-home $user" \
        --customize-hook="echo '$user ALL=(ALL) NOPASSWD: ALL' >\"\$1/etc/sudoers.d/$user\""
}

# Adds a row to the table.
try() { # RELEASE USER
    local log=$directory/$1-$2.log status demo tests="FAILED" skipped='' build="FAILED"
    echo "Trying $1 as $2: $log" >&2
    enter "$directory/$1" "$2" demo.sh >"$log.demo" 2>&1 && demo="done" || demo="FAILED ($?)"
    enter "$directory/$1" "$2" test.sh >"$log" 2>&1 && status=0 || status=$?
    ! grep -q ' tests passed, ' "$log" || {
        build="done" tests=$(tail -n 1 "$log")
        [ "$status" -eq 0 ] || tests="FAILED: $tests"
        skipped=$(sed -n 's/ tests skipped, and cases.*//p' "$log")
    }
    printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$1" "$2" "$build" "$demo" "$tests" "$skipped" >>"$directory/table"
}

# The root replaces the machine's: in a chroot an ordinary user has no private namespaces.
enter() { # ROOT USER SCRIPT
    # shellcheck disable=SC2016
    unshare --mount --pid --uts --fork --kill-child sh -ec '
        root=$1 user=$2 script=$3
        mount --rbind "$root" "$root"
        cd "$root"
        cp /etc/resolv.conf /etc/hosts etc
        mount --rbind /dev dev
        mount -t sysfs sysfs sys
        mount -t proc proc proc
        mkdir -p old
        pivot_root . old
        cd /
        umount --lazy /old
        runuser --login "$user" --command "sh -s \"$script\"" <<"END" || exit
checkout="/tmp/$(id -un) é/libaux"
[ -e "$checkout" ] || git clone --quiet /libaux.bundle "$checkout"
git -C "$checkout" fetch --quiet /libaux.bundle HEAD
git -C "$checkout" checkout --quiet FETCH_HEAD
export LANG=de_DE.UTF-8 TMPDIR=/var/tmp
exec "$checkout/scripts/$1"
END' sh "$@"
}

main "$@"
