#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job: the capture app, headless, scanning the
# sample clip for a claim until the first VIN is reported; then lists the claim's stored photo.
# Extra arguments go to the capture app (for example --source FILE).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/build.sh" zqt-vin-capture zqt-vin
build=${BUILD_DIR:-$root/build}
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
claim=${ZQT_CLAIM:-SAMPLE-CLAIM}
"$build/apps/zqt-vin-capture/zqt-vin-capture" --claim "$claim" --exit-on-result --timeout 120 "$@"
"$build/apps/zqt-vin/zqt-vin" photos list --claim "$claim"
