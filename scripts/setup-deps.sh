#!/usr/bin/env bash
# Installs the Debian 12 packages pavo needs to build, test and run.
# Does nothing when they are all present.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config python3
  libfmt-dev libsimdjson-dev rapidjson-dev libutfcpp-dev libcli11-dev libedit-dev nlohmann-json3-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  qtbase5-dev qttools5-dev
  clang libclang-rt-14-dev
)

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
