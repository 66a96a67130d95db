#!/usr/bin/env bash
# Makes the tiny clips that the playback tests open; keeps those that are there already.
# Usage: make-clips.sh FOLDER
set -euo pipefail
folder=$1
mkdir -p "$folder"
exec 9>"$folder/.lock"
flock 9
cd "$folder"

clip() { # name, further ffmpeg arguments; written aside first, so that a broken run leaves nothing
  local name=$1
  shift
  [ -e "$name" ] && return 0
  local part="part-$name"
  ffmpeg -hide_banner -loglevel error -nostdin -y "$@" "$part"
  mv "$part" "$name"
}
picture() { # size, rate, seconds
  echo "testsrc2=size=$1:rate=$2:duration=$3"
}
tone() { # seconds
  echo "sine=frequency=440:sample_rate=44100:duration=$1"
}
x264=(-c:v libx264 -preset ultrafast -pix_fmt yuv420p)

clip h264.mp4 -f lavfi -i "$(picture 320x160 25 2)" -f lavfi -i "$(tone 2)" \
  -c:v libx264 -preset veryfast -bf 3 -pix_fmt yuv420p -c:a aac
clip h264_60.mp4 -f lavfi -i "$(picture 320x160 60 2)" "${x264[@]}"
clip hevc.mp4 -f lavfi -i "$(picture 320x160 30 2)" -c:v libx265 -preset ultrafast \
  -x265-params log-level=none -tag:v hvc1 -pix_fmt yuv420p
clip vp9.webm -f lavfi -i "$(picture 320x160 30 2)" -f lavfi -i "$(tone 2)" \
  -c:v libvpx-vp9 -deadline realtime -cpu-used 8 -c:a libopus
clip mjpeg.mov -f lavfi -i "$(picture 320x160 25 2)" -c:v mjpeg -pix_fmt yuvj420p
clip prores.mov -f lavfi -i "$(picture 320x160 25 2)" -c:v prores_ks -pix_fmt yuv422p10le
clip cineform.mov -f lavfi -i "$(picture 320x160 25 2)" -c:v cfhd -pix_fmt yuv422p10le
clip long.mp4 -f lavfi -i "$(picture 320x160 25 20)" -f lavfi -i "$(tone 20)" \
  "${x264[@]}" -g 25 -c:a aac
clip other.mp4 -f lavfi -i "$(picture 640x320 25 20)" "${x264[@]}" -g 25
clip "a b%20é#1.mp4" -f lavfi -i "$(picture 320x160 25 1)" "${x264[@]}"
clip odd.webm -f lavfi -i "$(picture 322x182 25 2),format=yuv444p,crop=321:181,format=yuv420p" -c:v libvpx-vp9 -deadline realtime -cpu-used 8
clip large.mp4 -f lavfi -i "$(picture 1920x960 25 4)" -c:v libx264 -preset veryfast -pix_fmt yuv420p

# Flat patches, 80 wide: red, green, blue, white, black, three greys.
patches="color=red:80x160[a];color=lime:80x160[b];color=blue:80x160[c];color=white:80x160[d]"
patches+=";color=black:80x160[e];color=0x404040:80x160[f];color=0x808080:80x160[g]"
patches+=";color=0xC0C0C0:80x160[h];[a][b][c][d][e][f][g][h]hstack=8"
clip patches_limited.mp4 -filter_complex "$patches,scale=out_range=tv:out_color_matrix=bt709" \
  -t 20 -r 25 -c:v libx264 -preset ultrafast -qp 1 -pix_fmt yuv420p -color_range tv -colorspace bt709
clip patches_full.mov -filter_complex "$patches,scale=out_range=pc:out_color_matrix=bt601" \
  -t 20 -r 25 -c:v mjpeg -q:v 1 -pix_fmt yuvj420p

clip upright.mp4 -filter_complex "color=red:160x40[a];color=blue:160x40[b];[a][b]vstack" \
  -t 20 -r 25 "${x264[@]}"
clip sound.mp4 -f lavfi -i "$(tone 2)" -c:a aac
clip one.mov -f lavfi -i "$(picture 320x160 25 0.04)" -c:v mjpeg -pix_fmt yuvj420p
clip small.ts -f lavfi -i "$(picture 320x160 25 1)" "${x264[@]}"
clip big.ts -f lavfi -i "$(picture 640x320 25 1)" "${x264[@]}" -output_ts_offset 1
[ -e resized.ts ] || cat small.ts big.ts >resized.ts
[ -e truncated.mp4 ] || head -c 20000 h264.mp4 >truncated.mp4
[ -e truncated.ts ] || head -c 30000 small.ts >truncated.ts
: >empty.mp4
echo "This is no film." >text.mp4
