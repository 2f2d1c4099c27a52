#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Measures the brightness of images over the exposure time, and plots it.

exposure_sweep.py [--simulate] [CAMERA] writes exposure.csv, and exposure.png where matplotlib is installed.
"""

import argparse
import contextlib
import csv

import numpy
import vanto


def sweep(camera, steps):
    """Exposure times in microseconds, and the mean of an image of each."""
    limits = camera.features["ExposureTime"].range
    for exposure in numpy.geomspace(max(limits.min, 10), min(limits.max, 100_000), steps):
        camera.ExposureTime = exposure
        yield camera.ExposureTime, float(camera.grab_one().array.mean())


def plot(points, unit):
    """A picture where matplotlib is there, and bars in the terminal."""
    for exposure, brightness in points:
        print(f"{exposure:10.0f} {unit} {brightness:8.2f} {'#' * round(brightness / 4)}")
    try:
        from matplotlib.figure import Figure
    except ImportError:
        print("exposure.png needs the package python3-matplotlib")
        return
    figure = Figure()
    axes = figure.add_subplot(xlabel=f"exposure time / {unit}", ylabel="mean", xscale="log")
    axes.plot(*zip(*points), "o-")
    figure.savefig("exposure.png")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("camera", nargs="?", help="serial number, name or port; none for the only one")
    parser.add_argument("--simulate", action="store_true", help="use a simulated camera")
    parser.add_argument("--steps", type=int, default=10)
    options = parser.parse_args()
    with vanto.simulate(1) if options.simulate else contextlib.nullcontext(), vanto.open(options.camera) as camera:
        points = list(sweep(camera, options.steps))
        plot(points, camera.features["ExposureTime"].unit)
    with open("exposure.csv", "w", newline="") as file:
        csv.writer(file).writerows([("exposure", "mean"), *points])


if __name__ == "__main__":
    main()
