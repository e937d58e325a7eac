#!/usr/bin/env bash
# Takes the README's picture of the SETBYLAYER settings dialog as a real X
# server shows it: starts Xvfb (installed with apt-get when missing) on a
# free display, runs pavo on the sample drawing with a script that opens the
# dialog and saves its picture (@shot), and stops the server.
#   scripts/dialog-screenshot.sh [OUT.png]   (default docs/images/setbylayer-dialog.png)
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(realpath -m "${1:-docs/images/setbylayer-dialog.png}")
scripts/setup-deps.sh --screenshots
cmake --preset release > /dev/null
cmake --build --preset release --target pavo

source scripts/xvfb.sh

mkdir -p "$(dirname "$out")"
printf 'SETBYLAYER\nSettings\n@shot %s\n@cancel\n^C\n' "$out" > "$work/shot.scr"
# The user's own settings (SETBYLAYERMODE) are neither read nor changed.
env -u QT_QPA_PLATFORM -u WAYLAND_DISPLAY DISPLAY=":$display" XDG_CONFIG_HOME="$work" \
  build/release/bin/pavo --script "$work/shot.scr"
echo "Saved $out"
