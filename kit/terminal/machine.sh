#!/usr/bin/env bash
# Boots a terminal on this console: machine.sh ARCH DIRECTORY DATA_DISK TASK
set -euo pipefail
directory=$2
case $1 in
armhf) machine=(qemu-system-arm -cpu cortex-a15) ;;
arm64) machine=(qemu-system-aarch64 -cpu cortex-a53) ;;
esac
number=0
for disk in "$directory/base.img" "$directory/layer.img" "$3"; do
    readonly=$([ $number -lt 2 ] && echo on || echo off)
    machine+=(-drive "file=$disk,format=raw,if=none,id=disk$number,readonly=$readonly"
        -device "virtio-blk-device,drive=disk$number")
    number=$((number + 1))
done
exec "${machine[@]}" -M virt -smp 2 -m 512 -nographic -no-reboot -nic none \
    -kernel "$directory/kernel" -initrd "$directory/initrd" \
    -append "console=ttyAMA0 loglevel=3 panic=-1 net.ifnames=0 task=$4 TERM=${TERM:-vt100}"
