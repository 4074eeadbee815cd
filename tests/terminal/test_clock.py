# SPDX-License-Identifier: MIT
"""The clock of the machine with the one that runs on its battery, and a mounted file system."""

import datetime
import pathlib
import sys
import time
import unittest

from terminal import PATIENCE, Terminal

HARDWARE_CLOCK = pathlib.Path("/sys/class/rtc/rtc0/since_epoch")
DEVICE, MOUNT_POINT = pathlib.Path("/tmp/storage"), pathlib.Path("/tmp/mounted")


class Clock(Terminal):
    def setUp(self):
        self.ahead = time.time() - time.monotonic()

    def tearDown(self):
        now = datetime.datetime.utcfromtimestamp(self.ahead + time.monotonic())
        self.auxctl("clock", "set", "--yes", now.isoformat(timespec="seconds") + "Z")

    def assert_clocks(self, seconds):
        self.assertAlmostEqual(time.time(), seconds, delta=PATIENCE)
        self.assertAlmostEqual(int(HARDWARE_CLOCK.read_text()), seconds, delta=PATIENCE)

    def test_set(self):
        for told, seconds in (("2031-05-06T07:08:09Z", 1935817689),
                              ("2031-05-06T07:08:09+02:00", 1935810489),
                              ("2021-01-01T00:00:00Z", 1609459200)):
            self.auxctl("clock", "set", "--yes", told)
            self.assert_clocks(seconds)

    @unittest.skipIf(sys.maxsize > 2**32, "this clock goes further")
    def test_beyond_32_bits(self):
        for year in (2039, 2110):
            self.assertEqual(self.auxctl("clock", "set", "--yes", f"{year}-01-01T00:00:00Z"),
                             "Timezone (or something else) is invalid.")
            self.assert_clocks(self.ahead + time.monotonic())


class ReadOnly(Terminal):
    def test_remount(self):
        self.run_command(f"mkfs.ext4 -q {DEVICE} 1M")
        MOUNT_POINT.mkdir()
        self.run_command(f"mount -o loop {DEVICE} {MOUNT_POINT}")
        file = MOUNT_POINT / "file"
        file.write_text("before")
        self.assertEqual(self.auxctl("remount-ro", "--yes", str(MOUNT_POINT)), str(MOUNT_POINT))
        with self.assertRaises(OSError):
            file.write_text("after")
        self.assertEqual(file.read_text(), "before")
        self.run_command(f"umount {MOUNT_POINT}")


if __name__ == "__main__":
    unittest.main()
