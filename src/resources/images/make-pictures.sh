#!/usr/bin/env bash
# Renders the pictures that the scene asks for by a .png name from the vectors beside them. Run by
# hand after a change to one of them (Debian package librsvg2-bin).
set -euo pipefail
cd "$(dirname "$0")/newui"

render() { # name, width in pixels at ratio 1
  rsvg-convert --width "$2" --keep-aspect-ratio --output "$1.png" "$1.svg"
  rsvg-convert --width $((2 * $2)) --keep-aspect-ratio --output "$1@2x.png" "$1.svg"
}

render LogoWhite 320
render hand_calibration 200
