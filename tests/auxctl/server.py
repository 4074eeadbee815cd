# SPDX-License-Identifier: MIT
"""What the tests with keys share: a server, and a terminal that may get its key."""

import os
import pathlib
import shutil
import subprocess

from world import NEW, SHOWN, TMP, World

KEYRING = pathlib.Path("/tmp/gpg-temp-keyring")
TRANSFER = NEW.parent / "transfer"
PASSPHRASE = "Größe € p"


class ServersWorld(World):
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
