#!/usr/bin/env bash
# Shows that no moment at which the power may fail loses what libaux has confirmed: a sample of the
# states that the disk may be in then.
# Exits with 77 and the reason where the machine cannot do that.
set -euo pipefail
cd "$(dirname "$0")/.."
readonly preset=${PRESET:-dev} # of CMakePresets.json
readonly steps=first,set,commit,rollback,apply,turns,pack,move,duplicate,killed,copied,encrypt,decrypt,reset

usage() {
    cat <<'END'
crashes.sh [--seed N] [--broken WHICH] [--flash | --all]

  --seed N        chooses the states; a sample prints its seed
  --broken WHICH  with flushes that do not do their work, which must be found: fsync (none does),
                  directory (those of directories do not) or order (the name comes before the data)
  --flash         cuts the power of a machine with UBIFS on emulated flash, 180 times
  --all           every state, on ext4 and f2fs, and --flash; it can be interrupted, and goes on then
END
}

main() {
    local options seed=$RANDOM broken='' what=sample
    options=$(getopt -n crashes.sh -o '' -l seed:,broken:,flash,all,help -- "$@") || misused
    eval set -- "$options"
    while [ "$1" != -- ]; do
        case $1 in
        --seed) seed=$2 && shift ;;
        --broken) broken=$2 && shift ;;
        --flash | --all) what=${1#--} ;;
        --help) usage && exit ;;
        esac
        shift
    done
    [[ $seed =~ ^[0-9]+$ && $broken =~ ^(fsync|directory|order)?$ && $# -eq 1 ]] || misused
    prepare
    "look_at_$what"
}

misused() {
    usage >&2
    exit 2
}

skip() {
    echo "SKIPPED: $1" >&2
    exit 77
}

prepare() {
    [ "$(id -u)" -eq 0 ] || skip "only root may mount a disk"
    unshare --mount true 2>/dev/null || skip "this machine refuses private mounts"
    losetup --find >/dev/null 2>&1 || skip "this machine lends no loop device"
    [ -c /dev/fuse ] || skip "this machine has no FUSE, through which a disk is recorded"
    scripts/bootstrap e2fsprogs qemu-system-common
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" --target crashes >/dev/null
    mkdir -p build/crashes
}

# Under this machine's kernel.
here() { # OPTION...
    kit/crashes/world build/crashes kit/crashes/crashes.py "build/$preset/tests/crashes" build/crashes "$@"
}

# Under Debian's; the machine is emulated, and slow.
there() { # OPTION...
    kit/crashes/machine build/crashes kit/crashes/crashes.py "build/$preset/tests/crashes" build/crashes \
        --patience 20000 "$@"
}

look_at_sample() {
    here --operations "$steps,brief" --seed "$seed" --flushes "$broken" --states 80 --seconds 200
}

look_at_flash() {
    scripts/bootstrap busybox-static cpio kmod linux-headers-amd64 mtd-utils qemu-system-x86
    kit/crashes/flash/cuts.py "build/$preset/tests/crashes" build/crashes \
        --operations "$steps,brief" --seed "$seed" --flushes "$broken"
}

look_at_all() {
    local status=0
    scripts/bootstrap busybox-static cpio f2fs-tools kmod qemu-system-x86
    here --operations "$steps,mix" --flushes "$broken" || status=1
    there --operations "$steps" --file-systems f2fs --flushes "$broken" || status=1
    look_at_flash || status=1
    exit "$status"
}

main "$@"
