#!/usr/bin/env bash
# Lets a hostile command loose in the sandbox: no file of the checkout or the machine may change.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
failed=0

# Does all the harm it can, and fails where the world is not as promised.
hostile() { # CHECKOUT OUTSIDE
    local place
    [ ! -e "$2" ] && [ -z "$(ls -A /data; ls -A /run)" ] || exit 2 # not the private world: harm nothing
    [ "$PWD" = "$1" ] && [ -z "${TMPDIR-}" ] && [ "$(locale charmap)" = UTF-8 ] || exit 3
    for place in /data /run /tmp /dev/shm /etc/xdg "$1/build"; do
        mkdir -p "$place" && echo 1 >"$place/hostile" || exit 4
    done
    [ -r /etc/passwd ] && [ -e /sys/class/net/lo ] || exit 5
    [ ! -w /proc/sys/kernel/hostname ] && ! compgen -G '/dev/[hmsv]d*' || exit 6
    for place in / /usr /usr/bin /var /var/tmp /home "$HOME" /boot /opt /srv /mnt /proc/1/root/tmp "$1"; do
        touch "$place/hostile" || true
    done
    chmod -R 777 "$1" || true
    echo 1 >>"$1/kit/sandbox" || true
    mv "$1/kit" "$1/moved" || true
    rm -rf /data /run /tmp /dev/shm "$1" || true
}

# Every file of the checkout: name, mode, time of modification, content.
facts() { # CHECKOUT
    find "$1" -path "$1/build/*" -prune -o -path "$1/build" -o -printf '%P %M %s %T@\n' | sort
    find "$1" -path "$1/build" -prune -o -type f -exec cat {} + | sha256sum
}

try() { # PLACE [COMMAND TO BECOME ANOTHER USER...]
    local checkout=$1/checkout before etc status=0
    shift
    rm -rf "$checkout"
    mkdir -p "$checkout"/{.git,build}
    cp -r "$here/../kit" "$here/sandbox.sh" "$checkout"
    [ $# -eq 0 ] || chown -R nobody "$checkout"
    before=$(facts "$checkout")
    etc=$(ls -A /etc)
    (cd "$checkout" && TMPDIR=$stage "$@" env LC_ALL=C LANG=de_DE.UTF-8 kit/sandbox --empty --writable build \
        bash sandbox.sh --hostile "$checkout" "$outside") >"$stage/log" 2>&1 || status=$?
    if [ "$status" -ne 0 ]; then
        cat "$stage/log"
        [ "$status" -ne 77 ] || exit 77
    fi
    expect "exit status" "$status" 0
    expect checkout "$(facts "$checkout")" "$before"
    expect "build directory" "$(cd "$checkout/build" && ls)" ''
    expect "missing below /etc" "$(comm -23 <(echo "$etc") <(ls -A /etc))" ''
    expect "on the machine" \
        "$(ls -d /{,usr/,usr/bin/,var/,var/tmp/,home/,boot/,opt/,srv/,mnt/,data/,run/,tmp/,dev/shm/,etc/xdg/}hostile 2>/dev/null || true)" ''
}

expect() { # FACT VALUE EXPECTED
    [ "$2" = "$3" ] && return
    echo "$checkout: $1 is '$2', not '$3'"
    failed=1
}

if [ "${1:-}" = --hostile ]; then
    hostile "${@:2}"
    exit 0
fi

export LC_ALL=C # sorts
outside=$(mktemp -p /tmp)
for place in /tmp /dev/shm; do
    stage=$(mktemp -d -p "$place" 'a b é.XXXXXX')
    trap 'rm -rf "$outside" "$stage"' EXIT
    chmod 755 "$stage"
    try "$stage"
    [ "$(id -u)" -ne 0 ] || try "$stage" setpriv --reuid=nobody --regid=nogroup --clear-groups
    rm -rf "$stage"
done
exit "$failed"
