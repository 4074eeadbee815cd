#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Records what programs write to a disk, makes every state that a power cut could leave, and looks
whether all that was confirmed is there: crashes.py [OPTION...] PROGRAMS RESULTS

PROGRAMS is the directory of workload, facts and flushes.so; RESULTS keeps what was found. Runs where
it may mount at /data. The last line is "S states, D distinct, F with faults", the exit status 1
where F is not 0.
"""

import argparse
import collections
import hashlib
import itertools
import json
import math
import multiprocessing
import os
import pathlib
import random
import shutil
import subprocess
import sys
import time

import blocklog
import disk
import ledger
import states

HERE = pathlib.Path(__file__).resolve().parent
CHECKOUT = HERE.parents[1]
WORK = pathlib.Path("/dev/shm/crashes")
COUNTS = ("states", "distinct", "looked", "repaired", "faulty")
LONG, SHARES = ("mix", "brief"), 4  # in which such a record is looked at
PARTS = ("base", "flushes", "log")  # of what is recorded
EVIDENCE = 3  # faults of a record that are told in full
FEW = 5  # contents that are looked at however late it is
PROGRESS = 2000  # contents after which is told how many are left


class Record:
    """A run of one operation, on a file system of its own; kept until it has been looked at."""

    def __init__(self, directory, file_system, operation, neighbour, flushes):
        self.name = "-".join(filter(None, [file_system, operation, neighbour, flushes]))
        self.shares = SHARES if operation in LONG else 1
        self.row = (file_system, operation)  # of the table
        self.file_system, self.operation = disk.FILE_SYSTEMS[file_system], operation
        self.left_out = flushes.split("+") if flushes[:1].isdigit() else []
        self.environment = {"FLUSHES": flushes, "FLUSHES_LIST": f"{WORK}/{self.name}.flushes"}
        if neighbour:
            self.environment["COMMITS"] = f"{disk.DATA}/.neighbour"
        self.base, self.list, self.log = (directory / f"{self.name}.{part}" for part in PARTS)

    def make(self, programs):
        if self.log.exists():
            return
        base, now, log = (f"{WORK}/{self.name}.{part}" for part in ("base", "now", "log"))
        disk.make(base, self.file_system)
        shutil.copy(base, now)
        with disk.recorded(now, log) as node, disk.loop(str(node)) as device, \
                disk.mounted(device, self.file_system):
            # With processes of its own: libaux ends those of its keyring, and others have one at that path.
            subprocess.run(["unshare", "--pid", "--fork", "--kill-child", "--mount-proc", "env",
                            f"LD_PRELOAD={programs}/flushes.so", f"{programs}/workload", node,
                            str(disk.SIZE), self.operation],
                           check=True, env={**os.environ, **self.environment})
        os.remove(now)
        for part, kept in (base, self.base), (self.environment["FLUSHES_LIST"], self.list), (log, self.log):
            subprocess.run(["cp", "--sparse=always", part, f"{kept}.part"], check=True)
            os.rename(f"{kept}.part", kept)  # the log last
            os.remove(part)

    def flushes(self):
        """Those that the operation made, or those that it was to leave out."""
        flushes = self.list.read_text(encoding="utf-8").splitlines()
        return [line for line in flushes if not self.left_out or line.split()[0] in self.left_out]

    def seen(self, share):
        """A file with what was seen in each content."""
        return self.log.with_suffix(f".seen{share}")

    def forget(self):
        for file in self.base, self.list, self.log, *map(self.seen, range(self.shares)):
            file.unlink()


class Look:
    """Takes every so many of a record's contents and judges its states."""

    def __init__(self, record, share, end, options):
        self.record, self.share, self.end, self.seed = record, share, end, options.seed
        self.limit, self.patience = options.states // record.shares, options.patience
        self.image = f"{WORK}/{record.name}.{share}.state"

    def run(self, programs):
        entries = blocklog.read(self.record.log)
        book = ledger.Ledger(entries, disk.SIZE, self.patience)
        if not book.is_complete:
            raise ValueError(f"{self.record.name} did not come to an end")
        mine = self._choose(entries)
        known, result = self._known(), {"states": 0, "looked": 0, "faulty": 0, "evidence": []}
        result["distinct"] = len(mine)
        with open(self.image, "wb") as image:
            image.truncate(disk.SIZE)
        with disk.loop(self.image) as device, open(self.record.seen(self.share), "a", encoding="utf-8") as seen:
            for state in states.states(self.record.base, entries, disk.SIZE, self.seed):
                key = state.content.digest
                if key not in mine:
                    continue
                result["states"] += 1
                if not mine[key] or key not in known and self._is_over(len(known)):
                    continue
                if key not in known:
                    known[key] = self._facts(programs, device, state.content)
                    print(json.dumps([key, known[key]]), file=seen, flush=True)
                    self._tell(len(known), len(mine))
                self._judge(result, book, state, known[key])
        result["looked"] = len(known)
        result["repaired"] = sum("repaired" in facts for facts in known.values())
        os.remove(self.image)
        return result

    def _is_over(self, looked):
        return looked >= FEW and time.monotonic() > self.end

    def _known(self):
        """What was seen before this was interrupted, perhaps in the middle of the last line."""
        try:
            lines = self.record.seen(self.share).read_text(encoding="utf-8").splitlines(keepends=True)
        except FileNotFoundError:
            return {}
        whole = [line for line in lines if line.endswith("\n")]
        self.record.seen(self.share).write_text("".join(whole), encoding="utf-8")
        return dict(map(json.loads, whole))

    def _tell(self, done, count):
        if done % PROGRESS == 0:
            print(f"{self.record.name}, share {self.share + 1} of {self.record.shares}: "
                  f"{done} of {count} looked at", flush=True)

    def _choose(self, entries):
        """The contents of this share; whether each is to be looked at."""
        digests = list(dict.fromkeys(
            state.content.digest for state in
            states.states(self.record.base, entries, disk.SIZE, self.seed)))[self.share::self.record.shares]
        chosen = set(digests)
        if self.limit:
            chosen = set(random.Random(self.seed).sample(digests, min(self.limit, len(digests))))
        return {digest: digest in chosen for digest in digests}

    def _facts(self, programs, device, content):
        """What there is to see, as a terminal would when it starts."""
        disk.fill(self.image, content)
        file_system = self.record.file_system
        try:
            with disk.mounted(device, file_system) as repaired:
                run = subprocess.run([f"{programs}/facts"], capture_output=True, text=True,
                                     check=True, timeout=60)
            subprocess.run([*file_system.check.split(), self.image], capture_output=True,
                           text=True, check=True)
        except OSError as error:
            return {"damaged": f"no mount: {error}"}
        except subprocess.CalledProcessError as error:
            return {"damaged": f"{error}: {error.stdout} {error.stderr}"}
        facts = dict(line.split("\t", 1) for line in run.stdout.splitlines())
        return {**facts, "repaired": "1"} if repaired else facts

    def _judge(self, result, book, state, facts):
        faults = list(book.faults(state.position, facts))
        if not faults:
            return
        result["faulty"] += 1
        if len(result["evidence"]) < EVIDENCE:
            result["evidence"].append(f"{state.position} ({state.origin}): {'; '.join(faults)}")


def make(task):
    record, options = task
    record.make(options.programs)


def look(task):
    record, share, end, options = task
    return Look(record, share, end, options).run(options.programs)


def parse():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("programs", type=pathlib.Path)
    parser.add_argument("results", type=pathlib.Path)
    parser.add_argument("--file-systems", default="ext4,ext4-writeback,ext4-128,ext4-128-writeback")
    parser.add_argument("--operations", required=True)
    parser.add_argument("--neighbours", default=",busy", help="alone, and beside one that flushes")
    parser.add_argument("--flushes", default="", help="what flushes.cpp takes, separated by commas")
    parser.add_argument("--states", type=int, default=0, help="look at so many of each record")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--patience", type=int, default=3000, help="ms for the next write")
    parser.add_argument("--seconds", type=float, default=math.inf, help="for all; each record has its part")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.set_defaults(start=time.monotonic())
    return parser.parse_args()


class Results:
    """What is known of each record; kept in files for as long as nothing has changed."""

    def __init__(self, options):
        self.records = 0
        self.table = collections.defaultdict(collections.Counter)
        key = hashlib.sha256()
        library = options.programs / "../../src/libaux.so.1"
        for file in (library, *sorted(options.programs.iterdir()), *sorted(HERE.glob("*.py"))):
            key.update(file.read_bytes())
        current = options.results / "kept" / key.hexdigest()
        for old in set(current.parent.glob("*")) - {current}:
            shutil.rmtree(old)
        self.directory = current / f"{options.seed}-{options.states}"
        self.directory.mkdir(parents=True, exist_ok=True)

    def known(self, name):
        try:
            return json.loads((self.directory / f"{name}.json").read_text())
        except FileNotFoundError:
            return None

    def keep(self, name, result):
        (self.directory / f"{name}.json").write_text(json.dumps(result))

    def tell(self, record, result, count):
        self.records += 1
        self.table[record.row].update({key: result[key] for key in COUNTS})
        print(f"{self.records}/{count} {record.name}: {result['states']} states, {result['distinct']} "
              f"distinct, {result['looked']} looked at, {result['repaired']} repaired first, "
              f"{result['faulty']} with faults", *result["evidence"], sep="\n    ", flush=True)

    def total(self):
        """Prints the table."""
        print(f"{'file system':20}{'operation':12}", *(f"{key:>9}" for key in COUNTS))
        for (file_system, operation), counts in self.table.items():
            print(f"{file_system:20}{operation:12}", *(f"{counts[key]:9}" for key in COUNTS))
        return sum(self.table.values(), collections.Counter())


def look_at_all(records, results, options):
    """Tells of those that are known, then records the others and looks at them, on all cores."""
    todo = []
    for record in records:
        known = results.known(record.name)
        if known:
            results.tell(record, known, len(records))
        else:
            todo.append(record)
    with multiprocessing.Pool(options.jobs, disk.make_own_world, [CHECKOUT]) as pool:
        pool.map(make, [(record, options) for record in todo], chunksize=1)
        now = time.monotonic()
        ends = itertools.count(now, (options.start + options.seconds - now) / max(len(todo), 1))
        next(ends)
        looks = pool.imap(look, [(record, share, end, options) for record, end in zip(todo, ends)
                                 for share in range(record.shares)])
        for record in todo:
            parts = list(itertools.islice(looks, record.shares))
            result = {key: sum(part[key] for part in parts) for key in COUNTS}
            result["evidence"] = [line for part in parts for line in part["evidence"]][:EVIDENCE]
            result["flushes"] = record.flushes()
            results.keep(record.name, result)
            record.forget()
            results.tell(record, result, len(records))


def main():
    options = parse()
    options.results.mkdir(parents=True, exist_ok=True)
    WORK.mkdir(exist_ok=True)
    print(f"Seed {options.seed}", flush=True)
    names = (options.file_systems, options.operations, options.neighbours, options.flushes)
    results = Results(options)
    records = [Record(results.directory, *row)
               for row in itertools.product(*(name.split(",") for name in names))]
    look_at_all(records, results, options)
    total = results.total()
    print(f"{total['states']} states, {total['distinct']} distinct, {total['faulty']} with faults")
    sys.exit(total["faulty"] > 0)


if __name__ == "__main__":
    main()
