# SPDX-License-Identifier: MIT
"""What the library costs a terminal, shown by the smallest program that links it."""

import glob
import os
import resource
import subprocess
import sys
import time

ROUNDS = 20
program = sys.argv[1]

begin = time.monotonic()
for _ in range(ROUNDS):
    subprocess.run([program], check=True)
milliseconds = (time.monotonic() - begin) / ROUNDS * 1000
kilobytes = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
(library,) = glob.glob("/usr/lib/*/libaux.so.1")
print(f"library: {os.path.getsize(library)} bytes; a program with it: {kilobytes} KiB resident,",
      f"{milliseconds:.0f} ms from start to end")
