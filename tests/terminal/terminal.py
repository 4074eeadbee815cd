# SPDX-License-Identifier: MIT
"""What the tests that take a whole terminal share: its commands, and patience."""

import json
import subprocess
import time
import unittest

PATIENCE = 60  # seconds; the processor is emulated


class Terminal(unittest.TestCase):
    maxDiff = None

    def run_command(self, command):
        """Runs it; what it printed."""
        return subprocess.run(command.split(), check=True, capture_output=True, text=True).stdout

    def auxctl(self, *arguments, within=()):
        """The result under the key of the command, or the message of the failure."""
        run = subprocess.run([*within, "auxctl", *arguments, "--json"], capture_output=True,
                             timeout=PATIENCE, check=False, text=True)
        document = json.loads(run.stdout)
        if "error" in document:
            return document["error"][0]["message"]
        result, = document.values()
        return result

    def becomes(self, expected, ask, *arguments):
        """Asks until the answer is as expected."""
        end = time.monotonic() + PATIENCE
        while (answer := ask(*arguments)) != expected and time.monotonic() < end:
            time.sleep(0.5)
        self.assertEqual(answer, expected, arguments)
