#!/usr/bin/env bash
# Cross-builds the Debian packages of this checkout, and then its tests: build.sh ARCH DIRECTORY
# or runs a command there instead of building the tests: build.sh ARCH DIRECTORY COMMAND...
#
# In a Debian root of its own, DIRECTORY/builder, so that nothing collides with what the machine
# has. There the packages are left in /, everything else in /libaux. Only what changed is built.
set -euo pipefail

main() {
    local checkout
    checkout=$(cd "$(dirname "$0")/../.." && pwd)
    builder=$2/builder
    make_builder "$1" "$checkout"
    copy_sources "$checkout"
    build packages "$1"
    if [ $# -gt 2 ]; then
        in_builder "${@:3}"
    else
        build tests "$1"
    fi
}

build() { # WHAT ARCH
    [ ! -e "$builder/built.$1" ] || return 0
    echo "Building the $1 for $2" >&2
    in_builder /libaux/kit/terminal/build.sh --inside "$@"
    touch "$builder/built.$1"
}

make_builder() { # ARCH CHECKOUT
    local build needed=$2/debian/control
    cmp -s "$needed" "$builder.control" && return
    echo "Making a root to build for $1 in" >&2
    rm -rf --one-file-system "$builder" "$builder.control"
    build=$(dpkg --print-architecture)
    # shellcheck disable=SC2016
    "$2/scripts/debian-root" "$builder" --architectures="$build,$1" \
        --variant=apt --format=directory \
        --include="crossbuild-essential-$1" \
        --customize-hook='mkdir "$1/libaux"' \
        --customize-hook="copy-in $2/debian /libaux" \
        --customize-hook='chroot "$1" apt-get build-dep -qq --yes --no-install-recommends \
            --host-architecture='"$1"' --build-profiles=cross,nocheck /libaux'
    cp "$needed" "$builder.control"
}

# Takes over what changed, with the time of now, so that it is newer than what was built before; and
# has it built if there is any.
copy_sources() { # CHECKOUT
    local changed
    changed=$(rsync --archive --no-times --checksum --delete --itemize-changes \
        --exclude=/.git --filter=':- .gitignore' "$1/" "$builder/libaux/")
    [ -z "$changed" ] || rm -f "$builder"/built.*
}

# What the caller's environment says about building holds for the caller's machine.
in_builder() {
    # shellcheck disable=SC2016
    unshare --mount --pid --fork --kill-child sh -ec '
        mount -t proc proc "$0/proc"
        exec chroot "$0" "$@"' "$builder" \
        env --ignore-environment PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 "$@"
}

inside() { # WHAT ARCH
    cd /libaux
    "build_$1" "$2" >/build.log 2>&1 || fail
}

fail() {
    cat /build.log
    exit 1
}

build_packages() { # ARCH
    rm -f /*.deb debian/files debian/debhelper-build-stamp
    DEB_BUILD_PROFILES="cross nocheck" DEB_BUILD_OPTIONS="noautodbgsym" \
        dpkg-buildpackage -us -uc -b -nc -a"$1"
}

build_tests() { # ARCH
    eval "$(dpkg-architecture -f -a"$1" 2>/dev/null)"
    cmake -S . -B build/tests -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR="$DEB_HOST_GNU_CPU" \
        -DCMAKE_CXX_COMPILER="$DEB_HOST_GNU_TYPE-g++" \
        -DCMAKE_CROSSCOMPILING_EMULATOR="qemu-$DEB_HOST_GNU_CPU"
    cmake --build build/tests
}

if [ "$1" = --inside ]; then
    inside "${@:2}"
else
    main "$@"
fi
