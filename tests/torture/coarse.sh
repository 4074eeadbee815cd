#!/usr/bin/env bash
# Runs a test of the settings where times are whole seconds: coarse.sh TEST_PROGRAM [ARGUMENT...]
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/common.sh"
mount_image -I 128
on_image "$@"
