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

display=99
while [ -e "/tmp/.X11-unix/X$display" ] || [ -e "/tmp/.X$display-lock" ]; do display=$((display + 1)); done
Xvfb ":$display" -screen 0 1024x768x24 -nolisten tcp > /dev/null 2>&1 &
server=$!
work=$(mktemp -d)
trap 'kill "$server" 2> /dev/null || true; rm -rf "$work"' EXIT
for _ in $(seq 100); do
  [ -e "/tmp/.X11-unix/X$display" ] && break
  kill -0 "$server" 2> /dev/null || { echo "Xvfb did not start" >&2; exit 1; }
  sleep 0.1
done

mkdir -p "$(dirname "$out")"
printf 'SETBYLAYER\nSettings\n@shot %s\n@cancel\n^C\n' "$out" > "$work/shot.scr"
# The user's own settings (SETBYLAYERMODE) are neither read nor changed.
env -u QT_QPA_PLATFORM -u WAYLAND_DISPLAY DISPLAY=":$display" XDG_CONFIG_HOME="$work" \
  build/release/bin/pavo --script "$work/shot.scr"
echo "Saved $out"
