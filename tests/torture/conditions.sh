#!/usr/bin/env bash
# Uses the settings where others left hostile files or a full disk:
# conditions.sh SETTINGS_PROGRAM
. "$(dirname "$0")/common.sh"
shopt -s lastpipe # a case is counted also at the end of a pipe
count=0 failed=0
organisation='' file=''

# Starts a case with a directory of its own.
begin() { # WHAT
    what=$1
    organisation=case$((++count))
    file=$(file_of "$organisation")
    mkdir -p "${file%/*}"
}

expect() { # FACT VALUE EXPECTED
    [ "$2" = "$3" ] && return
    echo "$what: $1 is '${2:0:100}', not '$3'"
    failed=$((failed + 1))
}

run() { # OPERATION [VALUE]
    timeout 20 "$settings" "$organisation" "$@" 2>/dev/null || echo "exit status $?"
}

# Reads a file that nobody would want, and writes to it.
hostile() { # WHAT LANGUAGE; the file is on stdin
    begin "file: $1"
    cat >"$file"
    expect language "$(run get)" "$2"
    run set fr
    expect "written language" "$(run get)" "${3:-fr}"
}

repeat() { # COUNT TEXT
    printf "%0$1d" 0 | sed "s|0|$2|g"
}

hostile_files() {
    printf '\0\xff{' | hostile "no JSON" en_GB
    echo '[1, {"device": {"lang": "de"}}]' | hostile "array at the top" en_GB
    { repeat 2000 '{"device":' && echo 1 && repeat 2000 '}'; } | hostile "2,000 levels" en_GB
    echo '{"device": {"lang": "a", "lang": "b"}}' | hostile duplicates b
    echo '{"device/lang": "de", "a//": 1, "": 1, "/": 2}' | hostile "names with separators" de
    echo '{"device": {"lang": null}, "a": [1]}' | hostile null 0
    # The members of an object win over the value of its name.
    echo '{"device": {"lang": {"x": 1}}}' | hostile object en_GB en_GB
    { printf '{"device": {"lang": "de"}, "' && repeat 5000 / && echo '": 1}'; } |
        hostile "name too deep to be written" de
    { printf '{"device": {"lang": "de"}, "' && repeat 500000 "$(repeat 100 /)" && echo '": 1}'; } |
        hostile "50 MB of a name" de
    { printf '{"device": {"lang": "de", "x": "' && repeat 500000 "$(repeat 100 x)" && echo '"}}'; } |
        hostile "50 MB of text" de
    { printf '{"device": {"lang": "de"' && seq 100000 | sed 's/.*/, "&": 1/' && echo '}}'; } |
        hostile "100,000 members" de
}

wrong_types() {
    local value
    for value in '"text" text' 'true true' '1e300 0' '[1] 0'; do
        echo "{\"version\": ${value% *}, \"config_changes\": ${value% *}, \"device/lang\": ${value% *}}" |
            hostile "all values $value" "${value#* }"
    done
}

times() {
    begin "existing file"
    echo '{}' >"$file"
    touch -d @4000000000 "$file" # QSettings sees a change by its time only
    run set de
    run set fr
    expect "time in ms" "$(date -r "$file" +%s%3N)" 4000000000002
}

# Sizes below and above what a buffer holds back.
full_disk() {
    local size
    for size in 10000 20000; do
        begin "full disk, $size bytes"
        mount -t tmpfs -o size=16k small "${file%/*}"
        run set de
        run set "$(repeat "$size" x)"
        expect language "$(run get)" de
        expect files "$(ls "${file%/*}")" terminal.JSON
        umount "${file%/*}"
    done
}

inside() {
    mkdir -p "$work"
    hostile_files
    wrong_types
    times
    full_disk
    echo "$count cases, $failed unexpected"
    [ "$failed" -eq 0 ]
}

case ${2:-} in
--inside) inside ;;
*) run_inside ;;
esac
