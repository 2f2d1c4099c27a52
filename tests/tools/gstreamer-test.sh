#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# Frames go through a pipe into GStreamer, and are counted at its other end: gstreamer-test.sh VANTO-CL
set -eu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export XDG_CACHE_HOME="$folder/cache"
"$1" --simulate=1 grab 0 -n 12 --set Width=64 --set Height=32 -o - --format raw |
    gst-launch-1.0 -q fdsrc fd=0 ! rawvideoparse format=gray8 width=64 height=32 framerate=30/1 ! videoconvert \
        ! video/x-raw,format=RGB ! filesink location="$folder/pictures"
size=$(stat -c %s "$folder/pictures")
[ "$size" -eq $((12 * 64 * 32 * 3)) ] || {
    echo "$size bytes came, not those of 12 pictures"
    exit 1
}
