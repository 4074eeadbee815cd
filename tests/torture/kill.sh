#!/usr/bin/env bash
# Kills a writer of the settings at every system call it makes: kill.sh SETTINGS_PROGRAM AUXCTL
#
# Afterwards the file must be the old or the new one, and a fresh process must come up and write a
# setting without a hang, whatever lock was left behind.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/common.sh"
readonly limit=15000 # ms; what QSettings alone does with such locks takes twice as long

# Prints "OPERATION FILE LOCK MILLISECONDS".
point() { # OPERATION SYSTEM_CALL NUMBER
    local organisation=$1-$2-$3 file found lock=none begin
    file=$(file_of "$organisation")
    place "$organisation" "$1"
    perform "$organisation" "$1" -o /dev/null -e "inject=$2:signal=KILL:when=$3" 2>/dev/null || true
    found=$(outcome "$organisation" "$1")
    [ ! -e "$file.lock" ] || lock=filled
    [ "$lock" = none ] || [ -s "$file.lock" ] || lock=empty
    begin=$(date +%s%3N)
    timeout 40 "$settings" "$organisation" set recovered 2>/dev/null || true
    grep -q '"lang": "recovered"' "$file" || found=UNWRITABLE
    echo "$1 $found $lock $(($(date +%s%3N) - begin)) $2 $3"
}

report() {
    awk -v limit="$limit" '
        { ++found[$2] }
        $2 !~ /^(old|new)$/ || $4 >= limit { print "unexpected: " $0 }
        $3 != "none" { ++locks }
        $3 == "empty" { ++empty }
        $4 > slowest { slowest = $4 }
        END {
            printf "%s: killed at %d points: %d old files, %d new, %d others; ", $1, NR, found["old"], found["new"], NR - found["old"] - found["new"]
            printf "%d locks left (%d empty); slowest recovery %d ms\n", locks, empty, slowest
            exit !(found["old"] > 0 && found["new"] > 0 && found["old"] + found["new"] == NR && locks > 0 && slowest < limit)
        }'
}

inside() {
    local operation status=0
    record
    for operation in "${operations[@]}"; do
        # Many at a time: they mostly wait until an empty lock is old enough.
        points "$operation" | xargs -P 12 -L 1 "$0" "$settings" "$auxctl" --point "$operation" |
            report || status=1
    done
    return "$status"
}

start "${@:3}"
