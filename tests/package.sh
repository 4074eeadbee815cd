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
    for tool in lintian mmdebstrap; do
        command -v "$tool" >/dev/null || skip "$tool is not installed"
    done
    unshare --mount true 2>/dev/null || skip "this machine refuses private mounts"
    checkout=$(cd "$(dirname "$0")/.." && pwd)
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT

    step "Build the packages"
    "$checkout/scripts/packages.sh" "$work"
    step "Check them"
    # That of Debian 12 does not know Static-Built-Using.
    lintian --allow-root --fail-on error,warning --suppress-tags unknown-field "$work"/*.changes
    step "Try them on a fresh root"
    make_root
    step "The packages work"
}

# The root is gone as soon as the hooks have run in it.
make_root() {
    # shellcheck disable=SC2016
    "$checkout/kit/terminal/debian-root" /dev/null --variant=minbase --format=null --include=xz-utils \
        --customize-hook="copy-in $(echo "$work"/*.deb "$work"/*.tar.xz) /root" \
        --customize-hook='chroot "$1" sh -c "cd /root; tar -xf libaux_*.tar.xz; exec libaux*/tests/package.sh --inside"' \
        --customize-hook="'$checkout/scripts/in-root' \"\$1\" developer <'$checkout/debian/tests/kit'"
}

install() {
    DEBIAN_FRONTEND=noninteractive apt-get install -qq --yes --no-install-recommends "$@" >/dev/null
}

inside() {
    cd /root/libaux*/
    step "Install auxctl and the library, and nothing else but what they depend on"
    install ../libaux1_*.deb ../auxctl_*.deb
    step "Try auxctl"
    install file
    debian/tests/auxctl
    step "Build and run a program against libaux-dev"
    install g++ ../libaux-dev_*.deb pkg-config
    debian/tests/program
    step "Look at the reference"
    install doc-base ../libaux-doc_*.deb
    install-docs --check /usr/share/doc-base/libaux-doc.libaux
    step "Build the example of libaux-kit as an ordinary user, and run it and its tests"
    install cmake make ../libaux-kit_*.deb
    useradd --create-home --shell /bin/bash developer
}

if [ "${1:-}" = --inside ]; then
    inside
else
    main
fi
