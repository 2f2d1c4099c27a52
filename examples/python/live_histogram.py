#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Shows the histogram of the newest image in the terminal, again and again. Ctrl-C ends it.

live_histogram.py [--simulate] [--count N] [CAMERA]
"""

import argparse
import contextlib

import numpy
import vanto

BARS = " ▁▂▃▄▅▆▇█"


def newest(stream):
    """The newest frame; the older ones that wait go back."""
    frame = next(stream)
    while (later := stream.try_next()) is not None:
        frame = later
    return frame


def line(image, bins=64):
    """One character for each part of the grey values, higher for more pixels."""
    counts, _ = numpy.histogram(image, bins=bins, range=(0, numpy.iinfo(image.dtype).max + 1))
    heights = numpy.ceil(counts / max(counts.max(), 1) * (len(BARS) - 1)).astype(int)
    return "".join(BARS[height] for height in heights)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("camera", nargs="?", help="serial number, name or port; none for the only one")
    parser.add_argument("--simulate", action="store_true", help="use a simulated camera")
    parser.add_argument("--count", type=int, default=0, help="end behind so many histograms")
    options = parser.parse_args()
    shown = 0
    with vanto.simulate(1) if options.simulate else contextlib.nullcontext(), vanto.open(options.camera) as camera:
        with contextlib.suppress(KeyboardInterrupt), camera.stream(buffers=4) as stream:
            while options.count == 0 or shown < options.count:
                frame = newest(stream)
                print(f"\r{frame.number:6} {line(frame.array)} {frame.array.mean():6.1f}", end="", flush=True)
                shown += 1
    print()


if __name__ == "__main__":
    main()
