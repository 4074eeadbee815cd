#!/usr/bin/env bash
# Gives a shell, in a terminal whose application has started the Wi-Fi daemon.
"$(dirname "$0")/radio.sh"
auxctl wifi start >/dev/null
cd /root || exit
setsid --ctty --wait bash --login </dev/ttyAMA0 >/dev/ttyAMA0 2>&1
