# SPDX-License-Identifier: MIT
"""The Wi-Fi daemon on a radio of the kernel's, with two access points, and the cable."""

import pathlib
import subprocess
import unittest

from terminal import Terminal

SOCKET = pathlib.Path("/var/run/wpa_supplicant/wlan0")
DAEMON = "/usr/sbin/wpa_supplicant -B -Dnl80211 -iwlan0 -c/etc/wpa_supplicant.conf"
ACCESS_POINTS = "ip netns exec air hostapd -B /etc/hostapd/protected.conf /etc/hostapd/open.conf"


class Wifi(Terminal):
    def setUp(self):
        self.assertEqual(self.daemons(), [])

    def tearDown(self):
        subprocess.run(["auxctl", "wifi", "kill", "--yes"], capture_output=True, check=False)
        SOCKET.unlink(missing_ok=True)

    def daemons(self):
        """The command lines of those that run."""
        found = subprocess.run(["pgrep", "--list-full", "wpa_supplicant"], capture_output=True,
                               check=False, text=True)
        return [line.split(maxsplit=1)[1] for line in found.stdout.splitlines()]

    def refuses(self, reason, *operation):
        self.assertEqual(self.auxctl("wifi", *operation), f"SystemHelper: {reason}")

    def networks(self):
        return sorted((network["essid"], network["security"], network["quality"])
                      for network in self.auxctl("wifi", "scan"))

    def test_from_start_to_stop(self):
        self.assertEqual(self.auxctl("wifi", "start"), "started")
        self.assertEqual(self.daemons(), [DAEMON])
        self.refuses("cannot start wpa_supplicant, control socket already exists", "start")
        self.becomes([("Depot", 2, 3), ("Guests", 1, 3)], self.networks)
        self.becomes({"connected": True, "quality": 3}, self.auxctl, "wifi", "status")
        self.assertIs(self.auxctl("link", "wlan0"), True)

        self.run_command("killall hostapd")
        self.becomes(False, self.auxctl, "link", "wlan0")
        self.assertEqual(self.auxctl("wifi", "status"), {"connected": False, "quality": 0})
        self.run_command(ACCESS_POINTS)
        self.becomes(True, self.auxctl, "link", "wlan0")

        self.assertEqual(self.auxctl("wifi", "stop"), "stopped")
        self.becomes([], self.daemons)
        self.assertFalse(SOCKET.exists())
        self.becomes(False, self.auxctl, "link", "wlan0")
        self.refuses("cannot stop wpa_supplicant, control socket does not exist", "stop")

    def test_kill(self):
        self.assertEqual(self.auxctl("wifi", "start"), "started")
        self.assertEqual(self.auxctl("wifi", "kill", "--yes"), "killed")
        self.assertFalse(SOCKET.exists())
        self.becomes([], self.daemons)
        self.refuses("wpa_supplicant not killed", "kill", "--yes")
        self.refuses("cannot open wpa_supplicant control interface", "scan")

    def test_cable(self):
        for state, is_up in (("down", False), ("up", True)):
            self.run_command(f"ip -n lan link set cable {state}")
            self.becomes(is_up, self.auxctl, "link")

    def test_who_and_where(self):
        self.becomes("192.0.2.1", lambda: self.auxctl("info")["ipv4"])
        info = self.auxctl("info")
        self.assertEqual([info[key] for key in ("serial", "wifiMac", "bsp", "problem")],
                         ["0200000E44AB", "02:00:00:F4:4A:B", "box 1.0", ""])
        network = info["network"]
        self.assertEqual(network["active"], "eth")
        self.assertEqual({each["kind"]: each["interface"] for each in network["interfaces"]},
                         {"eth": "eth0", "wlan": "wlan0"})


if __name__ == "__main__":
    unittest.main()
