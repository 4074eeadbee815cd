#!/usr/bin/env bash
# A terminal in a box: a virtual ARM machine that has this checkout's packages installed.
# Exits with 77 and the reason where the machine cannot do that.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() {
    cat <<'END'
terminal.sh [--arch ARCH]             boots it and gives a shell on its console
terminal.sh test [OPTION...]          runs the tests in it, and cuts its power

  --arch ARCH   armhf (default) or arm64
  --cuts N      how often the power is cut; 5 times by default
  --seed N      decides when the power is cut; a test prints its seed
END
}

main() {
    local options arch=armhf cuts=5 seed=$RANDOM
    options=$(getopt -n terminal.sh -o '' -l arch:,cuts:,seed:,help -- "$@") || misused
    eval set -- "$options"
    while [ "$1" != -- ]; do
        case $1 in
        --arch) arch=$2 ;;
        --cuts) cuts=$2 ;;
        --seed) seed=$2 ;;
        --help) usage && exit ;;
        esac
        shift 2
    done
    shift
    [[ $arch =~ ^(armhf|arm64)$ && $cuts =~ ^[0-9]+$ && $seed =~ ^[0-9]+$ ]] || misused
    [[ $* =~ ^(test)?$ ]] || misused
    prepare
    "run_${1:-shell}"
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
    [ "$(id -u)" -eq 0 ] || skip "a root for another architecture is made by root only"
    unshare --mount true 2>/dev/null || skip "this machine refuses private mounts"
    scripts/bootstrap cpio e2fsprogs kmod mmdebstrap nbdkit qemu-system-arm rsync
    directory=$PWD/build/terminal/$arch
    mkdir -p "$directory"
    kit/terminal/build.sh "$arch" "$directory"
    kit/terminal/image.sh "$arch" "$directory"
}

# Boots with a disk for /data that is made if need be.
boot() { # DISK TASK
    [ -e "$1" ] || mkfs.ext4 -q -L data "$1" 256M
    kit/terminal/machine.sh "$arch" "$directory" "$1" "$2"
}

# What is in /data stays from one time to the next.
run_shell() {
    boot "$directory/data.img" kit/terminal/shell.sh
}

run_test() {
    local console=$directory/console passed failed skipped cut lost
    rm -f "$directory/test.img"
    boot "$directory/test.img" tests/terminal/test.sh </dev/null | tee "$console.test"
    read -r failed passed < <(sed -nE 's/.*, ([0-9]+) tests failed out of ([0-9]+)\r?$/\1 \2/p' "$console.test") ||
        { echo "The tests in the terminal did not come to an end" >&2 && exit 1; }
    skipped=$(grep -c '^SKIP' "$console.test" || true)

    echo "Cutting the power, seed $seed"
    tests/terminal/powercut.py "$arch" "$directory" "$cuts" "$seed" | tee "$console.powercut" || true
    read -r cut lost < <(sed -nE 's/^([0-9]+) cuts, ([0-9]+) with faults$/\1 \2/p' "$console.powercut") || exit 1
    echo "$((passed - failed + cut - lost)) passed, $((failed + lost)) failed, $skipped skipped"
    [ $((failed + lost)) -eq 0 ]
}

main "$@"
