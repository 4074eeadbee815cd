# SPDX-License-Identifier: MIT
import pathlib
import shutil
import subprocess
import unittest

from world import DATA, SETTINGS, World

SERVER = pathlib.Path("/tmp/server")
TRUSTED = DATA / "config/trusted.gpg"
STRANGER = "verifyFileGPG: signature is not by a trusted key"


def gpg(*arguments):
    """What plain gpg prints on the server."""
    return subprocess.run(["gpg", "--homedir", SERVER, "--batch", "--quiet", "--yes", "--pinentry-mode", "loopback",
                           "--passphrase", "", *arguments], capture_output=True, check=True).stdout


def make_key(name, *arguments, life="never"):
    gpg(*arguments, "--quick-generate-key", name, "ed25519", "sign", life)


class Trust(World):
    @classmethod
    def setUpClass(cls):
        SERVER.mkdir(mode=0o700)
        make_key("server")
        make_key("thief")
        make_key("gone", "--faked-system-time", "20200101T000000", life="1y")

    @classmethod
    def tearDownClass(cls):
        subprocess.run(["gpgconf", "--homedir", SERVER, "--kill", "all"], check=True)
        shutil.rmtree(SERVER)

    def setUp(self):
        super().setUp()
        self.candidate = self.work / "candidate"
        self.packed = self.work / "packed"
        self.signature = self.work / "packed.sig"
        self.keys = self.work / "keys"
        self.auxctl("config", "export", "--reveal", self.candidate)
        self.auxctl("container", "pack", "--type", "CFGF", self.candidate, self.packed)
        self.auxctl("config", "set", "network/dataport=8080")

    def export(self, *keys):
        self.keys.write_bytes(gpg("--armor", "--export", *keys))

    def sign(self, key, file=None, *options):
        self.signature.write_bytes(gpg("--local-user", key, *options, "--output", "-", "--detach-sign",
                                       file or self.packed))

    def trust(self, *keys):
        self.export(*keys)
        return self.json("pgp", "trust", "add", self.keys)["trustedKeys"]

    def refused(self, reason, file=None, status=1):
        before = SETTINGS.read_bytes()
        self.auxctl("config", "apply", file or self.packed, status=status)
        self.assertIn(reason, self.errors)
        self.assertEqual(SETTINGS.read_bytes(), before)

    def test_configurations(self):
        self.auxctl("config", "apply", self.packed, "--dry-run")  # as long as no key is trusted
        self.assertFalse(self.json("report")["report"]["isSignatureRequired"])
        told = self.trust("server", "gone")
        self.assertIn("key has expired", self.errors)
        report = self.json("report")["report"]
        self.assertTrue(report["isSignatureRequired"])
        self.assertEqual(report["trustedKeys"], told)
        self.refused(f"there is no signature {self.signature}")
        self.refused("standard input has no signature", "-", status=2)
        self.sign("thief")
        self.refused(STRANGER)
        self.sign("server", self.candidate)
        self.refused("verifyFileGPG: file does not match the signature")
        self.sign("gone", None, "--faked-system-time", "20200601T000000")
        self.refused("verifyFileGPG: key has expired")
        self.sign("server")
        self.refused("there is no signature", self.candidate)
        for spoil in (lambda: TRUSTED.write_bytes(b""), TRUSTED.mkdir, lambda: TRUSTED.symlink_to("/nowhere")):
            kept = TRUSTED.read_bytes()
            TRUSTED.unlink()
            spoil()
            self.refused("verifyFileGPG: keyring")
            (TRUSTED.rmdir if TRUSTED.is_dir() else TRUSTED.unlink)()
            TRUSTED.write_bytes(kept)
        self.auxctl("config", "apply", self.packed)
        self.assertEqual(self.auxctl("config", "get", "network/dataport"), "8000\n")

    def test_the_file_of_trusted_keys(self):
        first = self.trust("server")[0]
        self.assertEqual((first["name"], first["expires"], first["state"]), ("server", "never", "good"))
        self.assertEqual(TRUSTED.stat().st_mode & 0o7777, 0o644)
        gpg("--quick-set-expire", first["fingerprint"], "1y")
        newer = self.trust("server")
        self.assertNotEqual(newer[0]["expires"], "never")
        self.assertEqual(self.json("pgp", "trust", "list")["trustedKeys"], newer)
        self.keys.write_bytes(b"\n" + gpg("--armor", "--export", "thief"))
        kept = TRUSTED.read_bytes()
        self.auxctl("container", "pack", "--type", "GPGF", self.keys, self.packed, "--force")
        self.auxctl("pgp", "trust", "add", self.packed, status=1)
        self.assertIn("is a container, from which no trusted key is taken", self.errors)
        for secret in (gpg("--export-secret-keys", "thief"), b"\x9c\x01\x04"):
            self.keys.write_bytes(gpg("--export", "thief") + secret)
            self.auxctl("pgp", "trust", "add", self.keys, status=1)
            self.assertIn("holds a secret key", self.errors)
        self.auxctl("pgp", "trust", "remove", "0", status=2)
        self.auxctl("pgp", "trust", "remove", first["fingerprint"], status=1)
        self.assertEqual(TRUSTED.read_bytes(), kept)
        second = self.trust("thief")[0]["fingerprint"]
        self.assertEqual(self.auxctl("complete", "--", "pgp", "trust", "remove").split(), [first["fingerprint"], second])
        older = gpg("--export", "gone")
        gone = self.trust("gone")[0]["fingerprint"]
        (self.work / "revocation").write_text(
            (SERVER / f"openpgp-revocs.d/{gone}.rev").read_text().replace(":---", "---"))
        gpg("--import", self.work / "revocation")
        self.assertEqual(self.trust("gone")[0]["state"], "key is revoked")
        self.keys.write_bytes(older)
        self.auxctl("pgp", "trust", "add", self.keys, status=1)
        self.assertIn("is revoked, and an older edition of it is not taken", self.errors)
        self.auxctl("pgp", "trust", "remove", gone)
        self.auxctl("pgp", "trust", "remove", first["fingerprint"].lower())
        self.auxctl("pgp", "trust", "remove", second, "--last")
        self.assertFalse(TRUSTED.exists())

    def test_signing_and_verifying(self):
        secret = self.work / "secret"
        secret.write_text("\n")
        self.auxctl("pgp", "import", "-", given=gpg("--export-secret-keys", "server"))
        self.addCleanup(self.auxctl, "pgp", "remove")
        self.export("server")
        known = ("--keyring", self.keys)
        told = self.json("pgp", "verify", self.packed, *known, status=3)["signature"]
        self.assertIn("there is no signature", told["error"][0]["message"])
        self.auxctl("container", "verify", self.packed, "--keyring", "/nowhere", status=1)
        self.auxctl("pgp", "sign", self.packed, "--passphrase-file", secret)
        told = self.json("pgp", "verify", self.packed, *known)["signature"]
        self.assertEqual((told["trusted"], len(told["signer"])), (True, 40))
        self.auxctl("pgp", "sign", self.packed, "--passphrase-file", secret, status=1)
        self.assertIn("--force overwrites it", self.errors)
        self.auxctl("pgp", "sign", self.packed, self.packed, "--force", "--passphrase-file", secret, status=2)
        self.auxctl("pgp", "sign", "-", "-", "--passphrase-file", secret, given=b"content")
        (self.work / "made").write_bytes(self.raw)
        self.auxctl("pgp", "verify", "-", self.work / "made", *known, given=b"content")
        self.auxctl("pgp", "verify", "-", self.work / "made", *known, given=b"contenT", status=3)
        self.assertIn("file does not match the signature", self.errors)
        self.auxctl("pgp", "verify", "-", *known, status=2)
        self.auxctl("pgp", "verify", "/nowhere", self.signature, *known, status=1)
        self.auxctl("pgp", "verify", self.packed, status=1)  # there are no trusted keys

        told = self.json("container", "verify", self.packed, *known)["containers"][0]
        self.assertEqual((told["valid"], told["trusted"]), (True, True))
        other = self.work / "other"
        shutil.copy(self.packed, other)
        told = self.json("container", "verify", self.packed, self.signature, other, *known, status=3)["containers"]
        self.assertEqual([row["trusted"] for row in told], [True, False])
        self.export("thief")
        self.auxctl("container", "verify", self.packed, *known, status=3)
        self.assertIn(STRANGER, self.errors)


if __name__ == "__main__":
    unittest.main()
