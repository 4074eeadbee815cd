# SPDX-License-Identifier: MIT
import os
import resource
import shutil
import subprocess
import unittest

from server import KEYRING, PASSPHRASE, ServersWorld, TRANSFER
from world import NEW

KEY = "/crypto/gpgkey"


class Keys(ServersWorld):
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
