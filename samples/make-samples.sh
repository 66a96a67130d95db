#!/usr/bin/env bash
# Makes the files of this folder anew from our own drawing program.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/samples
cmake -S samples/generator -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" >/dev/null
"$build/make-panorama" samples/panorama.jpg 4096
ls -l samples/panorama.jpg
