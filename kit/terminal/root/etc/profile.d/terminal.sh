# shellcheck shell=bash
PS1='terminal:\w\$ '
cat <<'END'

A terminal in a box. Try: auxctl info, auxctl wifi scan, auxctl wifi status, auxctl config show.
The cable of eth0:       ip -n lan link set cable down
The access points:       killall hostapd
Switch it off with exit; without asking: Ctrl-A X. What is in /data stays.

END
