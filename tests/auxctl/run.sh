#!/usr/bin/env bash
# Installs the tool to a staging prefix and runs a script of those who use it: run.sh CMAKE BUILD_DIR SCRIPT
set -euo pipefail
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
"$1" --install "$2" --prefix "$stage" --component Tools >/dev/null
export AUXCTL=$stage/bin/auxctl PYTHONDONTWRITEBYTECODE=1
/usr/bin/python3 "$3" --verbose
