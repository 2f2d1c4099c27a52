#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# Frames go through a pipe into ffmpeg, as films and as raw bytes, in grey and in colours, and are counted at its other
# end: ffmpeg-test.sh VANTO-CL
set -eu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
program=$1

grab() { # grab MODEL-INDEX OPTIONS: 12 frames of 64 x 32 to standard output
    local camera=$1
    shift
    "$program" --simulate=2 grab "$camera" -n 12 --set Width=64 --set Height=32 -o - "$@"
}

expect() { # expect WHAT BYTES-A-PIXEL
    local size
    size=$(stat -c %s "$folder/pictures")
    [ "$size" -eq $((12 * 64 * 32 * $2)) ] || {
        echo "$1: $size bytes came, not those of 12 pictures"
        exit 1
    }
}

player=(ffmpeg -nostdin -loglevel error -y)
# -fps_mode passthrough: each frame once, whatever the time between two.
grab 0 --format y4m | "${player[@]}" -i - -fps_mode passthrough -f rawvideo -pix_fmt gray "$folder/pictures"
expect "a grey film" 1
grab 1 --set PixelFormat=RGB8 --format y4m |
    "${player[@]}" -i - -fps_mode passthrough -f rawvideo -pix_fmt rgb24 "$folder/pictures"
expect "a film in colours" 3
grab 0 --format raw | "${player[@]}" -f rawvideo -pixel_format gray -video_size 64x32 -i - -fps_mode passthrough \
    -f rawvideo -pix_fmt gray "$folder/pictures"
expect "raw bytes" 1
# The line that docs/grabbing.md shows.
grab 0 --format y4m | "${player[@]}" -i - "$folder/film.mkv"
frames=$(ffprobe -v error -count_frames -show_entries stream=nb_read_frames -of csv=p=0 "$folder/film.mkv")
[ "$frames" = 12 ] || { echo "film.mkv has $frames frames" && exit 1; }
