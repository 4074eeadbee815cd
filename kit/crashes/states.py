# SPDX-License-Identifier: MIT
"""Makes the contents that a disk may have after a power cut, from its requests up to then.

What was written before the last flush is there; of what came later the disk may have kept any part.
"""

import hashlib
import random

import blocklog

BLOCK = 4096
ALL_SUBSETS = 5  # writes between two flushes, up to which all subsets are made
RANDOM_SUBSETS, TORN = 20, 4  # of each stretch
ZEROES = bytes(BLOCK)
ZERO_BLOCK = (ZEROES, 0)  # with its digest


def digest(number, content):
    """Of a block in its place; the sum over all blocks is that of a disk. Zeroes do not count."""
    if content == ZEROES:
        return 0
    hashed = hashlib.blake2b(content, digest_size=16, salt=number.to_bytes(8, "little"))
    return int.from_bytes(hashed.digest(), "little")


class Write:
    """A request's data, block by block."""

    def __init__(self, entry, size):
        self.is_lasting, self.pieces = entry.is_lasting, []
        if entry.offset >= size:  # a mark
            return
        position = 0
        while position < len(entry.data):
            number, start = divmod(entry.offset + position, BLOCK)
            piece = entry.data[position:position + BLOCK - start]
            known = digest(number, piece) if len(piece) == BLOCK else None
            self.pieces.append((number, start, piece, known))
            position += len(piece)

    def torn(self, sectors):
        """Its beginning only."""
        part, left = Write.__new__(Write), sectors * blocklog.SECTOR
        part.is_lasting, part.pieces = False, []
        for number, start, piece, _ in self.pieces:
            part.pieces.append((number, start, piece[:left], None))
            left -= min(left, len(piece))
        return part

    def sectors(self):
        return sum(len(piece) for _, _, piece, _ in self.pieces) // blocklog.SECTOR


class Content:
    """What the blocks hold, over that of another content; those that nobody wrote are zero."""

    def __init__(self, below=None):
        self.below = below.blocks if below else {}
        self.blocks = {}
        self.digest = below.digest if below else 0

    def put(self, number, content, known=None):
        old = self.blocks.get(number) or self.below.get(number)
        if old:
            self.digest ^= old[1]
        known = digest(number, content) if known is None else known
        self.blocks[number] = (content, known)
        self.digest ^= known

    def apply(self, write):
        for number, start, piece, known in write.pieces:
            if known is None:
                old = (self.blocks.get(number) or self.below.get(number) or ZERO_BLOCK)[0]
                piece = old[:start] + piece + old[start + len(piece):]
            self.put(number, piece, known)
        return self

    def all_blocks(self):
        return {**self.below, **self.blocks}


class State:
    """A content, how many requests had been made by then, and how it came about."""

    def __init__(self, content, position, origin):
        self.content, self.position, self.origin = content, position, origin


def first_content(path, size):
    content = Content()
    with open(path, "rb") as base:
        for number in range(size // BLOCK):
            block = base.read(BLOCK)
            if block != ZEROES:
                content.put(number, block)
    return content


def stretches(entries):
    """The requests between two flushes, as the position of the first and the requests."""
    start = 0
    for position, entry in enumerate(entries):
        if entry.is_flush:
            yield start, entries[start:position]
            start = position + 1
    yield start, entries[start:]


def chosen_subsets(count, chance):
    """Subsets of so many writes, each with its last one: all where there are few."""
    if count <= ALL_SUBSETS:
        for last in range(count):
            for bits in range(1 << last):
                yield last, [number for number in range(last) if bits >> number & 1]
        return
    for _ in range(RANDOM_SUBSETS):
        last = chance.randrange(count)
        share = chance.random()
        yield last, [number for number in range(last) if chance.random() < share]


def states_of_stretch(base, start, writes, chance):
    """All prefixes, then subsets and torn writes."""
    prefix = Content(base)
    yield State(prefix, start, "flush")
    for number, write in enumerate(writes):
        prefix.apply(write)
        yield State(prefix, start + number + 1, f"prefix {number + 1} of {len(writes)}")

    def subset(numbers, last):
        content = Content(base)
        for number in range(last):
            if number in numbers or writes[number].is_lasting:
                content.apply(writes[number])
        return content

    for last, numbers in chosen_subsets(len(writes), chance):
        content = subset(set(numbers), last).apply(writes[last])
        yield State(content, start + last + 1, f"{numbers} and {last} of {len(writes)}")
    for last in [n for n, write in enumerate(writes) if write.sectors() > 1][-TORN:]:
        sectors = chance.randrange(1, writes[last].sectors())
        content = subset(set(range(last)), last).apply(writes[last].torn(sectors))
        yield State(content, start + last + 1, f"{sectors} sectors of {last} of {len(writes)}")


def states(base, entries, size, seed):
    """All of them; a content is good until the next one is taken."""
    chance = random.Random(seed)
    content = first_content(base, size)
    for start, requests in stretches(entries):
        writes = [Write(entry, size) for entry in requests]
        yield from states_of_stretch(content, start, writes, chance)
        for write in writes:
            content.apply(write)
