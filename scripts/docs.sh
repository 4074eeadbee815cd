#!/usr/bin/env bash
# Builds the API reference from the public headers; a warning is an error.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/bootstrap doxygen
AUX_VERSION=$(sed -n 's/^project(libaux VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
AUX_OUTPUT=build/docs
export AUX_VERSION AUX_OUTPUT
mkdir -p "$AUX_OUTPUT"
doxygen docs/Doxyfile
echo "$AUX_OUTPUT/html/index.html"
