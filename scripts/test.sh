#!/usr/bin/env bash
# Builds everything and runs all tests: test.sh [PRESET], a preset of CMakePresets.json.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/bootstrap
cmake --workflow --preset "${1:-dev}"
