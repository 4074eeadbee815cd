# SPDX-License-Identifier: MIT
"""Disks with a file system, mounted at /data in a world of the calling process' own."""

import collections
import contextlib
import ctypes
import os
import pathlib
import subprocess
import time

import states

DATA = "/data"
SIZE = 160 << 20  # a move leaves 64 MiB free; ext4 has a second superblock from 128 MiB on
CLONE_NEWNS = 0x20000
MS_BIND, MS_REC, MS_PRIVATE = 0x1000, 0x4000, 0x40000
libc = ctypes.CDLL(None, use_errno=True)

FileSystem = collections.namedtuple("FileSystem", "kind make options check repair", defaults=[None])


def ext4(inode_size, mode):
    make = f"mkfs.ext4 -q -b 4096 -I {inode_size} -E lazy_itable_init=0,lazy_journal_init=0"
    return FileSystem("ext4", make, f"data={mode}", "e2fsck -fn",
                      "e2fsck -fy")


FILE_SYSTEMS = {
    "ext4": ext4(256, "ordered"),
    "ext4-writeback": ext4(256, "writeback"),
    "ext4-128": ext4(128, "ordered"),
    "ext4-128-writeback": ext4(128, "writeback"),
    "f2fs": FileSystem("f2fs", "mkfs.f2fs -q", "nodiscard", "fsck.f2fs --dry-run"),
    "vfat": FileSystem("vfat", "mkfs.vfat", "", "true"),  # never clean after a cut
}


def make_own_world(checkout):
    """What this process mounts and has in /tmp, no other sees; the checkout stays where it is."""
    there = os.open(checkout, os.O_PATH)
    check(libc.unshare(CLONE_NEWNS))
    check(libc.mount(None, b"/", None, MS_REC | MS_PRIVATE, None))
    check(libc.mount(b"tmp", b"/tmp", b"tmpfs", 0, None))
    if not os.path.exists(checkout):
        os.makedirs(checkout)
        check(libc.mount(f"/proc/self/fd/{there}".encode(), str(checkout).encode(), None,
                         MS_BIND | MS_REC, None))
    os.close(there)


def check(result):
    if result != 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))


@contextlib.contextmanager
def loop(path, size=SIZE):
    """A block device of that much of a file."""
    command = ["losetup", "--find", "--show", "--sizelimit", str(size), path]
    for attempt in range(20):  # others may take the same one
        run = subprocess.run(command, capture_output=True, text=True, check=attempt == 19)
        if run.returncode == 0:
            break
        time.sleep(0.05)
    device = run.stdout.strip()
    try:
        yield device
    finally:
        subprocess.run(["losetup", "--detach", device], check=True)


@contextlib.contextmanager
def mounted(device, file_system):
    """Tells whether it had to be repaired first: the kernel refuses half a superblock."""
    mount = [word.encode() for word in (device, DATA, file_system.kind)]
    refused = libc.mount(*mount, 0, file_system.options.encode()) != 0
    if refused and file_system.repair:
        subprocess.run([*file_system.repair.split(), device], capture_output=True, check=False)
        check(libc.mount(*mount, 0, file_system.options.encode()))
    elif refused:
        check(-1)
    try:
        yield refused
    finally:
        check(libc.umount2(DATA.encode(), 0))


def make(path, file_system):
    """A file with an empty file system, and behind it room for the marks."""
    with open(path, "wb") as disk:
        disk.truncate(SIZE)
    subprocess.run([*file_system.make.split(), path], check=True, stdout=subprocess.DEVNULL)
    os.truncate(path, SIZE + states.BLOCK)


def fill(path, content):
    """Gives a file that content; that is quicker where it held most of it before."""
    with open(path, "r+b") as disk:
        blocks = {**dict.fromkeys(written(disk.fileno()), states.ZERO_BLOCK), **content.all_blocks()}
        for start, count in runs(sorted(blocks)):
            os.pwritev(disk.fileno(), [blocks[number][0] for number in range(start, start + count)],
                       start * states.BLOCK)


def written(file):
    """The blocks that are no holes."""
    end = 0
    while True:
        try:
            start = os.lseek(file, end, os.SEEK_DATA)
        except OSError:  # no more of them
            return
        end = os.lseek(file, start, os.SEEK_HOLE)
        yield from range(start // states.BLOCK, -(-end // states.BLOCK))


def runs(numbers):
    """The first of each run of numbers, and how many follow one another, at most what a call takes."""
    start = count = 0
    for number in numbers:
        if number != start + count or count == 1024:
            if count:
                yield start, count
            start, count = number, 0
        count += 1
    if count:
        yield start, count


@contextlib.contextmanager
def recorded(path, log):
    """The disk as a file of which each request is logged."""
    node = pathlib.Path(f"{path}.recorded")
    node.touch()
    pathlib.Path(log).write_bytes(b"")
    server = subprocess.Popen(
        ["qemu-storage-daemon",
         "--blockdev", f"file,node-name=disk,filename={path}",
         "--blockdev", f"file,node-name=log,filename={log}",
         "--blockdev", "blklogwrites,node-name=recorded,file=disk,log=log",
         "--export", f"fuse,id=recorded,node-name=recorded,mountpoint={node},writable=on"])
    try:
        while node.stat().st_size == 0 and server.poll() is None:
            time.sleep(0.01)
        yield node
    finally:
        stop(server)


def stop(server):
    """It may miss a signal that comes just before it waits for requests."""
    while server.poll() is None:
        server.terminate()
        with contextlib.suppress(subprocess.TimeoutExpired):
            server.wait(timeout=0.5)
