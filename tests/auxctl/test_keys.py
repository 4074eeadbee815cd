# SPDX-License-Identifier: MIT
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import unittest

from world import AUXCTL, NEW, SHOWN, TMP, World

KEYRING = pathlib.Path("/tmp/gpg-temp-keyring")
TRANSFER = NEW.parent / "transfer"
PASSPHRASE = "Größe € p"
KEY = "/crypto/gpgkey"


class Keys(World):
    @classmethod
    def setUpClass(cls):
        """A server with a key pair, which it gives to the terminal."""
        cls.server = pathlib.Path("/tmp/server")
        cls.server.mkdir(mode=0o700)
        cls.gpg("--passphrase", PASSPHRASE, "--quick-generate-key", "terminal", "future-default")
        cls.pair = cls.gpg("--passphrase", PASSPHRASE, "--export-secret-keys", "terminal")

    @classmethod
    def tearDownClass(cls):
        subprocess.run(["gpgconf", "--homedir", cls.server, "--kill", "all"], check=True)
        shutil.rmtree(cls.server)

    @classmethod
    def gpg(cls, *arguments, given=b""):
        """What plain gpg prints on the server."""
        return subprocess.run(["gpg", "--homedir", cls.server, "--batch", "--quiet", "--pinentry-mode", "loopback",
                               "--trust-model", "always", *arguments],
                              input=given, capture_output=True, check=True, timeout=60).stdout

    def setUp(self):
        super().setUp()
        TRANSFER.mkdir()
        self.file = self.work / "card.ddd"
        self.file.write_bytes(b"content" * 1000)
        self.secret = self.work / "secret"
        self.secret.write_text(PASSPHRASE + "\n")
        self.known = ("--passphrase-file", self.secret)
        self.addCleanup(self.check_nothing_is_left)

    def check_nothing_is_left(self):
        self.auxctl("pgp", "remove")
        self.assertEqual(set(os.listdir(TMP)), {*SHOWN[TMP], "server", "work"})
        self.check_no_agent()

    def check_no_agent(self):
        for process in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
            self.assertNotIn(str(KEYRING).encode(), process.read_bytes())

    def test_the_whole_mission(self):
        """From the download to the server's desk, the key being kept in the settings."""
        (self.work / "pair").write_bytes(self.pair)
        protected = self.json("key", "protect", self.work / "pair", *self.known)["key"]
        self.auxctl("config", "set", f"{KEY}={protected}")

        kept = self.auxctl("config", "get", KEY)
        key = self.work / "revealed"
        self.auxctl("key", "reveal", "-", key, *self.known, given=kept.encode())
        self.assertEqual((key.read_bytes(), key.stat().st_mode & 0o777), (self.pair, 0o600))
        self.auxctl("pgp", "import", key)
        packed = self.json("files", "name", "new")["path"]
        self.auxctl("container", "pack", self.file, packed)
        self.auxctl("pgp", "encrypt", packed, packed, "--force")
        checksum = self.auxctl("files", "checksum", packed).strip()
        sent = self.json("files", "move", "new", "transfer", packed, "--checksum", checksum)["moved"]["path"]
        self.assertEqual(list(NEW.iterdir()), [])

        arrived = self.gpg("--passphrase", PASSPHRASE, "--decrypt", sent)
        told = self.json("container", "verify", "-", given=arrived)["containers"][0]
        self.assertEqual((told["valid"], told["name"]), (True, "card.ddd"))

        answer = self.gpg("--recipient", "terminal", "--encrypt", given=b"answer")
        self.auxctl("pgp", "decrypt", "-", "-", *self.known, given=answer)
        self.assertEqual(self.raw, b"answer")

    def test_where_pass_phrases_come_from(self):
        protect = ("key", "protect", str(self.file))
        text = self.auxctl(*protect, *self.known)
        with open(self.secret, "rb") as secret:
            self.assertEqual(self.auxctl(*protect, "--passphrase-fd", secret.fileno(),
                                         pass_fds=[secret.fileno()]), text)
        self.assertEqual(self.auxctl(*protect, "--passphrase-fd", 0, given=PASSPHRASE.encode()), text)
        status, shown = self.on_terminal(*protect, answer=f"{PASSPHRASE}\n{PASSPHRASE}\n")
        self.assertEqual((status, shown.splitlines()[-1]), (0, text.strip()))
        self.assertNotIn(PASSPHRASE, shown)
        status, shown = self.on_terminal(*protect, answer="one\nother\n")
        self.assertEqual(status, 2)
        self.assertIn("differ", shown)

        (self.work / "latin").write_bytes(b"Gr\xf6\xdfe")
        (self.work / "empty").touch()
        for arguments, status, reason in (
            (protect, 2, "no terminal to ask"),
            ((*protect, *self.known, "--passphrase-fd", "0"), 2, "not both"),
            ((*protect, "--passphrase-fd", "x"), 2, "no file descriptor"),
            ((*protect, "--passphrase-fd", "77"), 1, "cannot"),
            (("key", "protect", "-", "--passphrase-fd", "0"), 2, "either"),
            ((*protect, "--passphrase-file", "/nowhere"), 1, "cannot open /nowhere"),
            ((*protect, "--passphrase-file", self.work / "latin"), 1, "not UTF-8"),
            ((*protect, "--passphrase-file", "/dev/null"), 1, "encryptKeyB64: pass phrase is empty"),
            (("key", "protect", self.work / "empty", *self.known), 1, "is empty"),
            (("key", "reveal", self.secret, self.work / "out", *self.known), 1, "decryptKeyB64: key is not base64"),
            (("pgp", "encrypt", self.file, self.work / "out"), 1, "encryptFileGPG: no key is imported"),
        ):
            self.auxctl(*arguments, status=status, given=b"x", start_new_session=True)
            self.assertIn(reason, self.errors)
        self.assertFalse((self.work / "out").exists())

    def test_large_files_in_constant_memory(self):
        if shutil.disk_usage(self.work).free < 700 << 20:
            self.skipTest("there is no room for three files of 200 MB")
        large, message, back = (self.work / name for name in ("large", "message", "back"))
        block = os.urandom(1 << 20)
        with open(large, "wb") as file:
            for _ in range(200):
                file.write(block)
        self.auxctl("pgp", "import", "-", given=self.pair)
        self.auxctl("pgp", "encrypt", large, message)
        self.assertGreater(message.stat().st_size, 200 << 20)
        self.auxctl("pgp", "decrypt", message, back, *self.known)
        subprocess.run(["cmp", large, back], check=True)
        # The largest of all programs that ran, gpg among them.
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss, 64 << 10)  # KiB

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

    def test_a_wrong_pass_phrase_may_reveal_nonsense(self):
        protected = self.auxctl("key", "protect", self.file, *self.known)
        self.auxctl("key", "reveal", "-", self.work / "out", *self.known, given=protected.encode())
        self.assertIn("this is no OpenPGP key", self.errors)

    def test_clock_set_back(self):
        self.auxctl("pgp", "import", "-", given=self.pair)
        early = {**os.environ, "FAKETIME": "2001-01-01 00:00:00",
                 "LD_PRELOAD": "/usr/$LIB/faketime/libfaketime.so.1",
                 "ASAN_OPTIONS": "verify_asan_link_order=0"}  # where it is built with it
        reason = "key was made after what the clock says now"
        self.auxctl("pgp", "encrypt", self.file, self.work / "out", status=1, env=early)
        self.assertIn(f"encryptFileGPG: {reason}", self.errors)
        self.auxctl("pgp", "import", "-", given=self.pair, status=1, env=early)
        self.assertIn(f"importKeypairGPG: {reason}", self.errors)
        self.assertFalse(KEYRING.exists())


if __name__ == "__main__":
    unittest.main()
