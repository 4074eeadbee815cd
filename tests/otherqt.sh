#!/usr/bin/env bash
# Two builds of auxctl write the same settings, container and documents: otherqt.sh AUXCTL OTHER
set -euo pipefail
shopt -s inherit_errexit

written() { # AUXCTL
    rm -rf /data/config /data/out
    mkdir -p /data/out
    "$1" config set /network/dataport=8080 /device/lang='ä/"' /device/mode/usb=false >/data/out/set
    cp /data/config/aux/terminal.JSON /data/out/settings
    "$1" container pack --type UPDF "$0" /data/out/container >/data/out/packed
    "$1" config schema >/data/out/schema
    "$1" schema >/data/out/schemas
    "$1" manual >/data/out/manual
    (cd /data/out && sha256sum -- *)
}

if [ "$1" = --inside ]; then
    first=$(written "$2")
    second=$(written "$3")
    diff <(echo "$first") <(echo "$second")
    exit
fi
[ -x "$2" ] || { echo "SKIPPED: there is no $2" >&2 && exit 77; }
"$(dirname "$0")/../kit/sandbox" --empty "$0" --inside "$@"
