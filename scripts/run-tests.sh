#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite; fails when any test fails.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/build.sh"
build=${BUILD_DIR:-$root/build}
cd "$build"
ctest -j"$(nproc)" --output-on-failure --timeout 300
echo "Rendered screens and other test artifacts: $build/test-artifacts"
