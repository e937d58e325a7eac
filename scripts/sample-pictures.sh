#!/usr/bin/env bash
# Makes the README's pictures of the sample drawing: model space and its two
# layouts "A1 Plan" and "A3 Detail", as they show (EXPORT, viewport borders
# drawn), before and after the VPLAYER session docs/examples/viewports.scr.
#   scripts/sample-pictures.sh [FOLDER] [PAVO]
# FOLDER: where the PNGs go (default docs/images); PAVO: the pavo to run
# (default: a release build, built here).
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(realpath -m "${1:-docs/images}")
pavo=${2:-}
if [ -z "$pavo" ]; then
  scripts/setup-deps.sh
  cmake --preset release > /dev/null
  cmake --build --preset release --target pavo VxLayerCmds PavoRender
  pavo=build/release/bin/pavo
fi
pavo=$(realpath "$pavo")
examples=$(realpath docs/examples)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$out"

# The user's own settings are neither read nor changed.
export XDG_CONFIG_HOME="$work"
pictures() { # DRAWING SUFFIX
  "$pavo" "$1" --export "$out/sample-model$2.png" --layout Model --width 1200 --no-dialogs
  "$pavo" "$1" --export "$out/sample-a1-plan$2.png" --layout "A1 Plan" --width 1200 --no-dialogs
  "$pavo" "$1" --export "$out/sample-a3-detail$2.png" --layout "A3 Detail" --width 1200 --no-dialogs
}

# Before: the sample as pavo embeds it.
"$pavo" --new --script /dev/null > /dev/null # fails early when pavo cannot run
(cd "$work" && printf 'SAVEAS\nsample.pvd\nQUIT\n' | "$pavo" > /dev/null)
pictures "$work/sample.pvd" ""
# After: viewports.scr saves its result as viewports.pvd in the folder it runs in.
(cd "$work" && "$pavo" --script "$examples/viewports.scr" > /dev/null)
pictures "$work/viewports.pvd" "-after-vplayer"
echo "Pictures written to $out"
