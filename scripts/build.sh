#!/usr/bin/env bash
# Installs what is missing and builds the project into build/ (or the folder in $BUILD_DIR).
# Arguments name the targets to build; none builds everything.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
bash "$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -G "Unix Makefiles" -DCMAKE_BUILD_TYPE=RelWithDebInfo ${CMAKE_ARGS:-} >/dev/null
targets=()
for target in "$@"; do targets+=(--target "$target"); done
cmake --build "$build" -j"$(nproc)" "${targets[@]}"
