#!/usr/bin/env bash
# Installs every Debian package the project needs to build, run and test.
# Idempotent: when everything is present it only runs dpkg-query and exits.
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  qt6-base-dev qt6-multimedia-dev qt6-positioning-dev libqt6positioning6-plugins qt6-tools-dev qt6-tools-dev-tools
  qt6-qpa-plugins libqt6svg6 qt6-svg-dev qt6-image-formats-plugins
  libzxing-dev libplist-dev libplist++-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-libav gstreamer1.0-tools
  libfontconfig-dev fonts-dejavu-core fonts-liberation2
  attr zbar-tools libzbar-dev
  libopencv-dev
  libtesseract-dev tesseract-ocr-eng fonts-ocr-b
  xvfb xdotool
  clang libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "install-deps: installing ${missing[*]}" >&2
sudo=""
if [ "$(id -u)" -ne 0 ]; then
  sudo="sudo"
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "install-deps: done" >&2
