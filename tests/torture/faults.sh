#!/usr/bin/env bash
# Lets system calls of a settings write fail: faults.sh SETTINGS_PROGRAM AUXCTL
#
# A device that keeps failing must leave the old file byte for byte; a single failure anywhere the
# old or the new one. Neither may leave a temporary file or a lock behind.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/common.sh"
readonly fatal='write|fsync|rename|linkat' # the file cannot be replaced without
readonly fallible="$fatal|fdatasync|openat|lseek|ftruncate|fchmod|utimensat|sync"

# Prints "OPERATION OUTCOME".
try() { # OPERATION SYSTEM_CALL ERROR WHEN
    local organisation=$1-$2-$3-$4 result left
    place "$organisation" "$1"
    perform "$organisation" "$1" -o /dev/null -e "inject=$2:error=$3:when=$4"
    result=$(outcome "$organisation" "$1")
    left=$(find "$config/$organisation" -type f ! -name terminal.JSON ! -name .terminal.JSON.turn)
    [ -z "$left" ] || result="LEFT ${left##*/}"
    echo "$1 $result $2 $4"
}

report() { # KIND EXPECTED
    awk -v kind="$1" -v expected="$2" '
        { operation = $1 }
        $2 ~ "^(" expected ")$" { ++found[$2]; next }
        { ++bad; print "unexpected: " $0 }
        END {
            printf "%s: %s at %d points: %d old files, %d new, %d others\n", operation, kind, NR, found["old"], found["new"], bad
            exit bad > 0 || NR == 0
        }'
}

inside() {
    local operation status=0
    record
    for operation in "${operations[@]}"; do
        points "$operation" | grep -E "^($fallible) " >"$work/fallible"
        each "$operation" 's/$/ /' <"$work/fallible" | report "failed once" 'old|new' || status=1
        grep -E "^($fatal) " "$work/fallible" | sort -u -k 1,1 -s >"$work/fatal"
        each "$operation" 's/$/+/' <"$work/fatal" | report "kept failing" old || status=1
    done
    return "$status"
}

# Tries the points on stdin with both errors, each edited by a sed command.
each() { # OPERATION EDIT
    local call number error
    sed "$2" | while read -r call number; do
        for error in ENOSPC EIO; do
            try "$1" "$call" "$error" "$number"
        done
    done
}

start "${@:3}"
