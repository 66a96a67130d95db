#!/usr/bin/env bash
# From a fresh machine to a green suite: installs, builds, and runs every test without a screen.
#   scripts/test.sh             the whole suite, then the folders without GL under sanitizers,
#                               then each fuzz target over its corpus
#   scripts/test.sh --asan      every suite under address and undefined sanitizers
#   scripts/test.sh --tsan      the suites with threads under the thread sanitizer
#   scripts/test.sh --slow      the long runs too (label slow)
#   scripts/test.sh --share     lines of tests against lines of code
# Further arguments go to ctest, for example: scripts/test.sh -R render
set -euo pipefail
cd "$(dirname "$0")/.."

mode=all
case "${1:-}" in
  --help) sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"; exit 0 ;;
  --asan|--tsan|--slow|--share) mode=${1#--}; shift ;;
esac

count_lines() {
  git ls-files -z -- "$@" | xargs -0 -r cat | grep -cvE '^[[:space:]]*(//.*|\*.*|/\*.*)?$' || true
}
if [ "$mode" = share ]; then
  code=$(count_lines 'src/*.cpp' 'src/*.h' 'src/*.qml' 'src/*.js')
  tests=$(count_lines 'tests/*.cpp' 'tests/*.h' 'tests/*.qml' 'tests/*.js')
  echo "Tests: $tests lines, code: $code lines, share $((100 * tests / (code > 0 ? code : 1)))%"
  exit 0
fi

scripts/install-dependencies.sh
. scripts/lib/headless.sh
quiet_environment
start_display
jobs=$(nproc)

build() { # preset, target
  cmake --preset "$1" >"$headless_folder/configure.log" 2>&1 ||
    { cat "$headless_folder/configure.log"; return 1; }
  cmake --build "build/$1" -j "$jobs" --target "${2:-all}" --
}
suite() { # preset, further ctest arguments
  local preset=$1
  shift
  ctest --test-dir "build/$preset" --output-on-failure -j "$jobs" "$@"
}

# Suppressions name system libraries only; each entry says why.
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1
export LSAN_OPTIONS=suppressions=$PWD/scripts/lib/lsan.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1
# Qt is not instrumented: its own threads would be reported for locks that cannot be seen.
export TSAN_OPTIONS=suppressions=$PWD/scripts/lib/tsan.supp:ignore_noninstrumented_modules=1

case "$mode" in
  asan) build asan; suite asan -LE slow "$@" ;;
  tsan) build tsan; suite tsan -L threads "$@" ;;
  slow) build dev; suite dev "$@" ;;
  all)
    build dev
    build asan screenless
    # The fuller run comes last, so that its summary closes the log.
    suite asan -L unit -LE 'gl|qml|media|slow' --repeat until-pass:2 "$@"
    scripts/fuzz.sh 0
    # What draws and plays shares two processors with the rest; a second try tells a fault from
    # starvation.
    suite dev -LE slow --repeat until-pass:2 "$@"
    ;;
esac
