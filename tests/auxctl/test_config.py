# SPDX-License-Identifier: MIT
import itertools
import json
import threading
import unittest

import jsonschema
from world import SETTINGS, World

PORT = "/network/dataport"


def nested(document, path, value):
    for name in path[:-1]:
        document = document.setdefault(name, {})
    document[path[-1]] = value


class Config(World):
    def complete(self, **changes):
        """A complete settings file, with these values: a__b is /a/b."""
        document = {}
        for setting in self.json("config", "show", "--reveal")["settings"]:
            nested(document, setting["key"].strip("/").split("/"), setting["default"])
        for key, value in changes.items():
            nested(document, key.split("__"), value)
        return document

    def test_set_is_one_transaction(self):
        self.auxctl("config", "set", f"{PORT}=8080", "device/audio=false", "/device/infotext=a=b")
        written = json.loads(SETTINGS.read_text())
        self.assertEqual(written["network"]["dataport"], 8080)
        self.assertIs(written["device"]["audio"], False)
        self.assertEqual(written["device"]["infotext"], "a=b")
        self.assertEqual(written["config_changes"], 1)
        self.assertEqual(self.auxctl("config", "get", PORT), "8080\n")
        self.assertEqual(self.json("config", "get", "device/audio"), {"value": False})

    def test_a_wrong_value_leaves_everything(self):
        self.auxctl("config", "set", f"{PORT}=8080")
        before = SETTINGS.read_bytes()
        for wrong, reason in (
            (f"{PORT}=x", f'{PORT} takes a number from 0 to 2147483647, but not 9000, not "x"'),
            (f"{PORT}=-1", "takes a number"),
            (f"{PORT}=2147483648", "takes a number"),
            ("/device/audio=yes", '/device/audio takes true or false, not "yes"'),
            ("/network/datport=1", f'unknown setting "/network/datport", did you mean "{PORT}"?'),
            ("/device/lang", '"/device/lang" is no KEY=VALUE'),
            ("device/lang=fr", "a setting is given twice"),
            (f"{PORT}=9000", "Cannot use internal CGI port as dataport: 9000"),
            ("device/pin=123", "Invalid pin hash length: 3"),
            ("crypto/vendors=zzz", "USB VID:PID list syntax error"),
            ("crypto/gpgkey=abc", "GPG Key invalid size"),
        ):
            self.auxctl("config", "set", "/device/lang=de_DE", wrong, status=2)
            self.assertIn(reason, self.errors)
            self.assertIn("error", self.json("config", "set", "/device/lang=de_DE", wrong, status=2))
        modes = [f"device/mode/{mode}=false" for mode in ("usb", "serial", "network")]
        self.auxctl("config", "set", *modes, status=2)
        self.assertEqual(SETTINGS.read_bytes(), before)

    def test_show_marks_changes_and_hides_secrets(self):
        self.auxctl("config", "set", f"{PORT}=8080", "/network/wifi/psk=secret", "/crypto/passphrase=x")
        shown = self.auxctl("config", "show")
        self.assertEqual(len(shown.splitlines()), len(self.json("config", "show")["settings"]))
        self.assertRegex(shown, r"(?m)^\* /network/dataport +8080$")
        self.assertRegex(shown, r"(?m)^  /device/lang +en_GB$")
        self.assertNotIn("secret", shown + self.auxctl("config", "changed"))
        self.assertEqual(self.json("config", "show", "network/wifi/psk", "--reveal"),
                         {"settings": [{"key": "/network/wifi/psk", "value": "secret",
                                        "default": "", "isDefault": False}]})
        self.auxctl("config", "set", "crypto/gpgkey=" + "k" * 64)
        self.assertEqual(self.json("config", "show", "crypto/gpgkey")["settings"],
                         [{"key": "/crypto/gpgkey", "secret": True, "default": "", "isDefault": False}])

    def test_changed(self):
        self.auxctl("config", "changed", status=3)
        self.auxctl("config", "set", "/device/lang=de_DE")
        self.assertEqual(self.json("config", "changed")["changed"],
                         [{"key": "/device/lang", "value": "de_DE", "default": "en_GB"}])
        self.assertEqual(self.json("config", "changed", "network", status=3), {"changed": []})
        self.auxctl("config", "changed", "netwrk", status=2)
        self.assertIn('did you mean "network"?', self.errors)

    def test_the_application_is_found(self):
        self.auxctl("config", "set", f"{PORT}=1", "--app", "one/first", "--create")
        self.assertEqual(self.auxctl("config", "get", PORT), "1\n")  # the only one there is
        self.auxctl("config", "set", f"{PORT}=2", "--app", "two/second", status=1)
        self.assertIn("two/second.JSON does not exist", self.errors)
        self.auxctl("config", "get", PORT, "--app", "two/second", status=1)
        self.auxctl("config", "set", f"{PORT}=2", "--app", "two/second", "--create")
        self.auxctl("config", "get", PORT, status=2)
        self.assertIn("one/first, two/second", self.errors)
        self.assertEqual(self.auxctl("config", "get", PORT, "--app", "two/second"), "2\n")
        for wrong in ("../x", "./x", "x", "a/b/c", "/x"):
            self.auxctl("config", "get", PORT, "--app", wrong, status=2)

    def test_nothing_is_called_written_that_was_not(self):
        self.auxctl("config", "set", f"{PORT}=1")
        SETTINGS.parent.chmod(0o500)
        self.addCleanup(SETTINGS.parent.chmod, 0o700)
        self.auxctl("config", "set", f"{PORT}=2", status=1)
        self.assertIn(f"cannot write {SETTINGS}", self.errors)
        self.assertEqual(self.auxctl("config", "get", PORT), "1\n")

    def test_a_file_that_says_nothing_is_not_taken_for_defaults(self):
        SETTINGS.write_text("{broken")
        for arguments in (("show",), ("get", PORT), ("changed",), ("set", f"{PORT}=1")):
            self.auxctl("config", *arguments, status=1)
            self.assertIn(f"{SETTINGS} holds no JSON object", self.errors)
        self.assertEqual(SETTINGS.read_text(), "{broken")
        SETTINGS.parent.chmod(0)
        self.addCleanup(SETTINGS.parent.chmod, 0o700)
        self.auxctl("config", "get", PORT, status=1)
        SETTINGS.parent.chmod(0o700)
        SETTINGS.chmod(0)
        self.auxctl("config", "get", PORT, status=1)
        self.auxctl("config", "validate", SETTINGS, status=1)

    def test_validation_agrees_with_the_schema(self):
        schema = json.loads(self.auxctl("config", "schema"))
        jsonschema.Draft202012Validator.check_schema(schema)
        validator = jsonschema.Draft202012Validator(schema)
        incomplete = self.complete()
        everything = self.complete(device__pin="123", network__dataport=9000, device__audio="yes")
        del everything["device"]["lang"]
        del incomplete["datahandling"]["usbkeyclear"]
        for document, reason in (
            (self.complete(), ""),
            (self.complete(device__pin="a" * 64, crypto__vendors="0x1:2;3:4"), ""),
            (self.complete(device__pin="a" * 63), "Invalid pin hash length: 63"),
            (self.complete(network__dataport=9000), "Cannot use internal CGI port as dataport: 9000"),
            (self.complete(crypto__gpgkey="a"), "GPG Key invalid size"),
            (self.complete(crypto__vendors="1;2"), "USB VID:PID list syntax error"),
            (self.complete(device__mode__usb=False, device__mode__serial=False,
                           device__mode__network=False), "All operating modes disabled"),
            (incomplete, "Missing /datahandling/usbkeyclear"),
        ):
            candidate = json.dumps(document).encode()
            self.auxctl("config", "validate", "-", given=candidate, status=3 if reason else 0)
            self.assertIn(reason, self.errors)
            self.assertEqual(validator.is_valid(document), not reason, reason)
        self.assertFalse(validator.is_valid(self.complete(device__audio="true")))
        self.auxctl("config", "validate", "-", given=json.dumps(everything).encode(), status=3)
        self.assertTrue(self.errors.startswith("libaux Invalid config file. Missing /device/lang"), self.errors)
        faults = self.json("config", "validate", "-", given=json.dumps(everything).encode(), status=3)["faults"]
        self.assertEqual([(fault["key"], fault["found"]) for fault in faults],
                         [("/device/pin", "********"), ("/device/lang", "nothing"),
                          ("/device/audio", '"yes"'), (PORT, "9000")])
        self.assertEqual(self.json("config", "validate", "-", given=b"{}", status=3)["faults"][41]["key"],
                         "/datahandling/usbkeyclear")
        faults = self.json("config", "validate", "-", given=b'{\n "device": {,', status=3)["faults"]
        self.assertIn("line 2, column 14", faults[0]["message"])
        self.auxctl("config", "validate", self.work / "missing", status=1)
        self.assertIn("Config file does not exist 10001", self.errors)


    def test_values_are_of_one_moment(self):
        marks, texts = ("8765", "de_DE", "depot"), []
        following, stop = SETTINGS.with_suffix(".next"), threading.Event()
        for values in (marks, ("8766", "en_US", "yard")):
            self.auxctl("config", "set", *map("=".join, zip((PORT, "device/lang", "network/wifi/ssid"), values)))
            texts.append(SETTINGS.read_bytes())

        def alternate():
            for text in itertools.cycle(texts):
                following.write_bytes(text)
                following.replace(SETTINGS)
                if stop.is_set():
                    break

        writer = threading.Thread(target=alternate)
        writer.start()
        try:
            for words in (("config", "show"), ("config", "changed"), ("config", "export"), ("report",)):
                for told in [self.auxctl(*words, "--json") for _ in range(9)]:
                    self.assertIn(sum(mark in told for mark in marks), (0, len(marks)), words)
        finally:
            stop.set()
            writer.join()

    def test_the_life_of_a_configuration(self):
        candidate, packed = self.work / "candidate", self.work / "packed"
        self.auxctl("config", "set", f"{PORT}=1", "device/lang=de_DE", "network/wifi/psk=secret")
        self.auxctl("config", "export", candidate)
        self.assertNotIn("secret", candidate.read_text())
        self.auxctl("config", "apply", candidate, status=1)
        self.auxctl("config", "export", candidate, status=1)  # there already
        self.auxctl("config", "export", candidate, "--reveal", "--force")
        self.assertEqual(candidate.stat().st_mode & 0o777, 0o600)
        self.assertEqual(json.loads(self.auxctl("config", "export", "--reveal")), json.loads(candidate.read_text()))
        self.auxctl("config", "validate", candidate)
        self.auxctl("config", "diff", candidate)

        self.auxctl("config", "unset", "device/lang")
        self.auxctl("config", "set", f"{PORT}=2", "network/wifi/psk=other")
        changes = [{"key": "/device/lang", "old": "en_GB", "new": "de_DE"}, {"key": PORT, "old": 2, "new": 1},
                   {"key": "/network/wifi/psk", "secret": True}]
        self.assertEqual(self.json("config", "diff", candidate, status=3), {"changes": changes})
        before, commits = SETTINGS.read_bytes(), self.json("config", "path")["configuration"]["commits"]
        self.assertEqual(self.json("config", "apply", candidate, "--dry-run"), {"changes": changes})
        self.assertEqual(SETTINGS.read_bytes(), before)
        self.auxctl("container", "pack", candidate, packed, "--type", "DDDF")
        self.auxctl("config", "apply", packed, status=1)
        self.assertIn("holds no configuration", self.errors)
        self.auxctl("container", "pack", candidate, packed, "--type", "CFGF", "--force")
        content = packed.read_bytes()
        packed.write_bytes(content[:-1] + b" ")
        self.auxctl("config", "apply", packed, status=1)
        self.assertEqual(SETTINGS.read_bytes(), before)
        packed.write_bytes(content)
        self.assertEqual(self.json("config", "apply", packed), {"changes": changes})
        self.auxctl("config", "diff", candidate)
        self.assertEqual(self.json("config", "path")["configuration"]["commits"], commits + 1)
        self.auxctl("config", "reset", "network", "--yes")
        self.assertEqual(self.json("config", "changed")["changed"],
                         [{"key": "/device/lang", "value": "de_DE", "default": "en_GB"}])


if __name__ == "__main__":
    unittest.main()
