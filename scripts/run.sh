#!/usr/bin/env bash
# From a fresh machine to playing: installs, builds and opens MEDIA (the sample panorama if none
# is named). Without a display it runs under an X server of its own for a few seconds and leaves a
# screenshot.  Usage: scripts/run.sh [media...]
set -euo pipefail

media=()
for file in "$@"; do
  # Paths are the caller's, who may stand in another folder; stream addresses stay as they are.
  if [ -e "$file" ]; then media+=("$(realpath "$file")"); else media+=("$file"); fi
done
cd "$(dirname "$0")/.."
[ ${#media[@]} -gt 0 ] || media=("$PWD/samples/panorama.jpg")

scripts/install-dependencies.sh run
log=$(mktemp)
cmake --preset release >"$log" 2>&1 || { cat "$log"; exit 1; }
rm -f "$log"
cmake --build build/release --target orbilens-player -- -j "$(nproc)"
player=build/release/src/app/orbilens-player

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$player" "${media[@]}"
fi

. scripts/lib/headless.sh
quiet_environment
start_display 1280x720x24
"$player" "${media[@]}" &
player_pid=$!
sleep "${ORBILENS_SCREENSHOT_DELAY:-6}"
kill -0 "$player_pid" 2>/dev/null || { wait "$player_pid"; exit 1; }
mkdir -p build/screenshots
screenshot=$PWD/build/screenshots/run.png
import -window root "$screenshot"
kill "$player_pid"
wait "$player_pid" 2>/dev/null || true
echo "There is no display, so the player ran without one. What it showed: $screenshot"
