#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""What Python costs beyond C++, both measured in turns. Run by the target python_bench.

"ratio" is what was measured, "limit" what it may be: at least for frames, at most for the others.
"""

import contextlib
import signal
import statistics
import subprocess
import sys
import time

import numpy
import vanto

ROUNDS = 11
FRAMES = 1500
READS = 100_000


def counterpart(what, count):
    """Seconds and processor seconds of the same in C++."""
    done = subprocess.run([sys.argv[1], what, str(count)], check=True, capture_output=True, text=True)
    return [float(word) for word in done.stdout.split()]


@contextlib.contextmanager
def measured(results):
    begin, processor = time.perf_counter(), time.process_time()
    yield
    results.append((time.perf_counter() - begin, time.process_time() - processor))


def medians(results):
    return [statistics.median(column) for column in zip(*results)]


def fastest(results):
    """The round that a machine with other work disturbed least."""
    return min(results)


def show(name, **values):
    print(f"{name:24}", *(f"{key}={value:.4g}" for key, value in values.items()), flush=True)


def frames():
    ours, theirs = [], []
    for _ in range(ROUNDS):
        theirs.append(counterpart("frames", FRAMES))
        with vanto.open() as camera:
            camera.Width = camera.Height = 1024
            with camera.stream() as stream:
                next(stream).array
                with measured(ours):
                    for _ in range(FRAMES):
                        next(stream).array
    (seconds, processor), (their_seconds, their_processor) = fastest(ours), fastest(theirs)
    ratio = their_seconds / seconds
    show("frames of 1 MB", fps=FRAMES / seconds, cpp_fps=FRAMES / their_seconds, ratio=ratio, limit=0.95)
    ours_us, theirs_us = processor / FRAMES * 1e6, their_processor / FRAMES * 1e6
    show("processor time a frame", us=ours_us, cpp_us=theirs_us, ratio=processor / their_processor)


def reads():
    ours, handles, helped, theirs = [], [], [], []
    for _ in range(ROUNDS):
        theirs.append(counterpart("reads", READS))
        with vanto.open() as camera:
            width = camera.features["Width"]
            with measured(ours):
                for _ in range(READS):
                    camera.Width
            with measured(handles):
                for _ in range(READS):
                    width.value
            with measured(helped):
                for _ in range(READS // 100):
                    width.access
    by_name, by_handle, cpp = (medians(results)[0] / READS * 1e9 for results in (ours, handles, theirs))
    by_helper = medians(helped)[0] / READS * 100 * 1e9
    show("camera.Width", ns=by_name, cpp_ns=cpp, overhead_ns=by_name - cpp)
    show("feature.value", ns=by_handle, overhead_ns=by_handle - cpp)
    show("feature.access", ns=by_helper)  # what may go to the line is left to a helper thread


def arrays():
    with vanto.open() as camera:
        camera.Width = camera.Height = 1024
        frame = camera.grab_one()
        views, copies = [], []
        for _ in range(ROUNDS):
            with measured(views):
                for _ in range(1000):
                    frame.array
            with measured(copies):
                for _ in range(1000):
                    numpy.array(frame.array)
    view, copy = (medians(results)[0] * 1e3 for results in (views, copies))
    show("frame.array of 1 MB", us=view, copy_us=copy, ratio=view / copy, limit=0.5)


class Rung(Exception):
    """The handler of a signal ran."""


def interruptions():
    """How long after a signal a wait ends that it interrupts."""

    def ring(number, stack):
        raise Rung

    signal.signal(signal.SIGALRM, ring)
    delays = []
    with vanto.simulate(1, grabber="Trigger=On"), vanto.open() as camera, camera.stream(timeout=60) as stream:
        for _ in range(10):
            due = time.perf_counter() + 0.12
            signal.setitimer(signal.ITIMER_REAL, 0.12)
            try:
                next(stream)
            except Rung:
                delays.append(time.perf_counter() - due)
    show("a signal ends a wait", seconds=max(delays), ratio=max(delays), limit=0.2)


def interrupted_reads():
    """The same for a camera that does not answer, which is given up after much longer."""
    delays = []
    for _ in range(10):
        with vanto.simulate(1) as simulation, vanto.open() as camera:
            camera.features["DeviceTemperature"]
            simulation.command("silent cam0 on")
            due = time.perf_counter() + 0.12
            signal.setitimer(signal.ITIMER_REAL, 0.12)
            try:
                camera.DeviceTemperature
            except Rung:
                delays.append(time.perf_counter() - due)
    show("a signal ends a read", seconds=max(delays), ratio=max(delays), limit=0.2)


def imports():
    results = []
    for _ in range(ROUNDS):
        code = "import time; begin = time.perf_counter(); import vanto; print(time.perf_counter() - begin)"
        done = subprocess.run([sys.executable, "-c", code], check=True, capture_output=True, text=True)
        results.append(float(done.stdout))
    show("import vanto", ms=statistics.median(results) * 1e3)


if __name__ == "__main__":
    with vanto.simulate(1, frame_rate=0, grabber="Pattern=Black"):
        frames()
        reads()
        arrays()
    interruptions()
    interrupted_reads()
    imports()
