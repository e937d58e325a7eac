#!/usr/bin/env bash
# Installs the Debian 12 packages pavo needs to build, test and run.
# Does nothing when they are all present. With --screenshots, also what
# scripts/dialog-screenshot.sh needs.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config python3
  libfmt-dev libsimdjson-dev rapidjson-dev libutfcpp-dev libcli11-dev libedit-dev nlohmann-json3-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  qtbase5-dev qttools5-dev
  # Pictures: SVG output, the font of texts, PNG compression, and pdfinfo to check PDFs in tests.
  libqt5svg5-dev fonts-dejavu-core zlib1g-dev poppler-utils
  clang libclang-rt-14-dev
)
# An X server without a screen, for pictures of dialogs as a display shows them.
screenshot_packages=(xvfb)
[ "${1:-}" = "--screenshots" ] && packages+=("${screenshot_packages[@]}")

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
