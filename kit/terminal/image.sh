#!/usr/bin/env bash
# Makes what a terminal boots from: image.sh ARCH DIRECTORY, where build.sh has built.
#
# Nothing of the foreign architecture runs here: a kernel, an initial file system, and two disks
# that are never written to. DIRECTORY/base.img has Debian, which seldom changes, and lies below
# DIRECTORY/layer.img with the packages and the tests that were just built.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

main() {
    builder=$2/builder
    work=$(mktemp -d -p "$2")
    trap 'rm -rf "$work"' EXIT
    triplet=$(dpkg-architecture -qDEB_HOST_MULTIARCH -a"$1" 2>/dev/null)
    case $1 in
    armhf) kernel=linux-image-armmp ;;
    *) kernel=linux-image-$1 ;;
    esac
    base_sources | cmp -s - "$2/base.key" || make_base "$1" "$2"
    [ "$2/layer.img" -nt "$builder/built.tests" ] || make_layer "$2"
}

base_sources() {
    cat "$here/packages" "$here/image.sh" "$here/initramfs"
}

make_base() { # ARCH DIRECTORY
    echo "Making the disk with Debian for $1" >&2
    rm -f "$2/base.key"
    "$here/../../scripts/debian-root" "$work/root" --architectures="$1" \
        --variant=extract --format=directory \
        --hook-dir=/usr/share/mmdebstrap/hooks/merged-usr \
        --include="$kernel,$(paste -sd, "$here/packages")"
    configure "$work/root"
    cp "$work/root"/boot/vmlinuz-* "$2/kernel"
    make_initramfs "$work/root" >"$2/initrd"
    make_disk base 1G "$work/root" "$2/base.img"
    base_sources >"$2/base.key"
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

make_layer() { # DIRECTORY
    local package layer=$work/layer
    echo "Making the disk with the packages and the tests" >&2
    mkdir "$layer"
    for package in libaux1 auxctl; do
        dpkg-deb --extract "$builder"/"$package"_*.deb "$layer"
    done
    rsync --archive --exclude='*.o' --exclude='*.a' --exclude='*_autogen' \
        --exclude=/libaux/debian --exclude=/libaux/build/debian \
        "$builder/libaux" "$layer"
    # What is tested is the library that is installed.
    ln -sf "/usr/lib/$triplet/libaux.so.1" "$layer/libaux/build/tests/src/libaux.so.1"
    cp -r "$here/root/." "$layer"
    make_disk layer 256M "$layer" "$1/layer.img"
}

make_disk() { # LABEL SIZE ROOT FILE
    mkfs.ext4 -q -L "$1" -d "$3" "$work/$1.img" "$2"
    mv "$work/$1.img" "$4"
}

main "$@"
