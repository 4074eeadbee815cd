#!/usr/bin/env bash
# Installs the tool to a staging prefix and tests it as a user would: run.sh CMAKE BUILD_DIR TEST
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
"$1" --install "$2" --prefix "$stage" --component Tools >/dev/null
export AUXCTL=$stage/bin/auxctl PYTHONDONTWRITEBYTECODE=1
/usr/bin/python3 "$here/$3.py" --verbose
