# shellcheck shell=bash
# What the torture scripts share, each of which is called with the settings program.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
readonly here settings=$1
readonly config=/data/config work=/tmp/torture
readonly operations=(first set commit rollback apply)

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
    exec "$here/../../kit/sandbox" "$0" "$settings" --inside
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
    shift 2
    strace -qq "$@" "$settings" "$organisation" "$operation" new 2>/dev/null
}

# Keeps, for each operation, the file before and after it and its system calls.
record() {
    local operation
    mkdir -p "$work"
    "$settings" base set old 2>/dev/null
    cp "$(file_of base)" "$work/base"
    for operation in "${operations[@]}"; do
        place "$operation" "$operation"
        perform "$operation" "$operation" -o "$work/$operation.trace"
        cp "$(file_of "$operation")" "$work/$operation.new"
    done
    cp "$work/base" "$work/set.old"
    cp "$work/base" "$work/apply.old"
    cp "$work/set.new" "$work/commit.old" # what both have written in preparation
    cp "$work/set.new" "$work/rollback.old"
}

# Lists every system call of an operation as its name and its number among those of that name.
points() { # OPERATION
    awk -F'(' '/^[a-z0-9_]+\(/ { ++n[$1] } operating { print $1, n[$1] } /"begin\\n"/ { operating = 1 }' \
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
