# SPDX-License-Identifier: MIT
"""What the tests of the installed auxctl share: running it, and a /data of their own."""

import functools
import json
import os
import pathlib
import pty
import re
import shutil
import subprocess
import unittest

import jsonschema

AUXCTL = os.environ["AUXCTL"]
DATA = pathlib.Path("/data")
TMP = pathlib.Path("/tmp")
NEW = DATA / "zel/rk4/new"
ARCHIVE = DATA / "zel/rk4/archive"
# What is there from the start: the checkout may be below it.
SHOWN = {place: os.listdir(place) for place in (DATA, TMP)}
SETTINGS = DATA / "config/aux/terminal.JSON"


@functools.lru_cache
def schema():
    published = json.loads(subprocess.run([AUXCTL, "schema"], capture_output=True, check=True).stdout)
    jsonschema.Draft202012Validator.check_schema(published)
    return published


def validate(document, words):
    """Fails where it has not the shape that auxctl publishes for the command, or an error."""
    names = [" ".join(map(str, words[:count])) for count in (1, 2, 3)]
    shapes = [shape for name, shape in schema()["$defs"].items() if name in (*names, "error")]
    jsonschema.validate(document, {**schema(), "anyOf": shapes})


class World(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        for entry in DATA.iterdir():
            if entry.name not in SHOWN[DATA]:
                shutil.rmtree(entry)
        for directory in (NEW, ARCHIVE, SETTINGS.parent):
            directory.mkdir(parents=True)
        self.work = TMP / "work"
        shutil.rmtree(self.work, ignore_errors=True)
        self.work.mkdir()

    def auxctl(self, *arguments, status=0, given=b"", **options):
        """Runs it; its standard output as text, its standard error in self.errors."""
        result = subprocess.run([AUXCTL, *map(str, arguments)], input=given, capture_output=True,
                                timeout=60, check=False, **options)
        self.raw, self.errors = result.stdout, result.stderr.decode()
        self.assertEqual(result.returncode, status, f"{arguments}: {self.errors}")
        return self.raw.decode(errors="replace")

    def json(self, *arguments, **options):
        """The one document that --json prints, which has the shape that auxctl publishes."""
        document = json.loads(self.auxctl(*arguments, "--json", **options))
        validate(document, arguments)
        return document

    def on_terminal(self, *arguments, answer="", environment=None, prefix=()):
        """Runs it on a terminal of its own, one line of the answer to each question; exit status and
        everything that was shown."""
        child, terminal = pty.fork()
        if child == 0:
            try:
                command = list(map(str, (*prefix, AUXCTL, *arguments)))
                os.execvpe(command[0], command, {**os.environ, **(environment or {})})
            finally:
                os._exit(127)
        lines = answer.encode().splitlines(keepends=True)
        shown = b""
        while True:
            try:
                shown += os.read(terminal, 4096)
            except OSError:  # the other side is closed
                break
            if lines and shown.endswith((b": ", b"[y/N] ")):
                os.write(terminal, lines.pop(0))
        return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), shown.decode()
