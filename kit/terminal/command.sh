#!/usr/bin/env bash
# Runs the command beside, in a terminal with a cable and a radio.
here=$(dirname "$0")
"$here/radio.sh"
bash -c "$(<"$here/command")"
echo "exit status $?"
