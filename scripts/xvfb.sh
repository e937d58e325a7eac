# Sourced by the picture scripts: starts Xvfb on a free display with a
# screen of ${XVFB_SCREEN:-1024x768x24}, sets `display`, `server` and a
# temporary folder `work`, and stops the server and removes the folder when
# the script exits.
display=99
while [ -e "/tmp/.X11-unix/X$display" ] || [ -e "/tmp/.X$display-lock" ]; do display=$((display + 1)); done
Xvfb ":$display" -screen 0 "${XVFB_SCREEN:-1024x768x24}" -nolisten tcp > /dev/null 2>&1 &
server=$!
work=$(mktemp -d)
trap 'kill "$server" 2> /dev/null || true; rm -rf "$work"' EXIT
for _ in $(seq 100); do
  [ -e "/tmp/.X11-unix/X$display" ] && break
  kill -0 "$server" 2> /dev/null || { echo "Xvfb did not start" >&2; exit 1; }
  sleep 0.1
done
