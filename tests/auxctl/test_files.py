# SPDX-License-Identifier: MIT
import hashlib
import os
import signal
import subprocess
import unittest

from world import ARCHIVE, AUXCTL, DATA, NEW, World

PAYLOAD = bytes(range(256)) * 100
DIGEST = hashlib.sha256(PAYLOAD).hexdigest()


class Files(World):
    def setUp(self):
        super().setUp()
        self.file = self.work / "card.ddd"
        self.file.write_bytes(PAYLOAD)
        self.packed = self.work / "packed"

    def test_containers(self):
        self.auxctl("container", "pack", "--type", "CFGF", self.file, self.packed)
        described = {"type": "CFGF", "name": "card.ddd", "size": len(PAYLOAD), "digest": DIGEST,
                     "complete": True}
        self.assertEqual(self.json("container", "info", self.packed), {"container": described})
        self.assertEqual(self.json("container", "verify", self.packed),
                         {"container": {**described, "valid": True}})
        self.auxctl("container", "unpack", self.packed, self.work, status=1)
        self.assertIn("exists already", self.errors)
        self.auxctl("container", "unpack", self.packed, self.work, "--force", "--name", "other")
        self.assertEqual((self.work / "other").read_bytes(), PAYLOAD)

        self.auxctl("container", "unpack", self.packed, self.work, "--name", "../x", status=2)
        self.auxctl("container", "pack", self.file, self.packed, "--name", "n\nvalid: true")
        self.assertIn("n\\x0avalid: true", self.auxctl("container", "info", self.packed))

        content = bytearray(self.packed.read_bytes())
        content[-1] ^= 1
        self.packed.write_bytes(content)
        self.assertIs(self.json("container", "verify", self.packed, status=3)["container"]["valid"], False)
        self.auxctl("container", "unpack", self.packed, self.work, "--name", "other", "--force", status=1)
        self.assertEqual((self.work / "other").read_bytes(), PAYLOAD)
        self.packed.write_bytes(content[:-1])
        self.assertIs(self.json("container", "info", self.packed)["container"]["complete"], False)
        self.auxctl("container", "verify", self.packed, status=3)
        self.auxctl("container", "info", self.file, status=1)
        self.auxctl("container", "pack", "--type", "X", self.file, self.packed, status=2)

    def test_streams(self):
        self.auxctl("container", "pack", "-", "-", "--name", "made", given=PAYLOAD)
        packed = self.raw
        self.assertEqual(self.json("container", "info", "-", given=packed)["container"]["name"], "made")
        self.auxctl("container", "unpack", "-", "-", given=packed)
        self.assertEqual(self.raw, PAYLOAD)
        self.auxctl("container", "unpack", "-", "-", "--json", given=packed, status=2)
        self.assertEqual(self.auxctl("files", "checksum", "-", given=PAYLOAD), DIGEST + "\n")
        self.assertEqual(self.auxctl("crc32", "-", given=b"123456789"), "cbf43926\n")

    def test_locations(self):
        self.assertRegex(self.auxctl("files", "name", "new"), r"^/data/zel/rk4/new/rk4-[-0-9a-f]{36}\.bin\n$")
        (NEW / "b").write_bytes(PAYLOAD)
        (NEW / "A").write_bytes(PAYLOAD)
        self.assertEqual(self.json("files", "list", "new"), {"files": ["A", "b"]})
        self.assertEqual(self.auxctl("files", "count", "new"), "2\n")
        self.assertEqual(self.json("files", "verify", NEW / "b", DIGEST), {"valid": True})
        self.auxctl("files", "verify", NEW / "b", DIGEST.upper(), status=3)
        self.assertIn("checksum mismatch", self.errors)
        self.auxctl("files", "move", "new", "archive", "b", "--checksum", "0", status=1)
        self.assertIn("libaux FileHandler: source file checksum mismatch 10005", self.errors)
        self.assertEqual(self.json("files", "move", "new", "archive", "b", "--checksum", DIGEST, "--name", "c"),
                         {"moved": {"path": f"{ARCHIVE}/c"}})
        self.assertEqual((ARCHIVE / "c").read_bytes(), PAYLOAD)
        self.auxctl("files", "free", "new", "1k")
        self.auxctl("files", "free", "new", "9000000G", status=3)
        self.auxctl("files", "free", "new", "1.5", status=2)
        self.auxctl("files", "list", "failed", status=1)
        self.auxctl("files", "free", "failed", "1", status=1)
        self.auxctl("files", "list", "arhive", status=2)
        self.assertIn('did you mean "archive"?', self.errors)

    def test_destructive_commands_ask(self):
        self.auxctl("files", "reset", status=2)
        self.assertIn("--yes", self.errors)
        self.assertEqual(self.on_terminal("files", "reset", answer="n\n")[0], 2)
        self.assertTrue(NEW.exists())
        status, shown = self.on_terminal("files", "reset", answer="y\n")
        self.assertEqual(status, 0, shown)
        self.assertFalse(NEW.exists())
        self.auxctl("files", "reset", "--yes")

    def test_rough_surroundings(self):
        self.auxctl("config", "show", env={})  # no HOME, no PATH
        with open("/dev/full", "wb") as full:
            self.assertEqual(subprocess.run([AUXCTL, "info"], stdout=full, stderr=subprocess.DEVNULL,
                                            check=False).returncode, 1)
        reader, writer = os.pipe()
        os.close(reader)
        closed = subprocess.run([AUXCTL, "info"], stdout=writer, stderr=subprocess.PIPE, check=False)
        os.close(writer)
        self.assertEqual((closed.returncode, closed.stderr), (-signal.SIGPIPE, b""))
        # With the source named, mount repeats no option that a user namespace may not set.
        subprocess.run(["mount", "-o", "remount,ro", "data", DATA], check=True)
        self.addCleanup(subprocess.run, ["mount", "-o", "remount,rw", "data", DATA], check=True)
        self.auxctl("config", "set", "/device/lang=de_DE", status=1)
        self.auxctl("config", "get", "/device/lang")
        self.auxctl("container", "pack", self.file, NEW / "p", status=1)
        nowhere = {**os.environ, "TMPDIR": "/proc"}
        self.auxctl("container", "pack", self.file, "-", status=1, env=nowhere)
        self.assertIn("cannot make a temporary directory", self.errors)
        os.mkfifo(self.packed)  # not the tool's to remove
        with open(os.open(self.packed, os.O_RDWR), "rb"):
            self.auxctl("container", "pack", "/etc/hostname", self.packed, status=1)
        self.assertTrue(self.packed.is_fifo())

    def test_missing_data(self):
        empty = self.work / "empty"
        empty.mkdir()
        subprocess.run(["mount", "--bind", empty, DATA], check=True)
        self.addCleanup(subprocess.run, ["umount", DATA], check=True)
        self.auxctl("files", "list", "new", status=1)
        self.assertEqual(self.auxctl("config", "get", "/device/lang"), "en_GB\n")
        self.auxctl("container", "verify", "nowhere", status=1)


if __name__ == "__main__":
    unittest.main()
