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

prepare() {
    scripts/bootstrap cpio e2fsprogs kmod mmdebstrap nbdkit qemu-system-arm rsync
    directory=$PWD/build/terminal/$arch
    mkdir -p "$directory"
    scripts/cross-build "$arch" "$directory"
}

boot() { # [OPTION...] [DIRECTORY]
    kit/terminal/boot --arch "$arch" --directory "$directory" --packages "$directory/builder" --with libqt5test5 "$@"
}

run_shell() {
    boot
}

# Lays the tests out as they were built, but what is tested is the library that is installed.
stage_tests() { # DIRECTORY
    local triplet
    triplet=$(dpkg-architecture -qDEB_HOST_MULTIARCH -a"$arch" 2>/dev/null)
    rsync --archive --exclude='*.o' --exclude='*.a' --exclude='*_autogen' \
        --exclude=/libaux/debian --exclude=/libaux/build/debian "$directory/builder/libaux" "$1"
    ln -sf "/usr/lib/$triplet/libaux.so.1" "$1/libaux/build/tests/src/libaux.so.1"
}

run_test() {
    local console=$directory/console stage passed failed skipped cut lost
    stage=$(mktemp -d)
    # shellcheck disable=SC2064
    trap "rm -rf '$stage'" EXIT
    stage_tests "$stage"
    boot --run /libaux/tests/terminal/test.sh "$stage" | tee "$console.test" || [ "${PIPESTATUS[0]}" -ne 77 ] || exit 77
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
