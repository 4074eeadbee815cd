# SPDX-License-Identifier: MIT
"""Prints docs/auxctl.md: every command, called well and wrongly, with what it really prints."""

import json
import os
import pathlib
import re
import subprocess

FAKES = pathlib.Path(__file__).resolve().parent.parent / "tests/fakes"
INTRODUCTION = """# auxctl, command by command

Every line that begins with `$` was typed where no data directory was there yet, what follows is what
came back, on standard output and standard error. An exit status that is not 0 stands in brackets. It
was a private world without a radio, in which nobody may set the clock.
`scripts/auxctl-document` makes this page.
"""

COMMANDS = (
    ("Help", (
        "auxctl",
        "auxctl -V",
        "auxctl config",
        "auxctl help config set",
        "auxctl conifg show",
        "auxctl container verify -h.bin",
        "auxctl complete --current /network/da -- config set",
        "auxctl complete",
        "auxctl complete --current",
        "auxctl completion fish | head -2",
        "auxctl completion tcsh",
        "auxctl help nonsense",
        "auxctl manual | head -3",
        "auxctl manual page",
        "auxctl schema | json-names",
        "auxctl schema info",
    )),
    ("Settings", (
        "auxctl config path",
        "auxctl config path terminal",
        "auxctl config set network/dataport=8080 device/lang=de_DE network/wifi/psk=secret",
        "auxctl config set network/datport=1",
        "auxctl config set network/dataport=9000",
        "auxctl config set device/audio=yes",
        "auxctl config get network/dataport",
        "auxctl config get network/wifi",
        "auxctl config show network/dataport network/wifi/psk device/audio",
        "auxctl config show network/wifi/psk --json",
        "auxctl config show network/wifi/psk --reveal",
        "auxctl config show network",
        "auxctl config changed network",
        "auxctl config changed screensaver",
        "auxctl config get device/lang --app aux/termnal",
        "auxctl config export --reveal candidate",
        "auxctl config validate candidate",
        "sed -i 's/8080/9000/; s/true/\"yes\"/' candidate",
        "auxctl config validate candidate",
        "auxctl config apply candidate",
        "auxctl config export --reveal --force candidate",
        "auxctl config export candidate",
        "auxctl config unset network/dataport",
        "auxctl config unset network/datport",
        "auxctl config diff candidate",
        "auxctl config apply candidate --dry-run",
        "auxctl container pack candidate candidate.bin --type CFGF",
        "auxctl config apply candidate.bin",
        "auxctl config diff candidate",
        "auxctl config reset network --yes",
        "auxctl config reset",
        "auxctl config schema | head -3",
        "auxctl config schema network",
    )),
    ("Containers", (
        "auxctl container pack card.ddd card.bin",
        "auxctl container pack card.ddd card.bin",
        "auxctl container pack card.ddd other.bin --type foo",
        "auxctl container info card.bin",
        "auxctl container info card.ddd",
        "cp card.bin damaged.bin && printf x | dd of=damaged.bin bs=1 seek=60 conv=notrunc status=none",
        "auxctl container verify card.bin damaged.bin card.ddd",
        "auxctl container verify card.bin --json",
        "auxctl container unpack card.bin",
        "auxctl container unpack card.bin --name copy.ddd",
        "auxctl container unpack card.bin - | cmp - card.ddd",
    )),
    ("Files", (
        "auxctl files list new",
        "auxctl files init",
        "auxctl files init new",
        "auxctl files name new",
        "auxctl files name nwe",
        "cp card.bin /data/zel/rk4/new && cp damaged.bin /data/zel/rk4/archive/card.bin",
        "auxctl files list new",
        "auxctl files list arhive",
        "auxctl files count new",
        "auxctl files count all",
        "timeout 1.5 auxctl files count new --watch",
        "auxctl files free new 1M",
        "auxctl files free new 9000000G",
        "auxctl files checksum card.ddd copy.ddd",
        "auxctl files checksum card.ddd missing.ddd",
        "auxctl files checksum card.ddd copy.ddd | auxctl files verify --list -",
        "auxctl files verify card.ddd 00",
        "auxctl files verify missing.ddd 00",
        "auxctl files move new archive card.bin",
        "auxctl files move new archive card.bin --checksum 00 --name other.bin",
        "auxctl files move new archive card.bin --name other.bin",
        "auxctl container verify archive",
        "auxctl files reset",
        "auxctl files reset --yes",
    )),
    ("Keys and messages", (
        "auxctl key protect pair.gpg --passphrase-file secret > protected",
        "auxctl key protect pair.gpg",
        "auxctl key reveal protected revealed --passphrase-file secret",
        "auxctl key reveal protected nonsense --passphrase-file card.ddd",
        "auxctl key reveal protected nonsense --passphrase-file other",
        "auxctl pgp encrypt card.bin card.gpg",
        "auxctl pgp import card.ddd",
        "auxctl pgp import revealed",
        "auxctl pgp encrypt card.bin card.gpg",
        "auxctl pgp decrypt card.gpg plain --passphrase-file other",
        "auxctl pgp decrypt card.gpg plain --passphrase-file secret",
        "auxctl pgp decrypt card.gpg - --passphrase-file secret | auxctl container verify -",
        "auxctl pgp decrypt card.ddd - --passphrase-file secret",
        "auxctl pgp remove",
        "auxctl pgp remove key",
    )),
    ("Signatures", (
        "auxctl pgp trust list",
        "gpg --armor --export terminal > server.asc",
        "auxctl pgp trust add candidate.bin",
        "auxctl pgp trust add server.asc",
        "auxctl pgp trust list server",
        "auxctl config apply candidate.bin",
        "auxctl pgp sign candidate.bin --passphrase-file secret",
        "auxctl pgp import pair.gpg",
        "auxctl pgp sign candidate.bin --passphrase-file secret",
        "auxctl pgp remove",
        "auxctl pgp verify candidate.bin",
        "auxctl config apply candidate.bin --dry-run",
        "auxctl pgp verify card.bin candidate.bin.sig --keyring server.asc",
        "auxctl container verify card.bin --keyring server.asc",
        "auxctl pgp trust remove 0",
        "auxctl pgp trust list | awk '/good/ { print $1 }' > fingerprint",
        "auxctl pgp trust remove $(cat fingerprint)",
        "auxctl pgp trust remove $(cat fingerprint) --last",
    )),
    ("System", (
        "auxctl link lo",
        "auxctl link nope0",
        "auxctl link wlan0",
        "auxctl wifi status",
        "auxctl wifi scan",
        "auxctl wifi stop",
        "auxctl wifi start",
        "auxctl wifi start now",
        "auxctl wifi status",
        "auxctl wifi scan",
        "auxctl wifi kill",
        "auxctl wifi kill --yes",
        "auxctl wifi start >/dev/null 2>&1",
        "auxctl wifi stop",
        "auxctl clock set tomorrow --yes",
        "auxctl clock set 2026-01-31T12:00:00Z --yes",
        "mkdir stick && mount -t ramfs stick stick",
        "auxctl remount-ro $PWD/stick --yes",
        "touch stick/file",
        "auxctl remount-ro '/x; reboot' --yes",
        "auxctl info --json | json-names",
        "auxctl info eth0",
        "auxctl report --json | json-names",
        "auxctl report report.json",
        "auxctl report report.json",
        "auxctl country 13",
        "auxctl country D",
        "auxctl crc32 card.ddd",
        "auxctl crc32 .",
    )),
)

# Prints the names at the top of a document, for what is long or differs between machines.
KEYS = """#!/usr/bin/python3
import json, sys
document = json.load(sys.stdin)
for name in document:
    inner = document[name]
    print(name + ":", ", ".join(inner) if isinstance(inner, dict) else "...")
"""


def run(line, work, environment, statuses):
    ended = subprocess.run(["bash", "-c", line], cwd=work, env=environment, stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    told = re.sub(r"[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}", "0d9f8e4c-6b1a-4c57-9d3e-2f60a1b7c8d5", ended.stdout)
    told = re.sub(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", "2026-01-31T12:00:00Z", told)
    told = re.sub(r"\b[0-9A-F]{40}\b", "8F3A1C05D2B94E67A0F1C3D5E7B9024681ACE357", told)
    told = told if not told or told.endswith("\n") else told + "\n"
    statuses.append((line, ended.returncode))
    return f"$ {line}\n{told}" + (f"[{ended.returncode}]\n" if ended.returncode else "")


def make_radio():
    """An interface of the radio's name, and the daemon's own program to answer for it."""
    subprocess.run(["sh", "-ec", """
        ip link add wlan0 type veth peer name peer
        ip link set wlan0 up
        ip link set peer up
        mkdir /run/real
        cp /usr/sbin/wpa_supplicant /run/real
        mount --bind "$1/wpa_supplicant" /usr/sbin/wpa_supplicant
        rm -f /etc/wpa_supplicant.conf
    """, "sh", FAKES], check=True)
    pathlib.Path("/etc/wpa_supplicant.conf").write_text("ctrl_interface=/var/run/wpa_supplicant\n")


def make_key(work):
    """A key pair, as a server has it."""
    gpg = ["gpg", "--homedir", work.parent / "server", "--batch", "--quiet", "--pinentry-mode", "loopback",
           "--passphrase", "secret"]
    (work.parent / "server").mkdir(mode=0o700)
    subprocess.run([*gpg, "--quick-generate-key", "terminal", "future-default"], check=True, capture_output=True)
    subprocess.run([*gpg, "--output", work / "pair.gpg", "--export-secret-keys", "terminal"], check=True)


def check_completeness(statuses, environment):
    """Fails where a command is never called well, or never wrongly."""
    schema = json.loads(subprocess.run(["auxctl", "schema"], env=environment, capture_output=True, check=True).stdout)
    for command in schema["$defs"]:
        ends = [code == 0 for line, code in statuses if f"auxctl {command}" in line]
        if not command.startswith("-") and command not in ("error", "clock set") and len(set(ends)) < 2:
            raise SystemExit(f"docs/auxctl.py shows no good or no wrong call of {command}")


def main():
    work = pathlib.Path("/tmp/work")
    tools = pathlib.Path("/tmp/tools")
    work.mkdir()
    tools.mkdir()
    (tools / "json-names").write_text(KEYS)
    (tools / "json-names").chmod(0o755)
    (work / "card.ddd").write_bytes(bytes(range(256)) * 100)
    (work / "secret").write_text("secret\n")
    (work / "other").write_text("other\n")
    make_key(work)
    make_radio()
    environment = {**os.environ, "PATH": f"{tools}:{os.path.dirname(os.environ['AUXCTL'])}:{os.environ['PATH']}",
                   "GNUPGHOME": "/tmp/server", "LC_ALL": "C.UTF-8"}
    statuses = []
    print(INTRODUCTION, end="")
    for title, lines in COMMANDS:
        told = "".join(run(line, work, environment, statuses) for line in lines)
        print(f"\n## {title}\n\n```console\n{told}```")
    check_completeness(statuses, environment)


if __name__ == "__main__":
    main()
