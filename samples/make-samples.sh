#!/usr/bin/env bash
# Makes the files of this folder anew from our own drawing program.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/samples
cmake -S samples/generator -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" >/dev/null
"$build/make-panorama" samples/panorama.jpg 4096

# The same panorama turning once in eight seconds, with a running clock and a beep each second, so
# that one sees and hears whether picture, sound and seeking agree.
font=$(fc-match -f '%{file}' 'DejaVu Sans:bold')
ffmpeg -v error -y -loop 1 -framerate 25 -i samples/panorama.jpg \
  -f lavfi -i "aevalsrc='if(lt(mod(t,1),0.07),0.4*sin(2*PI*880*t),0)':s=48000:c=stereo" \
  -t 8 -filter_complex "[0:v]scale=1920:960,scroll=horizontal=0.005,
    drawtext=fontfile=$font:text='%{pts\\:hms}':fontsize=56:fontcolor=white:box=1:boxcolor=black@0.5:boxborderw=12:x=(w-tw)/2:y=h*0.36,
    scale=out_color_matrix=bt709:out_range=tv,format=yuv420p[v]" \
  -map '[v]' -map 1:a -c:v libx264 -preset veryslow -crf 26 -g 25 -bf 2 \
  -colorspace bt709 -color_primaries bt709 -color_trc bt709 -color_range tv \
  -c:a aac -b:a 96k -movflags +faststart samples/turning.mp4
ls -l samples/panorama.jpg samples/turning.mp4
