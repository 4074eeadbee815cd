#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Cuts the power of an emulated machine that works on UBIFS, and looks whether all that was confirmed
is there: cuts.py [OPTION...] PROGRAMS RESULTS

The flash is memory of the machine that is a file here. At a cut the machine is stopped, and the
flash copied: what the machine itself still had in mind is not in it. The last line is "S states,
D distinct, F with faults", the exit status 1 where F is not 0.
"""

import argparse
import contextlib
import mmap
import operator
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))

import ledger  # pylint: disable=wrong-import-position

SHARED = pathlib.Path("/dev/shm")
SIZE = 128 << 20
ERASED_TOGETHER = 128 << 10  # as sharedflash.c has it
MARK = 4096
PATIENCE = 20000  # ms for the next write of an emulated machine
LONGEST_PAUSE = 0.1  # seconds between two cuts
CUTS_OF_A_RUN = 25


class Flash:
    """Memory of the machine, as the blocks that are erased together."""

    def __init__(self, name):
        self.path = SHARED / f"crashes-{os.getpid()}-{name}"
        with open(self.path, "wb") as file:
            for _ in range(SIZE // ERASED_TOGETHER):
                file.write(b"\xff" * ERASED_TOGETHER)
        with open(self.path, "r+b") as file:
            self.memory = mmap.mmap(file.fileno(), SIZE)

    def copy(self, last):
        """What it holds; blocks that are as in the last copy are shared with it."""
        blocks = []
        for number, start in enumerate(range(0, SIZE, ERASED_TOGETHER)):
            block = self.memory[start:start + ERASED_TOGETHER]
            blocks.append(last[number] if last and last[number] == block else block)
        return blocks

    def fill(self, blocks):
        for number, block in enumerate(blocks):
            start = number * ERASED_TOGETHER
            if self.memory[start:start + ERASED_TOGETHER] != block:
                self.memory[start:start + ERASED_TOGETHER] = block


class Mark:
    """A mark of the workload, as a ledger reads it."""

    offset = 0

    def __init__(self, data):
        self.data = data


class Machine:
    """Two flashes, and someone inside who does what he is asked."""

    def __init__(self, programs, results):
        self.directory = pathlib.Path(tempfile.mkdtemp(prefix="flash-", dir=results))
        (self.directory / "kernel").symlink_to("../kernel")
        self.now, self.state = Flash("now"), Flash("state")
        devices = [f"-object memory-backend-file,id=flash{number},size={SIZE},share=on,mem-path={flash.path} "
                   f"-device ivshmem-plain,memdev=flash{number},addr={16 + number}"
                   for number, flash in enumerate((self.now, self.state))]
        flash = module(results / "kernel", self.directory / "module")
        with open(self.directory / "console", "wb") as console:
            self.process = subprocess.Popen(
                [HERE.parent / "machine", self.directory, HERE / "guest", programs, self.directory],
                env={**os.environ, "MACHINE": " ".join(devices), "MODULE": str(flash)},
                start_new_session=True, stdout=console, stderr=subprocess.STDOUT)

    def ask(self, command):
        """The answer, for as long as there is none, None."""
        part = self.directory / "command.part"
        part.write_text(f"{command}\n")
        part.rename(self.directory / "command")
        answer = self.directory / "answer"
        while not answer.exists():
            if self.process.poll() is not None:
                raise RuntimeError((self.directory / "console").read_text(errors="replace"))
            yield None
        text = answer.read_text(errors="replace")
        answer.unlink()
        yield text

    @contextlib.contextmanager
    def stopped(self):
        os.killpg(self.process.pid, signal.SIGSTOP)
        try:
            yield
        finally:
            os.killpg(self.process.pid, signal.SIGCONT)

    def marks(self):
        return (self.directory / "marks").read_bytes()

    def close(self):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        for flash in self.now, self.state:
            flash.path.unlink()
        shutil.rmtree(self.directory)


def module(kernel, build):
    """What makes flash of the memory that a machine shares, for its kernel."""
    subprocess.run([HERE.parent / "kernel", kernel], check=True)
    release = next((kernel / "lib/modules").iterdir()).name
    build.mkdir()
    for file in HERE / "Kbuild", HERE / "sharedflash.c":
        shutil.copy(file, build)
    subprocess.run(["make", "-C", f"/usr/src/linux-headers-{release}", f"M={build}", "modules"],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return build / "sharedflash.ko"


def cut(machine, operation, flushes, chance):
    """Lets it work; each cut as the number of marks by then, and what the flash holds. Those that leave
    the same as the one before do not count."""
    found, last = [], None
    (machine.directory / "marks").write_bytes(b"")
    answer = machine.ask(f"run {operation} {flushes}")
    while (text := next(answer)) is None:
        time.sleep(chance.uniform(0, LONGEST_PAUSE))
        with machine.stopped():
            marks = len(machine.marks()) // MARK
            blocks = machine.now.copy(last) if marks else None
        if blocks and (not last or any(map(operator.is_not, blocks, last))):
            found.append((marks, blocks))
            last = blocks
    data = machine.marks()
    book = ledger.Ledger([Mark(data[start:start + MARK]) for start in range(0, len(data), MARK)], 0, PATIENCE)
    if not book.is_complete:
        raise RuntimeError(f"{operation} did not come to an end: {text}")
    return book, chance.sample(found, min(len(found), CUTS_OF_A_RUN))


def look(machine, blocks):
    machine.state.fill(blocks)
    for text in machine.ask("look"):
        if text is None:
            time.sleep(0.02)
            continue
        lines = text.splitlines()
        facts = dict(line.split("\t", 1) for line in lines if "\t" in line)
        return {**facts, "damaged": text} if "damaged" in facts else facts


def try_operation(machine, operation, options, chance):
    """How many cuts there were, each with another content of the flash, and how many had faults."""
    cuts = faulty = 0
    while cuts < options.cuts:
        book, found = cut(machine, operation, options.flushes, chance)
        for position, blocks in found[:options.cuts - cuts]:
            faults = list(book.faults(position, look(machine, blocks)))
            cuts, faulty = cuts + 1, faulty + bool(faults)
            if faults:
                print(f"    {position}: {'; '.join(faults)}", flush=True)
    print(f"{'ubifs':20}{operation:12}{cuts:9} cuts {faulty:9} with faults", flush=True)
    return cuts, faulty


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("programs", type=pathlib.Path)
    parser.add_argument("results", type=pathlib.Path)
    parser.add_argument("--operations", required=True)
    parser.add_argument("--flushes", default="", help="what flushes.cpp takes")
    parser.add_argument("--cuts", type=int, default=12, help="of each operation")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    print(f"Seed {options.seed}", flush=True)
    chance = random.Random(options.seed)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # with the machine
    machine = Machine(options.programs.resolve(), options.results.resolve())
    try:
        rows = [try_operation(machine, operation, options, chance)
                for operation in options.operations.split(",")]
    finally:
        machine.close()
    cuts, faulty = map(sum, zip(*rows))
    print(f"{cuts} states, {cuts} distinct, {faulty} with faults")
    sys.exit(faulty > 0)


if __name__ == "__main__":
    main()
