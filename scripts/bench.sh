#!/usr/bin/env bash
# Builds the benchmarks, runs them without a screen, and prints one table of ratios: each variant
# against the baseline of its subject, measured alternately in the same run.
#   scripts/bench.sh [FILTER]             only benchmarks whose program's name contains FILTER
#   scripts/bench.sh --players [SECONDS]  the player beside mpv and VLC, which it installs; each
#                                         plays for SECONDS (60)
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
. scripts/lib/headless.sh
quiet_environment
export QSG_RENDER_LOOP=basic
target=benchmarks
if [ "${1:-}" = --players ]; then
  target=orbilens-player
  scripts/install-dependencies.sh players
  mkdir "$headless_folder/framebuffer"
  start_display 1280x720x24 -noreset -fbdir "$headless_folder/framebuffer"
else
  start_display
fi

cmake --preset dev >"$headless_folder/configure.log" 2>&1 ||
  { cat "$headless_folder/configure.log"; exit 1; }
cmake --build build/dev -j "$(nproc)" --target "$target"

results=$headless_folder/bench
# What the programs keep and write belongs to nobody.
export HOME=$headless_folder/home XDG_CONFIG_HOME= XDG_DATA_HOME= XDG_CACHE_HOME=
mkdir -p "$results" "$HOME"

if [ "$target" = orbilens-player ]; then
  chmod -R a+rwX "$headless_folder" # VLC runs as another user than root
  FRAMEBUFFER=$headless_folder/framebuffer/Xvfb_screen0 python3 bench/players.py \
    build/dev/src/app/orbilens-player samples/turning.mp4 "${2:-60}"
  exit
fi

for program in build/dev/bench/*_bench; do
  case "$program" in *"${1:-}"*) ;; *) continue ;; esac
  "$program" --benchmark_out="$results/$(basename "$program").json" --benchmark_out_format=json \
    --benchmark_repetitions=15 --benchmark_min_time=0.1 \
    --benchmark_enable_random_interleaving=true >"$results/log" 2>&1 ||
    { cat "$results/log"; exit 1; }
done
python3 bench/ratios.py "$results"/*.json
