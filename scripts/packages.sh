#!/usr/bin/env bash
# Builds the Debian packages and the source package from the files of this checkout that git knows,
# and leaves them in DIRECTORY with a list of what they hold (SPDX): packages.sh DIRECTORY
set -euo pipefail
directory=$(realpath -m -- "$1")
cd "$(dirname "$0")/.."
scripts/bootstrap debhelper doxygen dpkg-dev graphviz
# A path without a blank: in another one dpkg leaves its name in what it builds.
work=$(mktemp -d --tmpdir=/var/tmp)
trap 'rm -rf "$work"' EXIT

# dpkg-buildpackage leaves its results beside the sources. It keeps their modes, and times before that
# of the version, and each checkout and umask has its own.
umask 022
mkdir -p "$work/libaux" "$directory"
git ls-files -z |
    tar -c --null --files-from=- --mode=u=rwX,go=rX --mtime="@$(dpkg-parsechangelog --show-field Timestamp)" |
    tar -C "$work/libaux" -x
export DEB_BUILD_PROFILES=nocheck
(cd "$work/libaux" && dpkg-buildpackage -us -uc) >"$directory/build.log" 2>&1 || {
    cat "$directory/build.log" >&2
    exit 1
}
find "$work" -maxdepth 1 -type f -exec mv -t "$directory" {} +
scripts/sbom "$directory"/*.changes >"$directory/libaux.spdx.json"
ls "$directory"
