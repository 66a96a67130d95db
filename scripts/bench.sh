#!/usr/bin/env bash
# Builds the benchmarks, runs them without a screen, and prints one table of ratios: each variant
# against the baseline of its subject, measured alternately in the same run.
#   scripts/bench.sh [FILTER]     only benchmarks whose program's name contains FILTER
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
. scripts/lib/headless.sh
quiet_environment
start_display
export QSG_RENDER_LOOP=basic

cmake --preset dev >"$headless_folder/configure.log" 2>&1 ||
  { cat "$headless_folder/configure.log"; exit 1; }
cmake --build build/dev -j "$(nproc)" --target benchmarks

results=$headless_folder/bench
mkdir -p "$results"
for program in build/dev/bench/*_bench; do
  case "$program" in *"${1:-}"*) ;; *) continue ;; esac
  "$program" --benchmark_out="$results/$(basename "$program").json" --benchmark_out_format=json \
    --benchmark_repetitions=15 --benchmark_min_time=0.1 \
    --benchmark_enable_random_interleaving=true >"$results/log" 2>&1 ||
    { cat "$results/log"; exit 1; }
done
python3 bench/ratios.py "$results"/*.json
