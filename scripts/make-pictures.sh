#!/usr/bin/env bash
# Takes the pictures of the documents anew from the running program, without a screen.
#   scripts/make-pictures.sh [PLAYER]     a player that is built already; otherwise it is built
# Looks at nothing by itself: see docs/images before committing.
set -euo pipefail
cd "$(dirname "$0")/.."
player=${1:-}

scripts/install-dependencies.sh
. scripts/lib/headless.sh
quiet_environment
start_display 1280x800x24
if [ -z "$player" ]; then
  cmake --preset release >"$headless_folder/configure.log" 2>&1 ||
    { cat "$headless_folder/configure.log"; exit 1; }
  cmake --build build/release --target orbilens-player -- -j "$(nproc)"
  player=build/release/src/app/orbilens-player
fi
# Nobody's settings, and nobody's name in a picture.
export HOME=$headless_folder XDG_CONFIG_HOME=$headless_folder XDG_DATA_HOME=$headless_folder
openbox 2>/dev/null &
window_manager=$!
trap 'kill "$window_manager" 2>/dev/null; stop_display' EXIT

running=
window=
start() { # arguments of the player
  "$player" "$@" >>"$headless_folder/player.log" 2>&1 &
  running=$!
  window=
  for _ in $(seq 200); do
    window=$(xdotool search --onlyvisible --name '^Orbilens Player' 2>/dev/null | tail -1 || true)
    [ -n "$window" ] && break
    sleep 0.1
  done
  [ -n "$window" ] || { echo "No window came."; exit 1; }
  xdotool windowactivate --sync "$window" mousemove --window "$window" 500 250
  sleep 4
}
finish() {
  xdotool windowactivate --sync "$window" key alt+F4
  wait "$running"
}
keys() {
  for key in "$@"; do
    xdotool key "$key"
    sleep 0.4
  done
}
picture() { # name
  sleep 1.5
  import -window "$window" -quality 88 "docs/images/$1.jpg"
}

start
picture start-screen
keys ctrl+o
picture open-media
keys ctrl+o ctrl+comma
picture settings
finish

start samples/panorama.jpg
keys minus minus minus
xdotool mousemove --window "$window" 500 570
picture player
xdotool mousemove --window "$window" 500 250
keys z Return
picture little-planet
keys Return s
picture stereoscopy
keys s h
picture debug-information
finish

start samples/turning.mp4
keys space
xdotool mousemove --window "$window" 620 535
picture film
finish

start samples/samples.orpl
xdotool mousemove --window "$window" 500 570
picture playlist
finish
ls -l docs/images
