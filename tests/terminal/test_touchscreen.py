# SPDX-License-Identifier: MIT
"""A touchscreen that comes and goes, made by the kernel's uinput and classed by udev."""

import contextlib
import fcntl
import os
import struct
import unittest

from terminal import Terminal

# <linux/uinput.h>: request and value
EVENTS, KEYS, AXES, PROPERTIES, CREATE = 0x40045564, 0x40045565, 0x40045567, 0x4004556E, 0x5501
TOUCHSCREEN = ((EVENTS, 1), (EVENTS, 3), (KEYS, 0x14A), (AXES, 0), (AXES, 1), (PROPERTIES, 1))


@contextlib.contextmanager
def touchscreen():
    device = os.open("/dev/uinput", os.O_WRONLY)
    for request, value in TOUCHSCREEN:
        fcntl.ioctl(device, request, value)
    largest, others = [1000, 1000], [0] * (4 * 64 - 2)
    os.write(device, struct.pack("80s4HI256i", b"touchscreen", 3, 1, 1, 1, 0, *largest, *others))
    fcntl.ioctl(device, CREATE)
    yield
    os.close(device)


# libaux waits two seconds for the list of all devices, which is what the emulated processor takes.
# The consoles and the empty slots of this kind of machine are most of them.
FEWER_DEVICES = """
mount -t tmpfs none /sys/class/tty && mount -t tmpfs none /sys/bus/platform/devices && exec "$@"
"""
WITH_FEWER_DEVICES = ("unshare", "--mount", "sh", "-c", FEWER_DEVICES, "sh")


class Touchscreen(Terminal):
    def is_detected(self):
        return self.auxctl("info", within=WITH_FEWER_DEVICES)["touchscreen"]

    def test_comes_and_goes(self):
        self.run_command("modprobe uinput")
        self.run_command("udevadm settle")
        self.assertIs(self.is_detected(), False)
        with touchscreen():
            self.becomes(True, self.is_detected)
        self.becomes(False, self.is_detected)


if __name__ == "__main__":
    unittest.main()
