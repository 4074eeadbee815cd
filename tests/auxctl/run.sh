#!/usr/bin/env bash
# Installs the tool to a staging prefix and tests it as a user would: run.sh CMAKE BUILD_DIR TEST
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
for component in Runtime Tools; do
    "$1" --install "$2" --prefix "$stage" --component "$component" >/dev/null
done
export AUXCTL=$stage/bin/auxctl LD_LIBRARY_PATH PYTHONDONTWRITEBYTECODE=1
LD_LIBRARY_PATH=$(dirname "$(find "$stage" -name libaux.so.1)")
/usr/bin/python3 "$here/$3.py" --verbose
