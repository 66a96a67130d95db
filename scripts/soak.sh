#!/usr/bin/env bash
# Drives the player for MINUTES (60) through playlists, seeks, projections, window sizes and popups,
# and fails when memory, threads, open files or GL objects grow, or when anything is complained of.
#   scripts/soak.sh [MINUTES]
set -euo pipefail
cd "$(dirname "$0")/.."
export ORBILENS_SOAK_MINUTES=${1:-60}

scripts/install-dependencies.sh
. scripts/lib/headless.sh
quiet_environment
start_display
export QSG_RENDER_LOOP=basic

cmake --preset dev >"$headless_folder/configure.log" 2>&1 ||
  { cat "$headless_folder/configure.log"; exit 1; }
cmake --build build/dev -j "$(nproc)" --target soak_tests
nice -n 19 build/dev/src/app/soak_tests
