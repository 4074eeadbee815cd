#!/usr/bin/env bash
# Builds the Debian packages and tries them on a fresh Debian root, of the release and from the
# sources that this machine's apt knows. To be run by hand, as root; takes some minutes.
# Exits with 77 and the reason where the machine cannot do that.
set -euo pipefail

skip() {
    echo "SKIPPED: $1" >&2
    exit 77
}

step() {
    printf '\n== %s\n' "$1"
}

main() {
    local checkout tool
    [ "$(id -u)" -eq 0 ] || skip "a fresh root is made by root only"
    for tool in dpkg-buildpackage dh lintian mmdebstrap; do
        command -v "$tool" >/dev/null || skip "$tool is not installed"
    done
    unshare --mount true 2>/dev/null || skip "this machine refuses private mounts"
    checkout=$(cd "$(dirname "$0")/.." && pwd)
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT

    step "Build the packages"
    build_packages "$checkout"
    step "Check them"
    lintian --allow-root --fail-on error "$work"/*.changes
    step "Try them on a fresh root"
    make_root "$checkout"
    step "The packages work"
}

# The results of dpkg-buildpackage end up beside the sources, so that it works on a copy.
build_packages() {
    mkdir "$work/libaux"
    tar -C "$1" --exclude=./.git --exclude=./build -c . | tar -C "$work/libaux" -x
    export DEB_BUILD_PROFILES=nocheck
    (cd "$work/libaux" && dpkg-buildpackage -us -uc -b) >"$work/log" 2>&1 || {
        cat "$work/log"
        return 1
    }
    (cd "$work" && ls ./*.deb)
}

# The root is gone as soon as the hooks have run in it.
make_root() {
    cp "$1/tests/package.sh" "$1/tests/consumer/main.cpp" "$work"
    # shellcheck disable=SC2016
    "$1/scripts/debian-root" /dev/null --variant=minbase --format=null \
        --customize-hook="copy-in $(echo "$work"/*.{deb,sh,cpp}) /root" \
        --customize-hook='chroot "$1" /root/package.sh --inside'
}

install() {
    DEBIAN_FRONTEND=noninteractive apt-get install -qq --yes --no-install-recommends "$@" >/dev/null
}

inside() {
    local status=0
    cd /root
    step "Install auxctl and the library, and nothing else but what they depend on"
    install ./libaux1_*.deb ./auxctl_*.deb
    auxctl --version | grep -F "$(dpkg-query -W -f '${Version}' auxctl)"

    step "auxctl info"
    auxctl info
    step "Pack, verify, unpack"
    seq 200000 >card.ddd
    auxctl container pack --type UPDF card.ddd card.bin
    auxctl container verify card.bin
    mkdir out
    auxctl container unpack card.bin out
    cmp card.ddd out/card.ddd
    printf 'X' | dd of=card.bin bs=1 seek=1000 conv=notrunc status=none
    auxctl container verify card.bin || status=$?
    [ "$status" -eq 3 ] # the check said no

    step "Build and run a program against libaux-dev; name a container with file(1)"
    install ./libaux-dev_*.deb file g++ pkg-config
    # shellcheck disable=SC2046
    g++ -std=c++17 main.cpp -o consumer $(pkg-config --cflags --libs libaux)
    ./consumer
    file -m /usr/share/misc/auxctl.magic card.bin | tee recognised
    grep -q 'libaux container, update, named "card.ddd"' recognised
}

if [ "${1:-}" = --inside ]; then
    inside
else
    main
fi
