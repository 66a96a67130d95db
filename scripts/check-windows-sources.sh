#!/usr/bin/env bash
# Checks the syntax of every *_windows.cpp under src/ with the MinGW compiler against Qt's headers;
# linking for Windows is not possible on Linux. Exit status 77, which CTest reports as skipped,
# where the compiler or Qt's headers are absent.
#   scripts/check-windows-sources.sh [BUILD]   the build folder that holds fetched sources
set -euo pipefail
cd "$(dirname "$0")/.."

compiler=x86_64-w64-mingw32-g++-posix
if ! command -v "$compiler" >/dev/null; then
  echo "Skipped: $compiler is not installed."
  exit 77
fi
qt=$(qmake -query QT_INSTALL_HEADERS 2>/dev/null || pkg-config --variable=includedir Qt5Core)
if [ ! -d "$qt/QtCore" ]; then
  echo "Skipped: no Qt headers found."
  exit 77
fi

# As system headers, or their warnings would drown ours.
flags=(-fsyntax-only -std=c++17 -Wall -Wextra -Werror -DQT_NO_DEPRECATED_WARNINGS -Isrc -isystem "$qt")
for module in "$qt"/Qt*/; do
  flags+=(-isystem "${module%/}")
done
# Libraries with portable headers, linked one by one: the system's own headers must stay out.
links=$(mktemp -d)
trap 'rm -rf "$links"' EXIT
for library in vlc openssl; do
  [ -d "/usr/include/$library" ] && ln -s "/usr/include/$library" "$links/$library"
done
flags+=(-isystem "$links")

# Breakpad's sources lie in the build folder once it was configured.
build=${1:-build/dev}
breakpad=${BREAKPAD_ROOT:-$build/third_party/npm/node_modules/minidump/deps}/breakpad/src
flags+=(-isystem "$breakpad")

failed=0
checked=0
while IFS= read -r source; do
  if [ ! -d "$breakpad" ] && [[ $source == src/crash/* ]]; then
    echo "Left out, Breakpad's sources are not there: $source"
    continue
  fi
  checked=$((checked + 1))
  "$compiler" "${flags[@]}" "$source" || { echo "Failed: $source"; failed=1; }
done < <(find src -name '*_windows.cpp' | sort)
echo "Checked $checked files."
exit $failed
