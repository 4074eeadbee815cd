# SPDX-License-Identifier: MIT
import hashlib
import json
import os
import signal
import subprocess
import unittest

from world import ARCHIVE, AUXCTL, DATA, NEW, SETTINGS, World

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
        described["path"] = str(self.packed)
        self.assertEqual(self.json("container", "info", self.packed), {"containers": [described]})
        self.assertEqual(self.json("container", "verify", self.packed),
                         {"containers": [{**described, "valid": True}]})
        self.auxctl("container", "unpack", self.packed, self.work, status=1)
        self.assertIn("exists already", self.errors)
        self.auxctl("container", "unpack", self.packed, self.work, "--force", "--name", "other")
        self.assertEqual((self.work / "other").read_bytes(), PAYLOAD)

        self.auxctl("container", "unpack", self.packed, self.work, "--name", "../x", status=2)
        self.auxctl("container", "pack", self.file, self.packed, "--name", "x", status=1)
        self.assertIn("--force overwrites it", self.errors)
        self.auxctl("container", "pack", self.file, self.packed, "--force", "--name", ".hidden")
        self.auxctl("container", "unpack", self.packed, self.work / "new", status=1)
        self.assertIn("choose one with --name", self.errors)
        self.auxctl("container", "pack", self.file, self.packed, "--force", "--name", "n\nvalid: true")
        self.assertIn("n\\x0avalid: true", self.on_terminal("container", "info", str(self.packed))[1])

        content = bytearray(self.packed.read_bytes())
        content[-1] ^= 1
        self.packed.write_bytes(content)
        self.assertIs(self.json("container", "verify", self.packed, status=3)["containers"][0]["valid"], False)
        self.auxctl("container", "unpack", self.packed, self.work, "--name", "other", "--force", status=1)
        self.assertEqual((self.work / "other").read_bytes(), PAYLOAD)
        self.packed.write_bytes(content[:-1])
        self.assertIs(self.json("container", "info", self.packed)["containers"][0]["complete"], False)
        self.auxctl("container", "verify", self.packed, status=3)
        self.auxctl("container", "info", self.file, status=1)
        self.auxctl("container", "pack", "--type", "X", self.file, self.packed, status=2)

    def test_streams(self):
        self.auxctl("container", "pack", "-", "-", "--name", "made", given=PAYLOAD)
        packed = self.raw
        self.assertEqual(self.json("container", "info", "-", given=packed)["containers"][0]["name"], "made")
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
        self.assertEqual(self.json("files", "verify", NEW / "b", DIGEST),
                         {"verified": [{"path": f"{NEW}/b", "valid": True}]})
        self.auxctl("files", "verify", NEW / "b", DIGEST.upper())
        self.auxctl("files", "verify", NEW / "b", "0" * 64, status=3)
        self.auxctl("files", "verify", NEW / "missing", DIGEST, status=1)
        self.assertIn(f"{NEW}/missing: No such file or directory", self.errors)
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

    def test_many_files(self):
        good, bad = self.work / "good", self.work / "bad"
        for container in (good, bad):
            self.auxctl("container", "pack", self.file, container)
        bad.write_bytes(good.read_bytes()[:-1] + b"x")
        self.auxctl("container", "verify", good, bad, status=3)
        told = self.json("container", "verify", good, self.file, bad, "missing", status=1)["containers"]
        self.assertEqual([row.get("valid") for row in told], [True, None, False, None])
        self.assertIn("cannot open missing", self.errors)
        (NEW / "one").write_bytes(PAYLOAD)
        self.assertEqual(self.json("files", "checksum", "new")["checksums"],  # the location
                         [{"path": f"{NEW}/one", "checksum": DIGEST}])
        self.assertEqual(self.auxctl("files", "checksum", "new"), f"{DIGEST}  {NEW}/one\n")
        strange = self.work / "a\\n\nb\r"
        strange.write_bytes(PAYLOAD)
        listed = self.auxctl("files", "checksum", self.file, good, strange)
        self.assertEqual(listed, subprocess.run(["sha256sum", self.file, good, strange], capture_output=True, check=True,
                                                text=True).stdout)
        self.auxctl("files", "verify", "--list", "-", given=listed.encode())
        listed = "".join(listed.splitlines(keepends=True)[:2])
        self.auxctl("files", "verify", "--list", "-", given=listed.upper().replace("/TMP/WORK/CARD.DDD",
                    str(self.file)).replace("/TMP/WORK/GOOD", str(good)).encode())
        self.file.write_bytes(b"")
        self.auxctl("files", "verify", "--list", "-", given=listed.encode(), status=3)
        good.unlink()
        self.auxctl("files", "verify", "--list", "-", given=listed.encode(), status=1)
        for wrong in (b"nonsense", b""):
            self.auxctl("files", "verify", "--list", "-", given=wrong, status=1)
        self.auxctl("files", "verify", self.file, status=2)

    def test_a_move_never_loses_a_file(self):
        for checksum in ((), ("--checksum", DIGEST)):
            (NEW / "a").write_bytes(PAYLOAD)
            (ARCHIVE / "a").write_bytes(PAYLOAD[::-1])
            self.auxctl("files", "move", "new", "archive", "a", *checksum, status=1)
            self.assertIn("both are kept", self.errors)
            self.assertEqual(((NEW / "a").read_bytes(), (ARCHIVE / "a").read_bytes()),
                             (PAYLOAD, PAYLOAD[::-1]))
            self.auxctl("files", "move", "new", "archive", "a", "--name", "b", *checksum)
            (NEW / "a").write_bytes(PAYLOAD)
            self.auxctl("files", "move", "new", "archive", "a", "--name", "b", *checksum)  # a duplicate
            self.assertFalse((NEW / "a").exists())

    def test_names_do_not_act_on_a_terminal(self):
        name = "a\x1b[31m\u202e\x9bb\nc"
        (NEW / name).touch()
        self.assertEqual(self.auxctl("files", "list", "new"), name + "\n")
        self.assertEqual(self.json("files", "list", "new"), {"files": [name]})
        shown = "a\\x1b[31m\\u202e\\x9bb\\x0ac"
        self.assertEqual(self.on_terminal("files", "list", "new")[1].strip(), shown)
        self.assertIn(shown, self.on_terminal("files", "list", name)[1])
        self.assertIn("a\\u001b[31m\\u202e\\u009bb\\nc", self.auxctl("files", "list", "new", "--json"))
        self.auxctl("config", "set", f"device/infotext={name}")
        for command in (("config", "export"), ("config", "export", "-"), ("report",)):
            self.assertIn("a\\u001b[31m\\u202e\\u009bb\\nc", self.on_terminal(*command)[1])

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
        self.assertIn("cannot make /proc/: ", self.errors)
        os.mkfifo(self.packed)  # not the tool's to remove
        self.auxctl("container", "pack", "/etc/hostname", self.packed, "--force", status=1)
        self.assertTrue(self.packed.is_fifo())

    def test_report(self):
        (NEW / "a").write_bytes(PAYLOAD)
        self.auxctl("config", "set", "network/wifi/psk=topsecret")
        self.auxctl("container", "pack", self.file, ARCHIVE / "p")
        (ARCHIVE / "p").write_bytes((ARCHIVE / "p").read_bytes()[:-1] + b"x")
        (NEW / "closed").touch(mode=0)  # root is a user like any other here
        told = self.json("report")["report"]
        self.assertNotIn("topsecret", json.dumps(told))
        locations = {place["location"]: place for place in told["locations"]}
        self.assertEqual((locations["new"]["count"], locations["new"]["damaged"]), (2, []))
        self.assertEqual(locations["archive"]["damaged"], ["p"])
        self.assertTrue(told["isTimePlausible"])
        self.assertEqual((told["configuration"]["commits"], told["configuration"]["problems"]), (1, []))
        self.assertIn("failed: /data/zel/rk4/failed: No such file or directory", told["unseen"])
        self.assertIn(f"new: cannot read {NEW}/closed: Permission denied", told["unseen"])
        SETTINGS.chmod(0)
        told = self.json("report")["report"]
        self.assertIn(f"configuration: cannot open {SETTINGS}: Permission denied", told["unseen"])
        self.auxctl("report", self.work / "report")
        self.assertEqual(json.loads((self.work / "report").read_text())["kernel"], os.uname().release)

    def test_missing_data(self):
        empty = self.work / "empty"
        empty.mkdir()
        subprocess.run(["mount", "--bind", empty, DATA], check=True)
        self.addCleanup(subprocess.run, ["umount", DATA], check=True)
        self.auxctl("files", "list", "new", status=1)
        empty.chmod(0o500)
        self.auxctl("files", "init", status=1)
        self.assertIn("cannot make /data/config: Permission denied", self.errors)
        empty.chmod(0o700)
        self.auxctl("files", "init")
        self.assertEqual(self.auxctl("files", "list", "new"), "")
        self.assertEqual(self.auxctl("config", "get", "/device/lang"), "en_GB\n")
        self.auxctl("container", "verify", "nowhere", status=1)
        self.file.write_bytes(b"")
        self.auxctl("container", "pack", self.file, self.packed, status=1)
        self.assertIn("is empty", self.errors)


if __name__ == "__main__":
    unittest.main()
