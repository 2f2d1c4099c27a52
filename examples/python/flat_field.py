#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Corrects images for what lens and sensor do: dark images are taken off, uneven light is divided out.

flat_field.py [--simulate] [CAMERA] asks for the lens cap and for even light, and writes corrected.npy.
"""

import argparse
import contextlib

import numpy
import vanto


def mean_of(camera, count):
    """The mean of some images, pixel by pixel."""
    total = None
    for frame in camera.grab(count):
        image = frame.array.astype(numpy.float64)
        total = image if total is None else total + image
    return total / count


def gain_of(flat, dark):
    """What each pixel is to be multiplied with, so that even light gives an even image; dead pixels stay."""
    light = flat - dark
    return numpy.where(light > 0, light.mean() / numpy.where(light > 0, light, 1), 1)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("camera", nargs="?", help="serial number, name or port; none for the only one")
    parser.add_argument("--simulate", action="store_true", help="use a simulated camera, and ask for nothing")
    parser.add_argument("--images", type=int, default=16, help="images of which the mean is taken")
    options = parser.parse_args()
    ask = print if options.simulate else input
    with vanto.simulate(1) if options.simulate else contextlib.nullcontext(), vanto.open(options.camera) as camera:
        camera.PixelFormat = "Mono12"
        ask("Put the cap on the lens. ")
        dark = mean_of(camera, options.images)
        ask("Take it off and let the camera see even light. ")
        gain = gain_of(mean_of(camera, options.images), dark)
        image = camera.grab_one().array
        corrected = numpy.clip((image - dark) * gain, 0, 4095)
    print(f"spread of the pixels: {image.std():.1f} before, {corrected.std():.1f} after")
    numpy.save("corrected.npy", corrected.astype(numpy.uint16))


if __name__ == "__main__":
    main()
