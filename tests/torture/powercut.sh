#!/usr/bin/env bash
# Cuts the power at the moment a settings write has returned: powercut.sh SETTINGS_PROGRAM AUXCTL
#
# The settings are on an ext4 image; what its backing file holds at that moment is what a machine
# would find after the cut.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/common.sh"
# Writes a setting, takes the copy, and looks for a line in it.
cut_after() { # OPERATION VALUE LINE
    local found=lost
    on_image bash -c '"$@" 2>/dev/null && cp image copy' - "$settings" power "$1" "$2"
    mount -o loop copy after
    ! grep -q "^ *$3,\?$" after/config/power/terminal.JSON 2>/dev/null || found=survived
    umount after
    echo "$1: $3 $found the power cut"
    [ "$found" = survived ]
}

mount_image -I 256
status=0
cut_after set first '"lang": "first"' || status=1 # makes the file and its directories
cut_after set second '"lang": "second"' || status=1
cut_after commit third '"config_changes": 1' || status=1
cut_after rollback fourth '"lang": "third"' || status=1
cut_after apply fifth '"lang": "fifth"' || status=1
exit "$status"
