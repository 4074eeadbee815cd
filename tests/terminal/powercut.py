#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Pulls the plug of a terminal at work, again and again: powercut.py ARCH DIRECTORY CUTS SEED

Each time it boots from the same disk, where everything that it had confirmed must be found. What it
did not flush is gone: its own memory, and a cache that stands in for that of the disk.
"""

import os
import pathlib
import random
import signal
import subprocess
import sys
import threading

HERE = pathlib.Path(__file__).resolve().parent
LONGEST_WORK = 10  # seconds
BOOT_PATIENCE = 300  # seconds
WRITE_PATIENCE = 10000  # ms; an abandoned lock would take 30 s


class Ledger:
    """What the terminal has confirmed. There is a method for each of its words; they return what is
    wrong with what it says."""

    def __init__(self):
        self.setting = self.commits = self.slowest = 0
        self.confirmed, self.archived, self.interrupted = set(), set(), False

    def hear(self, word, fact):
        return getattr(self, f"hear_{word}")(fact)

    def hear_json(self, fact):
        self.archived, self.interrupted = set(), False
        return None if fact == "1" else "the settings file is not whole"

    def hear_found(self, fact):  # what was cut off may have come through
        right = int(fact) - self.setting in (0, 1)
        return None if right else f"setting {fact} instead of {self.setting}"

    def hear_counter(self, fact):
        right = int(fact) - self.commits in (0, 1)
        return None if right else f"{fact} commits instead of {self.commits}"

    def hear_delay(self, fact):
        self.slowest = max(self.slowest, int(fact))
        return None if int(fact) < WRITE_PATIENCE else f"the first write took {fact} ms"

    def hear_archive(self, fact):
        self.archived.add(int(fact))

    def hear_broken(self, fact):
        return f"container {fact} is broken"

    def hear_left(self, fact):
        if fact.startswith("/data/zel/rk4/new/") and not self.interrupted:
            self.interrupted = True  # the container that was being packed
            return None
        return f"{fact} is left over"

    def hear_emptying(self, _):
        lost, self.confirmed = self.confirmed - self.archived, set()
        return f"lost from the archive: {sorted(lost)}" if lost else None

    def hear_working(self, _):
        pass

    def hear_set(self, fact):
        self.setting = int(fact)

    def hear_moved(self, fact):
        self.confirmed.add(int(fact))

    def hear_committed(self, fact):
        self.commits = int(fact)

    def hear_failed(self, fact):
        return fact


class Machine:
    """A terminal that is switched on, with a disk that has a cache of its own."""

    def __init__(self, arch, directory, disk):
        boot = f'exec "{HERE}/../../kit/terminal/machine.sh" {arch} "{directory}" "$uri" /libaux/tests/terminal/powercut.sh'
        self.process = subprocess.Popen(
            ["nbdkit", "--unix", "-", "--filter=cache", "file", disk, "cache=writeback",
             "--run", boot],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            text=True, errors="replace", start_new_session=True)
        self.timer = None
        self.cut_after(BOOT_PATIENCE)

    def cut_after(self, seconds):
        if self.timer:
            self.timer.cancel()
        self.timer = threading.Timer(seconds, self.cut)
        self.timer.start()

    def cut(self):
        os.killpg(self.process.pid, signal.SIGKILL)

    def lines(self):
        try:
            yield from self.process.stdout
        finally:
            self.timer.cancel()
            self.cut()
            self.process.wait()


def work(machine, ledger, moment):
    """Cuts it off that many seconds after its first word; its words and what is wrong with them."""
    console, words, faults = [], [], []
    for line in machine.lines():
        console.append(line)
        if line.startswith("powercut ") and line.endswith("\n"):
            if not words:
                machine.cut_after(moment)
            _, word, fact = line.rstrip("\n").split(" ", 2)
            words.append(word)
            faults += filter(None, [ledger.hear(word, fact)])
        elif "EXT4-fs error" in line:
            faults.append(line.strip())
    if not words:
        faults.append("it did not come up")
    if faults:
        print(*console, sep="")
    return words, faults


def main(arch, directory, cuts, seed):
    moments = random.Random(int(seed))
    disk = pathlib.Path(directory, "powercut.img")
    disk.unlink(missing_ok=True)
    subprocess.run(["mkfs.ext4", "-q", "-L", "data", disk, "256M"], check=True)
    ledger, failed = Ledger(), 0
    for cut in range(int(cuts) + 1):  # what the last one has left is looked at, too
        moment = moments.uniform(0, LONGEST_WORK) if cut < int(cuts) else LONGEST_WORK
        words, faults = work(Machine(arch, directory, disk), ledger, moment)
        failed += bool(faults)
        print(f"{cut} cuts: {'; '.join(faults) or 'everything is there'}; "
              f"then {sum(word in ('set', 'moved', 'committed') for word in words)} steps "
              f"in {moment:.3f} s", flush=True)
    print(f"The slowest first write took {ledger.slowest} ms")
    print(f"{cuts} cuts, {failed} with faults")


if __name__ == "__main__":
    main(*sys.argv[1:])
