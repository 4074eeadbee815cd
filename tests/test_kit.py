# SPDX-License-Identifier: MIT
"""The sandbox as an application developer calls it: test_kit.py SANDBOX, with auxctl in PATH."""

import json
import pathlib
import signal
import subprocess
import sys
import tempfile
import unittest

SANDBOX = sys.argv.pop(1)
NETWORK = "network Depot -45 [WPA2-PSK-CCMP]\n"


class Sandbox(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.file = pathlib.Path(directory.name, "supplicant")

    def sandbox(self, *words):
        return subprocess.run([SANDBOX, *words], capture_output=True, text=True, check=False)

    def answer(self, lines, *operation):
        """What auxctl says of the Wi-Fi daemon that the file describes."""
        self.file.write_text(lines, errors="surrogateescape")
        return json.loads(self.sandbox("--supplicant", str(self.file), "auxctl", "wifi", *operation, "--json").stdout)

    def test_exit_status(self):
        for script, status in (("exit 0", 0), ("exit 3", 3), ("exit 77", 1), ("kill -TERM $$", 128 + signal.SIGTERM)):
            self.assertEqual(self.sandbox("sh", "-c", script).returncode, status, script)

    def test_a_command_may_hold_an_equals_sign(self):
        command = self.file.with_name("a=b")
        command.write_text("#!/bin/sh\nexit 3\n")
        command.chmod(0o755)
        ended = self.sandbox("--empty", "--readable", str(command.parent), "--", str(command), "true")
        self.assertEqual(ended.returncode, 3)

    def test_death(self):
        """Who kills the sandbox ends the command."""
        with subprocess.Popen([SANDBOX, "--empty", "sh", "-c", "echo; sleep 1000"], stdout=subprocess.PIPE) as sandbox:
            sandbox.stdout.readline()
            sandbox.terminate()
            self.assertEqual(sandbox.stdout.read(), b"")  # ends with the last process that could write

    def test_wrong_calls(self):
        for words, reason in (
                ([], "there is no command"),
                (["--suplicant", "x", "true"], "there is no option --suplicant"),
                (["--supplicant"], "--supplicant needs a value"),
                (["--supplicant", "/nowhere", "true"], "/nowhere: No such file or directory"),
                (["--writable", SANDBOX, "true"], f"{SANDBOX} is no directory"),
                (["--readable", "/nowhere", "true"], "/nowhere is no directory"),
                (["--writable", "/", "true"], "/ is the world's own"),
                (["--writable", "/tmp", "true"], "/tmp is the world's own"),
                (["--interface", "eth 0", "true"], "no name of an interface"),
                (["--interface", "eth0,01:00:00:00:00:00", "true"], '"01:00:00:00:00:00" is neither'),
                (["--interface", "eth0,1.2.3.400/8", "true"], "1.2.3.400/8"),
                (["--interface", "lo", "true"], "cannot make the interface lo")):
            ended = self.sandbox(*words)
            self.assertEqual(ended.returncode, 2, words)
            self.assertIn(reason, ended.stderr)

    def test_faults_of_the_file(self):
        for line, reason in (
                ("netwrok Depot -45", 'unknown word "netwrok"'),
                ("network Depot", 'wrong number of words after "network"'),
                ("network Depot strong", '"strong" is no level in dBm from -1000 to 1000'),
                ('network "Depot -45', "No closing quotation"),
                ("late SCAN soon", '"soon" is no number of seconds from 0 to 3600'),
                ("silent SCANS", 'unknown command "SCANS", there are PING, ')):
            self.file.write_text(f"# two lines\n{NETWORK}{line}\n")
            ended = self.sandbox("--supplicant", str(self.file), "false")
            self.assertEqual(ended.returncode, 2, line)
            self.assertIn(f"{self.file}:3: {reason}", ended.stderr)

    def test_networks(self):
        scan = self.answer(NETWORK + "network 'a # \\xe4' -70 ''\nnetwork \udce4 -90", "scan")
        self.assertEqual([tuple(network.values()) for network in scan["networks"]],
                         [("Depot", 3, 2), ("a # \\xe4", 1, 0), ("ä", 0, 1)])

    def test_answers(self):
        for lines, operation, message in (
                ("", "start", "SystemHelper: cannot start wpa_supplicant, control socket already exists"),
                ("stopped", "scan", "SystemHelper: cannot open wpa_supplicant control interface"),
                ("refuse ATTACH", "scan", "SystemHelper: cannot attach to wpa_supplicant control interface"),
                ("silent ATTACH", "scan", "SystemHelper: cannot attach to wpa_supplicant control interface"),
                ("late SCAN_RESULTS 11", "scan", "collecting scan results failed")):
            told = self.answer(f"{lines}\n{NETWORK}", operation)
            self.assertEqual(told["error"][0]["message"], message, lines)

    def test_life_of_the_daemon(self):
        self.file.write_text("signal -60\n" + NETWORK + "stopped")
        script = "auxctl wifi start && auxctl wifi kill --yes && auxctl wifi start && auxctl wifi status && auxctl wifi stop"
        told = self.sandbox("--supplicant", str(self.file), "sh", "-c", script).stdout
        self.assertEqual(told.split(), "started killed started connected: true quality: 2 stopped".split())

    def test_interfaces(self):
        script = """
            auxctl link eth8
            auxctl link eth7
            nsenter --net=/run/netns/lan ip link set eth7 down
            auxctl link eth7
            until grep -q down /sys/class/net/eth7/operstate; do sleep 0.1; done # the kernel tells it within a second
            auxctl info | grep -E '^(serial|ipv4)'
        """
        told = self.sandbox("--interface", "eth7,02:00:00:0e:44:ab,192.0.2.1/24", "--interface", "eth8,down",
                            "sh", "-c", script).stdout
        self.assertEqual(told.split(), "down up down serial: 0200000E44AB ipv4: -".split())


if __name__ == "__main__":
    if subprocess.run([SANDBOX, "true"], check=False).returncode == 77:
        sys.exit(77)
    unittest.main()
