#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Takes a burst of images into memory and saves it as one TIFF file. Needs python3-pil.

burst_to_tiff.py [--simulate] [--count N] [CAMERA] writes burst.tiff.
"""

import argparse
import contextlib
import sys

import vanto


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("camera", nargs="?", help="serial number, name or port; none for the only one")
    parser.add_argument("--simulate", action="store_true", help="use a simulated camera")
    parser.add_argument("--count", type=int, default=20)
    options = parser.parse_args()
    with vanto.simulate(1) if options.simulate else contextlib.nullcontext(), vanto.open(options.camera) as camera:
        stream = camera.grab(options.count)
        # Kept frames keep their buffers; others take their place in the queue.
        frames = list(stream)
    lost = stream.counts.missed
    if lost:
        print(f"{lost} frames were lost between those", file=sys.stderr)
    first, *others = [frame.image() for frame in frames if frame.is_complete]
    first.save("burst.tiff", save_all=True, append_images=others)
    seconds = frames[-1].time - frames[0].time
    print(f"{len(others) + 1} images of {first.width} x {first.height} in {seconds:.2f} s are in burst.tiff")


if __name__ == "__main__":
    main()
