#!/usr/bin/env bash
# Runs every fuzz target for SECONDS each: scripts/fuzz.sh SECONDS [target…]
# With 0 seconds the committed inputs alone are run again.
# New findings are left in build/fuzz-findings/; each becomes a file of fuzz/corpus and a test row.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:?usage: scripts/fuzz.sh SECONDS [target...]}
shift

if [ ! -f build/asan/fuzz/targets.txt ]; then
  cmake --preset asan >/dev/null
fi
cmake --build build/asan --target screenless -- >/dev/null

targets=("$@")
[ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(grep . build/asan/fuzz/targets.txt || true)

# Qt's JSON reader keeps memory for keys that stand twice, which would hide every other finding, so
# leaks are left to the suites under the address sanitizer, also at the end of a run.
export ASAN_OPTIONS=detect_leaks=0
findings=build/fuzz-findings
for target in "${targets[@]}"; do
  mkdir -p "build/fuzz-corpus/$target" "$findings/$target" "fuzz/corpus/$target"
  options=(-timeout=20 -rss_limit_mb=2048 -detect_leaks=0 -verbosity=0
    -artifact_prefix="$findings/$target/")
  if [ "$seconds" = 0 ]; then
    echo "replaying the corpus of $target"
    "build/asan/fuzz/$target" -runs=0 "${options[@]}" "fuzz/corpus/$target"
  else
    echo "fuzzing $target for $seconds s"
    # Every committed seed runs first; what is new grows in the build folder.
    "build/asan/fuzz/$target" -max_total_time="$seconds" "${options[@]}" \
      "build/fuzz-corpus/$target" "fuzz/corpus/$target"
  fi
done
