#!/usr/bin/env bash
# Takes the README's pictures of the layer manager (LAYER) on the sample
# drawing as a real X server shows it: in model space, and in the layout
# "A3 Detail" with the columns of its viewport. Starts Xvfb (installed with
# apt-get when missing) on a free display, runs pavo with a script that
# opens the dialog and saves its picture (@shot), and stops the server.
#   scripts/layer-manager-pictures.sh [FOLDER]   (default docs/images)
# PAVO_PRESET picks the build (default release).
set -euo pipefail
cd "$(dirname "$0")/.."
folder=$(realpath -m "${1:-docs/images}")
preset=${PAVO_PRESET:-release}
scripts/setup-deps.sh --screenshots
cmake --preset "$preset" > /dev/null
cmake --build --preset "$preset" --target pavo

XVFB_SCREEN=1920x1080x24 source scripts/xvfb.sh

mkdir -p "$folder"
printf 'INITDIA\nLAYER\n@select A-FURN*\n@shot %s\n@cancel\n' "$folder/layer-manager-model.png" > "$work/model.scr"
printf 'CTAB\nA3 Detail\nINITDIA\nLAYER\n@filter A-*,E-*,M-*\n@select A-DOOR\n@shot %s\n@cancel\n' \
  "$folder/layer-manager-layout.png" > "$work/layout.scr"
for script in model layout; do
  # The user's own settings are neither read nor changed.
  env -u QT_QPA_PLATFORM -u WAYLAND_DISPLAY DISPLAY=":$display" XDG_CONFIG_HOME="$work" \
    "build/$preset/bin/pavo" --script "$work/$script.scr" > /dev/null
done
echo "Saved $folder/layer-manager-model.png and $folder/layer-manager-layout.png"
