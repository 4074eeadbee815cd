# SPDX-License-Identifier: MIT
"""Reads what QEMU's blklogwrites has written down of a disk: the format of Linux' dm-log-writes."""

import struct

SECTOR = 512
MAGIC = 0x6A736677736872
FLUSH, FUA, DISCARD = 1, 2, 4
SUPERBLOCK = struct.Struct("<QQQI")
ENTRY = struct.Struct("<QQQQ")


class Entry:
    """One request: where its data goes, and whether all before it is on the disk by then."""

    def __init__(self, sector, flags, data):
        self.offset = sector * SECTOR
        self.is_flush = bool(flags & FLUSH)
        self.is_lasting = bool(flags & FUA)
        self.data = data


def read(path):
    """The requests in their order."""
    with open(path, "rb") as log:
        magic, version, count, size = SUPERBLOCK.unpack(log.read(SUPERBLOCK.size))
        if (magic, version) != (MAGIC, 1):
            raise ValueError(f"{path} is no log of writes")
        position, entries = size, []
        for _ in range(count):
            log.seek(position)
            sector, sectors, flags, _ = ENTRY.unpack(log.read(ENTRY.size))
            length = 0 if flags & DISCARD else sectors * SECTOR
            log.seek(position + size)
            data = log.read(length) if length else b""
            entries.append(Entry(sector, flags, data))
            position += size + -(-length // size) * size
    return entries
