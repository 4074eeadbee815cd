#!/usr/bin/env bash
# Builds the API reference from the public headers, their examples and the pages of docs; a warning, a
# dead link or a function without an example is an error: docs.sh [DIRECTORY]
set -euo pipefail
AUX_OUTPUT=$(realpath -m -- "${1:-build/docs}")
cd "$(dirname "$0")/.."
type dot doxygen >/dev/null 2>&1 || scripts/bootstrap doxygen graphviz # a package is built without asking
AUX_VERSION=$(sed -n 's/^project(libaux VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
export AUX_VERSION AUX_OUTPUT
rm -rf "$AUX_OUTPUT"
mkdir -p "$AUX_OUTPUT"
# The same pages from any directory whose path is in ASCII; in another one the headers are named with it.
doxygen - <<END
$(cat docs/Doxyfile)
INPUT = $(LC_ALL=C && echo docs/*.md include/aux/*.h)
STRIP_FROM_PATH = "$PWD/include" "$PWD"
STRIP_FROM_INC_PATH = "$PWD/include"
END
scripts/check-reference "$AUX_OUTPUT"
echo "$AUX_OUTPUT/html/index.html"
