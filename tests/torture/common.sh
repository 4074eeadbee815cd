# shellcheck shell=bash
# What the torture scripts share, each of which is called with the settings program and auxctl.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
readonly here settings=$1 auxctl=$2
readonly config=/data/config work=/tmp/torture
readonly operations=(first set commit rollback apply auxctl)

skip() {
    echo "SKIPPED: $1"
    exit 77
}

# Starts the calling script once more, in a world with a /data of its own, to run "inside" there.
start() { # [--FUNCTION [ARGUMENT...]]
    if [ $# -gt 0 ]; then
        "${1#--}" "${@:2}"
        return
    fi
    strace -o /dev/null true 2>/dev/null || skip "this machine refuses strace"
    exec "$here/../../kit/sandbox" --empty "$0" "$settings" "$auxctl" --inside
}

file_of() { # ORGANISATION
    echo "$config/$1/terminal.JSON"
}

# Gives an organisation the settings file that an operation starts from; "first" has none.
place() { # ORGANISATION OPERATION
    mkdir -p "$config/$1"
    [ "$2" = first ] || cp "$work/base" "$(file_of "$1")"
}

perform() { # ORGANISATION OPERATION [STRACE_OPTION...]
    local organisation=$1 operation=${2/first/set}
    local command=("$settings" "$organisation" "$operation" new)
    [ "$operation" != auxctl ] || command=("$auxctl" config apply "$work/candidate" --app "$organisation/terminal")
    shift 2
    strace -qq "$@" "${command[@]}" >/dev/null 2>&1
}

# Keeps, for each operation, the file before and after it and its system calls.
record() {
    local operation
    mkdir -p "$work"
    "$settings" base set old 2>/dev/null
    cp "$(file_of base)" "$work/base"
    "$settings" candidate set new 2>/dev/null
    "$auxctl" config export "$work/candidate" --reveal --app candidate/terminal >/dev/null
    for operation in "${operations[@]}"; do
        place "$operation" "$operation"
        perform "$operation" "$operation" -o "$work/$operation.trace"
        cp "$(file_of "$operation")" "$work/$operation.new"
    done
    cp "$work/base" "$work/set.old"
    cp "$work/base" "$work/apply.old"
    cp "$work/base" "$work/auxctl.old"
    cp "$work/set.new" "$work/commit.old" # what both have written in preparation
    cp "$work/set.new" "$work/rollback.old"
}

# Lists every system call of an operation as its name and its number among those of that name. auxctl
# has changed nothing before it looks for its turn.
points() { # OPERATION
    local begin='"begin'
    [ "$1" != auxctl ] || begin='turn"'
    awk -F'(' -v begin="$begin" '/^[a-z0-9_]+\(/ { ++n[$1] } operating { print $1, n[$1] } $0 ~ begin { operating = 1 }' \
        "$work/$1.trace"
}

# Says whether an organisation has the old, the new or another settings file.
outcome() { # ORGANISATION OPERATION
    local file
    file=$(file_of "$1")
    if cmp -s "$file" "$work/$2.new"; then
        echo new
    elif { [ "$2" = first ] && [ ! -e "$file" ]; } || cmp -s "$file" "$work/$2.old"; then
        echo old
    else
        echo OTHER
    fi
}

# Mounts a fresh ext4 image, "image", on "data" in a directory of its own, which becomes the current one.
# It has a directory "config", on the storage already.
mount_image() { # [MKFS_OPTION...]
    [ "$(id -u)" -eq 0 ] || skip "only root may mount an image"
    "$here/../../kit/sandbox" --empty true || exit
    stage=$(mktemp -d)
    trap clean_up EXIT
    cd "$stage"
    mkdir data after
    truncate -s 16M image
    mkfs.ext4 -q "$@" image
    mount -o loop image data 2>/dev/null || skip "this machine refuses loop devices"
    mkdir data/config
    sync -f data
}

# shellcheck disable=SC2317 # called by the trap
clean_up() {
    cd /
    umount "$stage/data" "$stage/after" 2>/dev/null || true
    rm -rf "$stage"
}

# Runs a command in a world that has its settings on the image. The programs may be elsewhere in /data.
on_image() { # COMMAND [ARGUMENT...]
    # shellcheck disable=SC2016
    "$here/../../kit/sandbox" --empty --writable "$stage" sh -c 'mkdir -p /data/config && mount --bind data/config /data/config && exec "$@"' - "$@"
}
