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
    (cd "$checkout" && cmake --preset dev && cmake --build --preset dev --target auxctl aux) >&2
    # Wherever the file is, the private world shows this copy.
    stage=$(mktemp -d "$checkout/build/demo.XXXXXX")
    trap 'rm -rf "$stage"' EXIT
    cp -- "$file" "$stage"
    "$checkout/kit/sandbox" --empty "$checkout/scripts/demo.sh" --inside \
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

server_gpg() {
    gpg --homedir /data/server --batch --quiet --trust-model always --pinentry-mode loopback \
        --passphrase-file /data/passphrase "$@"
}

server_makes_key() {
    mkdir -m 700 /data/server
    server_gpg --quick-generate-key terminal future-default
    server_gpg --output /data/pair.gpg --export-secret-keys terminal
}

keep_key() {
    local protected
    protected=$("$1" key protect /data/pair.gpg --passphrase-file /data/passphrase)
    "$1" config set "/crypto/gpgkey=$protected"
}

take_key() {
    "$1" config get /crypto/gpgkey | "$1" key reveal - /data/key.gpg --passphrase-file /data/passphrase
}

# send AUXCTL CONTAINER NEW: takes the container to the server, encrypted.
send() {
    local auxctl=$1 container=$2 new=$3 transfer
    transfer=/data/zel/rk4/transfer/${new##*/}
    printf 'a pass phrase\n' >/data/passphrase
    step 0 "A server makes a key pair" /data/pair.gpg server_makes_key
    step 0 "Keep it in the settings, with a pass phrase" /crypto/gpgkey keep_key "$auxctl"
    step 0 "Take it out of the settings" /data/key.gpg take_key "$auxctl"
    step 0 "Import it" /tmp/gpg-temp-keyring "$auxctl" pgp import /data/key.gpg
    rm /data/key.gpg
    step 0 "Encrypt the container" "$new" "$auxctl" pgp encrypt "$container" "$new"
    step 0 "Move the message to transfer" "$transfer" "$auxctl" files move new transfer "$new"
    step 0 "Remove the key" /tmp/gpg-temp-keyring "$auxctl" pgp remove
    step 0 "The server decrypts it with a plain gpg" /data/arrived \
        server_gpg --output /data/arrived --decrypt "$transfer"
    step 0 "The server verifies the container" /data/arrived "$auxctl" container verify /data/arrived
}

# server_signs KEY [GPG_OPTION...]: signs the update container.
server_signs() {
    local key=$1
    shift
    server_gpg "$@" --local-user "$key" --yes --output /data/update.bin.sig --detach-sign /data/update.bin
}

server_packs_update() { # AUXCTL FILE
    "$1" container pack "$2" /data/update.bin --type UPDF
    server_gpg --quick-generate-key updates ed25519 sign never
    server_gpg --quick-generate-key thief ed25519 sign never
    server_gpg --faked-system-time 20200101T000000 --quick-generate-key expired ed25519 sign 1y
    server_gpg --export updates expired >/data/trusted.gpg
    server_signs updates
}

# Verifies the update and only then unpacks it.
take_update() { # AUXCTL
    "$1" container verify /data/update.bin --keyring /data/trusted.gpg &&
        "$1" container unpack /data/update.bin /data/updated
}

flip_byte() { # FILE
    local byte
    byte=$(tail -c 1 "$1" | od -An -tu1)
    truncate -s -1 "$1"
    printf '%b' "\\$(printf '%03o' $((byte ^ 1)))" >>"$1"
}

# update AUXCTL FILE: the way round, from the server to the terminal.
update() {
    local auxctl=$1 file=$2 update=/data/update.bin
    mkdir /data/updated
    step 0 "The server signs an update with a plain gpg" "$update.sig" server_packs_update "$auxctl" "$file"
    step 0 "The terminal verifies it and unpacks it" "/data/updated/${file##*/}" take_update "$auxctl"
    step 0 "Compare with the file, byte for byte" "/data/updated/${file##*/}" cmp "$file" "/data/updated/${file##*/}"
    flip_byte "$update"
    step 3 "Refuse it with one flipped byte" "$update" take_update "$auxctl"
    flip_byte "$update"
    server_signs thief
    step 3 "Refuse it by another key" "$update.sig" take_update "$auxctl"
    server_signs expired --faked-system-time 20200601T000000
    step 3 "Refuse it by an expired key" "$update.sig" take_update "$auxctl"
    rm "$update.sig"
    step 3 "Refuse it without a signature" "$update" take_update "$auxctl"
}

inside() {
    local auxctl=$1 file=$2 new archive wrong checksum
    wrong=$(printf '0%.0s' {1..64})
    mkdir -p /data/zel/rk4/{new,archive,transfer} /data/out
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

    send "$auxctl" "$archive" "$new"
    update "$auxctl" "$file"

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
