# SPDX-License-Identifier: MIT
import collections
import json
import os
import pathlib
import re
import shutil
import signal
import socket
import subprocess
import threading
import time
import unittest

from world import AUXCTL, NEW, World

FAKES = pathlib.Path(__file__).resolve().parent.parent / "fakes"


class Usage(World):
    def test_help_manual_and_completion_name_every_command(self):
        overview = self.auxctl("--help")
        commands = re.findall(r"(?m)^  ([a-z][a-z0-9-]+(?: [a-z]+)*)", overview)
        self.assertGreater(len(commands), 25)
        self.assertLessEqual(max(map(len, overview.splitlines())), 80)
        self.assertEqual(overview, self.auxctl("help"))
        self.assertIn("config set", self.auxctl("config"))
        self.assertNotIn("files list", self.auxctl("config"))
        manual = self.auxctl("manual").replace("\\-", "-")
        for command in commands:
            self.assertIn(f"auxctl {command}", manual)
            told = self.auxctl(*command.split(), "-h")
            self.assertIn(f"auxctl {command}", told.splitlines()[0])
            self.assertEqual(told, self.auxctl("help", *command.split()))
            self.assertLessEqual(max(map(len, told.splitlines())), 80)
        rendered = subprocess.run(["man", "-l", "--warnings", "-"], input=self.auxctl("manual").encode(),
                                  capture_output=True, check=False)
        self.assertEqual(rendered.stderr, b"")

    def complete(self, shell, words):
        """What TAB offers after the words."""
        script = self.auxctl("completion", shell)
        if shell == "bash":
            script += """COMP_WORDS=("$AUXCTL" "$@"); COMP_CWORD=$#; _auxctl 2>/dev/null; printf '%s\n' "${COMPREPLY[@]}" """
        elif shell == "zsh":  # its own commands for this are there only on a terminal
            script = "compdef() {}\n" + script + """
_files() { print -rl -- $words[CURRENT]*(N) }
compadd() { while [[ $1 != -- ]]; do shift; done; print -rl -- "${@:2}" }
words=($AUXCTL "$@"); CURRENT=$#words; _auxctl"""
        else:
            script += 'complete -C "auxctl $argv"'
            words = [word.replace(" ", "\\ ") for word in words]
        found = {**os.environ, "PATH": f"{pathlib.Path(AUXCTL).parent}:{os.environ['PATH']}", "HOME": str(self.work)}
        ended = subprocess.run([shell, "-c", script, "--", *words], capture_output=True, check=False, text=True, env=found)
        self.assertEqual(ended.stderr, "")
        return list(filter(None, ended.stdout.split("\n")))

    def test_completion(self):
        for shell in ("bash", "zsh", "fish"):
            with self.subTest(shell):
                if not shutil.which(shell):
                    self.skipTest(f"this machine has no {shell}")
                self.check_completion(shell)

    def check_completion(self, shell):
        settings = self.work / "a file"
        settings.touch()
        for words, expected in (
            (("co",), ["complete", "completion", "config", "container", "country"]),
            (("container", "u"), ["unpack"]),
            (("container", "unpack", "--f"), ["--force"]),
            (("wifi", "kill", "--y"), ["--yes"]),
            (("--json", "config", "val"), ["validate"]),
            (("config", "get", "/network/da"), ["/network/dataport"]),
            (("config", "set", "/device/lang=x", "/network/da"), ["/network/dataport="]),
            (("config", "get", "network/da"), ["network/dataport"]),
            (("config", "reset", "sc"), ["screensaver"]),
            (("files", "move", "new", "ar"), ["archive"]),
            (("container", "pack", "--type", "L"), ["LOGF"]),
            (("link", "l"), ["lo"]),
            (("container", "verify", "x", str(settings)[:-2]), [str(settings)]),
            (("clock", "set", ""), []),
        ):
            self.assertEqual(self.complete(shell, words), expected, words)

    def test_a_key_has_one_type(self):
        types = collections.defaultdict(set)

        def collect(schema):
            for key, inner in schema.get("properties", {}).items():
                types[key].add(json.dumps(inner.get("type")))
                collect(inner)
            collect(schema.get("items", {})) if "items" in schema else None
        for definition in json.loads(self.auxctl("schema"))["$defs"].values():
            collect(definition)
        self.assertGreater(len(types), 40)
        self.assertEqual({key: kinds for key, kinds in types.items() if len(kinds) > 1}, {})

    def test_wrong_calls(self):
        for arguments, reason in (
            ((), "no command given"),
            (("conifg", "show"), 'unknown command "conifg show", did you mean "config show"?'),
            (("country",), "usage: auxctl country ID"),
            (("country", "1", "2"), "usage: auxctl country ID"),
            (("country", "x"), '"x" is no number'),
            (("info", "--nonsense"), "nonsense"),
            (("container", "verify", "-h.bin"), "h.bin"),
            (("files", "verify", "-hash.ddd", "00"), "hash.ddd"),
            (("pgp", "encrypt", "-x.bin", "-h"), "x.bin"),
            (("link", "../eth0"), "is no interface"),
            (("container", "pack", "a", "b", "--type", "foo"), "There are DDDF, LOGF, CFGF, GPGF, UPDF"),
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
        self.assertEqual(self.json("wifi", "status", "--watch", status=1)["error"][0]["id"], 10001)
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

    def test_watch_prints_what_changes(self):
        def ip(*arguments):
            subprocess.run(["ip", "link", *arguments], check=True)

        def cable(state):
            time.sleep(2.5)  # in which nothing more is said
            ip("set", "wlan0", state)
            ip("set", "peer", state)

        def answer():
            while True:
                request, address = daemon.recvfrom(256)
                daemon.sendto(signal_poll if request == b"SIGNAL_POLL" else b"OK\n", address)
        ip("add", "wlan0", "type", "veth", "peer", "name", "peer")
        self.addCleanup(ip, "del", "wlan0")
        pathlib.Path("/run/wpa_supplicant").mkdir()
        self.addCleanup(shutil.rmtree, "/run/wpa_supplicant")
        daemon = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        daemon.bind("/run/wpa_supplicant/wlan0")
        threading.Thread(target=answer, daemon=True).start()
        signal_poll = b"RSSI=-45\nLINKSPEED=54\n"
        for command, steps in (
            (("files", "count", "new"), ((lambda: None, "0\n"), ((NEW / "a").touch, "1\n"))),
            (("link", "wlan0"), ((lambda: None, "down\n"), (lambda: cable("up"), "up\n"),
                                 (lambda: cable("down"), "down\n"))),
            (("wifi", "status"), ((lambda: None, "connected:  false\nquality:    0\n"),
                                  (lambda: cable("up"), "connected:  true\nquality:    3\n"))),
        ):
            with subprocess.Popen([AUXCTL, *command, "--watch"], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                  text=True) as watching:
                for change, expected in steps:
                    change()
                    self.assertEqual("".join(watching.stdout.readline() for _ in expected.splitlines()), expected)
                watching.terminate()
                self.assertEqual(watching.wait(), -signal.SIGTERM)
                self.assertLessEqual(len(watching.stderr.readlines()), len(steps))  # a reason for each "down"

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
        self.assertEqual(self.json("wifi", "start"), {"supplicant": "started"})
        self.assertEqual(self.json("wifi", "scan"), {"networks": []})
        self.assertIn("ask again", self.auxctl("wifi", "scan"))
        self.assertEqual(self.json("wifi", "status"), {"wifi": {"connected": False, "quality": 0}})
        self.assertEqual(self.json("wifi", "kill", "--yes"), {"supplicant": "killed"})
        settings.write_text("nonsense\n")
        self.assertEqual(self.json("wifi", "start", status=1)["error"][0]["message"],
                         "SystemHelper: cannot start wpa_supplicant")

    def test_progress_where_work_takes_long(self):
        file = self.work / ("x" * 90 + "y")
        with open(file, "wb") as sparse:
            sparse.truncate(10 << 20)
        packed = self.work / "packed"
        self.auxctl("container", "pack", file, packed)
        slowly = ("strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=read", "-e", "inject=read:delay_exit=10000")
        usual = {"TERM": "xterm", "ASAN_OPTIONS": "detect_leaks=0"}
        for command, path in ((("files", "checksum", file), file),
                              (("container", "unpack", packed, self.work, "--name", "a"), packed)):
            shown = self.on_terminal(*command, environment=usual, prefix=slowly)[1].split("\r\033[K")
            lines = [line for line in shown if line.endswith(" %")]
            parts = [int(line.split()[-2]) for line in lines]
            self.assertEqual(parts, sorted(set(parts)))
            self.assertTrue(len(parts) > 20 and parts[-1] == 100, parts)
            self.assertEqual({(len(line) < 80, line[:-6] == str(path)[6 - 79:]) for line in lines}, {(True, True)})
        for arguments, environment in (((), {"TERM": "dumb"}), (("--quiet",), {})):
            shown = self.on_terminal("files", "checksum", file, *arguments, environment={**usual, **environment}, prefix=slowly)[1]
            self.assertRegex(shown, r"^[0-9a-f]{64}\r\n$")

    def test_colour_only_on_a_terminal(self):
        self.auxctl("nonsense", status=2)
        self.assertNotIn("\033", self.errors)
        self.assertIn("\033[31m", self.on_terminal("nonsense")[1])
        self.assertNotIn("\033", self.on_terminal("nonsense", environment={"NO_COLOR": "1"})[1])


if __name__ == "__main__":
    unittest.main()
