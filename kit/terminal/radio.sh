#!/usr/bin/env bash
# Gives the terminal a cable in eth0 and two access points in reach of wlan0. The other end of the
# cable and the access points are in network namespaces of their own, "lan" and "air".
set -e
modprobe veth
modprobe mac80211_hwsim radios=3
mkdir -p /run/netns
ip netns add lan
ip netns add air
ip link add eth0 address 02:00:00:0e:44:ab type veth peer name cable netns lan
ip address add 192.0.2.1/24 dev eth0
ip link set eth0 up
ip -n lan link set cable up
for radio in 1 2; do
    iw phy "phy$radio" set netns name air
done
ip netns exec air hostapd -B /etc/hostapd/protected.conf /etc/hostapd/open.conf >/dev/null
/usr/lib/systemd/systemd-udevd --daemon 2>/dev/null
udevadm trigger
udevadm settle
