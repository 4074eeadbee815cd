# SPDX-License-Identifier: MIT
import collections
import os
import re
import signal
import subprocess
import unittest

from server import KEYRING, PASSPHRASE, ServersWorld
from world import AUXCTL, DATA, SHOWN, TMP

LOG = DATA / "strace"


class Outputs(ServersWorld):
    def interrupted(self, *arguments, check):
        """Runs it ten times, with a signal at a system call further on each time, in a process that
        the first one has started; calls `check` after each."""
        trace = ("strace", "-f", "-qq", "-o", LOG)
        environment = {**os.environ, "ASAN_OPTIONS": "detect_leaks=0"}  # that cannot be traced
        command = (AUXCTL, *map(str, arguments))
        subprocess.run([*trace, *command], capture_output=True, check=True, env=environment)
        calls = re.findall(r"(?m)^(\d+) +(\w+)\(", LOG.read_text())
        own = collections.Counter(name for process, name in calls if process == calls[0][0])
        counts = collections.Counter()
        moments = {}  # strace counts each system call of each process by itself
        for process, name in calls:
            counts[process, name] += process != calls[0][0]
            if counts[process, name] > own[name]:
                moments[name, counts[process, name]] = True
        ends = []
        for index in range(10):
            name, count = list(moments)[index * len(moments) // 10]
            inject = f"inject={name}:signal={('INT', 'TERM', 'HUP')[index % 3]}:when={count}"
            ended = subprocess.run([*trace, "-e", inject, *command], check=False, env=environment, timeout=60,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            ends.append((inject, ended.returncode))
            check()
        LOG.unlink()
        # One that comes when all is done ends nothing.
        self.assertGreater(sum(code != 0 for _, code in ends), 4, ends)

    def test_outputs_are_whole_or_not_there(self):
        """For every command that makes a file, or sends one to standard output."""
        content = os.urandom(1 << 20)
        self.file.write_bytes(content)
        packed, message, protected, output = (self.work / name for name in ("packed", "message", "protected", "output"))
        self.auxctl("pgp", "import", "-", given=self.pair)
        self.auxctl("container", "pack", self.file, packed)
        self.auxctl("pgp", "encrypt", self.file, message)
        protected.write_text(self.auxctl("key", "protect", self.file, *self.known))
        exported = self.auxctl("config", "export").encode()
        full = self.work / "full"
        full.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "full", full], check=True)
        self.addCleanup(subprocess.run, ["umount", full], check=True)
        (full / "output").write_bytes(b"old" + bytes(64 << 10)[3:])
        reader, closed = os.pipe()
        os.close(reader)
        self.addCleanup(os.close, closed)

        def unpacked(place):
            return ("-",) if place == "-" else (place.parent, "--name", place.name)
        for command, target, whole in (
            (("container", "pack", self.file), None, packed.read_bytes().__eq__),
            (("container", "unpack", packed), unpacked, content.__eq__),
            (("pgp", "encrypt", self.file), None,
             lambda made: self.gpg("--passphrase", PASSPHRASE, "--decrypt", given=made) == content),
            (("pgp", "decrypt", *self.known, message), None, content.__eq__),
            (("key", "reveal", *self.known, protected), None, content.__eq__),
            (("config", "export"), None, exported.__eq__),
        ):
            target = target or (lambda place: (place,))

            def check(command=command, whole=whole):
                self.assertEqual(sorted(os.listdir(self.work)), names, command)
                self.assertTrue(output.read_bytes() == b"old" or whole(output.read_bytes()), command)
                output.write_bytes(b"old")
                self.assertEqual(set(os.listdir(TMP)), {*SHOWN[TMP], "server", "work", KEYRING.name}, command)
                self.check_no_agent()
            output.write_bytes(b"old")
            names = sorted(os.listdir(self.work))
            self.interrupted(*command, *target(output), "--force", check=check)
            self.interrupted(*command, *target("-"), check=check)
            self.auxctl(*command, *target(full / "output"), "--force", status=1)
            self.assertIn(f"{full}/output: No space left on device", self.errors)
            self.assertEqual(os.listdir(full), ["output"])
            self.assertEqual((full / "output").read_bytes()[:3], b"old")
            self.auxctl(*command, *target("-"), status=1, env={**os.environ, "TMPDIR": str(full)})
            self.assertIn(f"{full}/: No space left on device", self.errors)
            ended = subprocess.run([AUXCTL, *command, *target("-")], stdout=closed, stderr=subprocess.PIPE,
                                   check=False).returncode
            self.assertEqual((ended, os.listdir(full)), (-signal.SIGPIPE, ["output"]), command)
            check()


if __name__ == "__main__":
    unittest.main()
