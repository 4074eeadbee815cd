#!/usr/bin/env bash
# Makes what a terminal boots from: image.sh ARCH DIRECTORY LAYER [PACKAGE...]
#
# Nothing of the foreign architecture runs here: a kernel, an initial file system, and two disks
# that are never written to. DIRECTORY/base.img has Debian with the packages, which seldom changes, and
# lies below DIRECTORY/layer.img with the content of the directory LAYER.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

main() {
    arch=$1 directory=$2
    mapfile -t packages < <(printf '%s\n' "${@:4}" | sort -u - "$here/packages")
    case $arch in
    armhf) kernel=linux-image-armmp ;;
    *) kernel=linux-image-$arch ;;
    esac
    work=$(mktemp -d -p "$directory")
    trap 'rm -rf "$work"' EXIT
    base_sources | cmp -s - "$directory/base.key" || make_base
    make_disk layer "$3" "$directory/layer.img"
}

base_sources() {
    echo "${packages[@]}"
    cat "$here/image.sh" "$here/initramfs"
}

make_base() {
    echo "Making the disk with Debian for $arch" >&2
    rm -f "$directory/base.key"
    "$here/debian-root" "$work/root" --architectures="$arch" \
        --variant=extract --format=directory \
        --hook-dir=/usr/share/mmdebstrap/hooks/merged-usr \
        --include="$kernel,$(IFS=, && echo "${packages[*]}")"
    configure "$work/root"
    cp "$work/root"/boot/vmlinuz-* "$directory/kernel"
    make_initramfs "$work/root" >"$directory/initrd"
    make_disk base "$work/root" "$directory/base.img"
    base_sources >"$directory/base.key"
}

# Does what the packages' own scripts would.
configure() { # ROOT
    local name
    rmdir "$1/var/run"
    ln -s /run "$1/var/run"
    ln -s mawk "$1/usr/bin/awk"
    for name in passwd group; do
        cp "$1/usr/share/base-passwd/$name.master" "$1/etc/$name"
    done
    cp "$1/usr/share/base-files/profile" "$1/etc/profile"
    mkdir "$1/data"
    depmod --basedir "$1" "$(ls "$1/lib/modules")"
}

# Prints the archive: busybox, our init, and what it takes to mount the disks.
make_initramfs() { # ROOT
    local version initial=$work/initial module
    version=$(ls "$1/lib/modules")
    mkdir -p "$initial"/{bin,modules,dev,proc,base,layer,changes}
    cp "$1/bin/busybox" "$initial/bin"
    cp "$here/initramfs" "$initial/init"
    modprobe --dirname "$1" --set-version "$version" --all --show-depends \
        virtio_mmio virtio_blk ext4 overlay | awk '{ print $2 }' | while read -r module; do
        cp "$module" "$initial/modules"
        echo "/modules/${module##*/}" >>"$initial/modules/order"
    done
    (cd "$initial" && find . | cpio --quiet --create --format=newc | gzip -1)
}

make_disk() { # LABEL ROOT FILE
    local size
    size=$(du -sm --apparent-size "$2" | cut -f 1)
    mkfs.ext4 -q -L "$1" -d "$2" "$work/$1.img" $((size * 3 / 2 + 32))M
    mv "$work/$1.img" "$3"
}

main "$@"
