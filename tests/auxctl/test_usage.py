# SPDX-License-Identifier: MIT
import pathlib
import re
import shutil
import subprocess
import unittest

from world import World

FAKES = pathlib.Path(__file__).resolve().parent.parent / "fakes"


class Usage(World):
    def test_help_manual_and_completion_name_every_command(self):
        overview = self.auxctl("--help")
        commands = re.findall(r"(?m)^  auxctl ([a-z0-9-]+(?: [a-z]+)?)", overview)
        self.assertGreater(len(commands), 25)
        manual = self.auxctl("manual").replace("\\-", "-")
        for command in commands:
            self.assertIn(f"auxctl {command}", manual)
            self.assertIn(f"auxctl {command}", self.auxctl(*command.split(), "-h").splitlines()[0])
        rendered = subprocess.run(["man", "-l", "--warnings", "-"], input=self.auxctl("manual").encode(),
                                  capture_output=True, check=False)
        self.assertEqual(rendered.stderr, b"")

    def complete(self, *words):
        script = self.auxctl("completion") + """
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _auxctl; printf '%s ' "${COMPREPLY[@]}"
"""
        return subprocess.run(["bash", "-c", script, "bash", *words], capture_output=True, check=True,
                              text=True).stdout.split()

    def test_completion(self):
        self.assertEqual(self.complete("auxctl", "co"), ["completion", "config", "container", "country"])
        self.assertEqual(self.complete("auxctl", "container", "u"), ["unpack"])
        self.assertEqual(self.complete("auxctl", "container", "unpack", "--f"), ["--force"])
        self.assertEqual(self.complete("auxctl", "wifi", "kill", "--y"), ["--yes"])
        self.assertEqual(self.complete("auxctl", "--json", "config", "val"), ["validate"])

    def test_wrong_calls(self):
        for arguments, reason in (
            ((), "no command given"),
            (("conifg", "show"), 'unknown command "conifg show", did you mean "config show"?'),
            (("country",), "usage: auxctl country ID"),
            (("country", "1", "2"), "usage: auxctl country ID"),
            (("country", "x"), '"x" is no number'),
            (("info", "--nonsense"), "nonsense"),
            (("link", "../eth0"), "is no interface"),
            (("link", ""), "an argument is empty"),
            (("remount-ro", "/x; reboot", "--yes"), "no plain absolute path"),
            (("clock", "set", "tomorrow", "--yes"), "is no time"),
        ):
            self.auxctl(*arguments, status=2)
            self.assertIn(reason, self.errors)
            self.assertEqual(self.json(*arguments, status=2)["error"][0]["id"], 2)

    def test_codes_and_identity(self):
        self.assertEqual(self.json("country", "13"), {"country": "D"})
        self.assertEqual(self.auxctl("--version"), "auxctl 2.1.0.14\n")
        self.assertEqual(self.json("--version"), {"version": "auxctl 2.1.0.14"})
        told = self.json("info")["info"]
        self.assertEqual(told["version"], "2.1.0.14")
        self.assertEqual(told["network"]["active"], "none")
        self.assertEqual(set(told["clock"]), {"year", "month", "day", "hour", "minute", "second"})

    def test_system_commands_report_what_the_library_says(self):
        self.assertEqual(self.json("link", "nope0", status=3), {"link": False})
        self.assertIn("sysfs entry missing", self.errors)
        self.auxctl("wifi", "stop", status=1)
        self.assertIn("libaux SystemHelper: cannot stop wpa_supplicant, control socket does not exist 10001",
                      self.errors)
        for command in ("scan", "status"):
            self.assertEqual(self.json("wifi", command, status=1)["error"][0]["message"],
                             "SystemHelper: cannot open wpa_supplicant control interface")
        self.auxctl("clock", "set", "2026-01-31T12:00:00Z", "--yes", status=1)  # not allowed here
        self.assertIn("CAP_SYS_TIME", self.errors)
        subprocess.run(["mount", "-t", "ramfs", "ro", self.work], check=True)
        self.addCleanup(subprocess.run, ["umount", self.work], check=True)
        (self.work / "below").mkdir()
        self.auxctl("remount-ro", self.work, "--yes")
        with self.assertRaises(OSError):
            (self.work / "f").write_text("x")
        for wrong in ("/nowhere", self.work / "below"):
            self.auxctl("remount-ro", wrong, "--yes", status=1)

    def test_wifi_with_the_machines_own_daemon(self):
        daemon = pathlib.Path("/usr/sbin/wpa_supplicant")
        pathlib.Path("/run/real").mkdir()
        shutil.copy(daemon, "/run/real")
        subprocess.run(["mount", "--bind", FAKES / "wpa_supplicant", daemon], check=True)
        self.addCleanup(subprocess.run, ["umount", daemon], check=True)
        settings = pathlib.Path("/etc/wpa_supplicant.conf")
        settings.unlink(missing_ok=True)
        settings.write_text("ctrl_interface=/var/run/wpa_supplicant\n")
        subprocess.run(["ip", "link", "add", "wlan0", "type", "veth", "peer", "name", "peer"], check=True)
        # What the daemon prints does not get into the document.
        self.assertEqual(self.json("wifi", "start"), {"wifi": "started"})
        self.assertEqual(self.json("wifi", "scan"), {"networks": []})
        self.assertIn("ask again", self.auxctl("wifi", "scan"))
        self.assertEqual(self.json("wifi", "status"), {"wifi": {"connected": False, "quality": 0}})
        self.assertEqual(self.json("wifi", "kill", "--yes"), {"wifi": "killed"})
        settings.write_text("nonsense\n")
        self.assertEqual(self.json("wifi", "start", status=1)["error"][0]["message"],
                         "SystemHelper: cannot start wpa_supplicant")

    def test_colour_only_on_a_terminal(self):
        self.auxctl("nonsense", status=2)
        self.assertNotIn("\033", self.errors)
        self.assertIn("\033[31m", self.on_terminal("nonsense")[1])
        self.assertNotIn("\033", self.on_terminal("nonsense", environment={"NO_COLOR": "1"})[1])


if __name__ == "__main__":
    unittest.main()
