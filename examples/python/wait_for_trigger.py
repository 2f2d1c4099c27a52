#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Waits for triggers and saves an image of each, while it does other things.

wait_for_trigger.py [--simulate] [--count N] [CAMERA] writes trigger1.png, trigger2.png ...
"""

import argparse
import asyncio
import contextlib

import vanto


async def save_each(camera, count):
    """Saves the images of so many triggers; one that does not come for an hour is an error."""
    async with camera.stream(timeout=3600, count=count) as stream:
        async for frame in stream:
            frame.save(f"trigger{frame.number}.png")
            print(f"trigger {frame.number} at {frame.time:.3f}")


async def breathe():
    """Stands for whatever else there is to do."""
    while True:
        await asyncio.sleep(1)
        print("waiting")


async def pretend(camera, count):
    """Gives a simulated frame grabber the triggers that it waits for."""
    for number in range(1, count + 1):
        await asyncio.sleep(0.1)
        camera.stream_features["DebugData1"].value = number


async def run(camera, count, simulated):
    tasks = [asyncio.create_task(breathe())]
    if simulated:
        tasks.append(asyncio.create_task(pretend(camera, count)))
    else:
        camera.TriggerSelector, camera.TriggerMode, camera.TriggerSource = "FrameStart", "On", "Line1"
    await save_each(camera, count)
    for task in tasks:
        task.cancel()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("camera", nargs="?", help="serial number, name or port; none for the only one")
    parser.add_argument("--simulate", action="store_true", help="use a simulated camera")
    parser.add_argument("--count", type=int, default=3)
    options = parser.parse_args()
    simulation = vanto.simulate(1, grabber="Trigger=On") if options.simulate else contextlib.nullcontext()
    with simulation, vanto.open(options.camera) as camera:
        asyncio.run(run(camera, options.count, options.simulate))


if __name__ == "__main__":
    main()
