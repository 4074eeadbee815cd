#!/usr/bin/env bash
# Takes a file through the terminal's main job in a private /data: demo.sh [FILE]
# Without FILE it takes the library that was just built. Exits with 1 where a step fails, with 77
# where the machine refuses the private /data.
set -euo pipefail

main() {
    local checkout file
    checkout=$(cd "$(dirname "$0")/.." && pwd)
    file=$(realpath -m "${1:-$checkout/build/dev/src/libaux.so.1}")
    "$checkout/scripts/bootstrap"
    (cd "$checkout" && cmake --preset dev && cmake --build --preset dev --target auxctl) >&2
    # Wherever the file is, the private world shows this copy.
    stage=$(mktemp -d "$checkout/build/demo.XXXXXX")
    trap 'rm -rf "$stage"' EXIT
    cp -- "$file" "$stage"
    "$checkout/tests/sandbox" "$checkout/scripts/demo.sh" --inside \
        "$checkout/build/dev/tools/auxctl/auxctl" "$stage/${file##*/}"
}

summary=()
failures=0

# step STATUS WHAT PATH COMMAND...: runs the command, which is to end with the status.
step() {
    local expected=$1 what=$2 path=$3 result status=0
    shift 3
    printf '\n%s\n$ %s\n' "$what" "${*/#*\/auxctl/auxctl}"
    "$@" 2>&1 || status=$?
    if [ "$status" -eq 0 ]; then
        result="done"
    else
        result="refused, exit status $status"
    fi
    if [ "$status" -ne "$expected" ]; then
        result="FAILED, exit status $status"
        failures=$((failures + 1))
    fi
    summary+=("$(printf '%-44s  %-26s  %s' "$what" "$result" "$path")")
}

inside() {
    local auxctl=$1 file=$2 new archive wrong checksum
    wrong=$(printf '0%.0s' {1..64})
    mkdir -p /data/zel/rk4/{new,archive} /data/out
    new=$("$auxctl" files name new)
    archive=/data/zel/rk4/archive/${new##*/}

    step 0 "Pack the file into a container" "$new" "$auxctl" container pack "$file" "$new"
    step 0 "Show the container" "$new" "$auxctl" container info "$new"
    checksum=$("$auxctl" files checksum "$new") || true # the steps below show it
    step 0 "Move it to archive, checksum verified" "$archive" \
        "$auxctl" files move new archive "$new" --checksum "$checksum"
    step 0 "A copy of it arrives once more" "$new" cp "$archive" "$new"
    step 1 "Refuse the move with a wrong checksum" "$new" \
        "$auxctl" files move new archive "$new" --checksum "$wrong"
    step 0 "Move the duplicate a second time" "$archive" \
        "$auxctl" files move new archive "$new" --checksum "$checksum"
    step 0 "Unpack it from archive" "/data/out/${file##*/}" "$auxctl" container unpack "$archive" /data/out
    step 0 "Compare with the file, byte for byte" "/data/out/${file##*/}" cmp "$file" "/data/out/${file##*/}"

    printf '\nSummary\n'
    printf '%s\n' "${summary[@]}"
    [ "$failures" -eq 0 ]
}

if [ "${1:-}" = --inside ]; then
    shift
    inside "$@"
else
    main "$@"
fi
