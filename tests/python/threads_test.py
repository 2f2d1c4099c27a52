# SPDX-License-Identifier: Apache-2.0
"""The interpreter's lock is given up while the library works, and no schedule of threads hangs."""

import contextlib
import faulthandler
import gc
import logging
import os
import random
import sys
import threading
import time

import pytest
import vanto


@contextlib.contextmanager
def only_where_the_lock_is_given_up():
    """Counts what another thread does, which runs only while this one has given the interpreter's lock up."""
    ticks = [0]
    ended = False

    def tick():
        while not ended:
            ticks[0] += 1
            time.sleep(0)

    before = sys.getswitchinterval()
    sys.setswitchinterval(1000)
    thread = threading.Thread(target=tick)
    thread.start()
    try:
        yield ticks
    finally:
        ended = True
        sys.setswitchinterval(before)
        thread.join()


@pytest.fixture
def slow():
    """A camera that takes 30 ms for each answer."""
    with vanto.simulate(1) as simulation:
        with vanto.open() as camera:
            camera.features["ExposureTime"]
            camera.Width, camera.Height = 64, 32
            simulation.command("delay cam0 30")
            yield camera
            simulation.command("delay cam0 0")


WAITING = {
    "read": lambda camera: camera.DeviceTemperature,
    "write": lambda camera: setattr(camera, "ExposureTime", random.randint(100, 10000)),
    "text": lambda camera: (camera.features["Gain"].refresh(), camera.features["Gain"].text),
    "access": lambda camera: (camera.features.refresh(), camera.features["ExposureTime"].access),
    "range": lambda camera: (camera.features.refresh(), camera.features["OffsetX"].range),
    "allowed": lambda camera: (camera.features.refresh(), camera.features["OffsetX"].allowed),
    "entries": lambda camera: (camera.features.refresh(), camera.features["ExposureMode"].value),
    "command": lambda camera: camera.UserSetLoad(),
    "start": lambda camera: camera.features["TriggerSoftware"].start(),
    "registers": lambda camera: camera.read_registers(0x10005C, 4),
    "selection": lambda camera: camera.select(LineSelector="Line3").__enter__(),
    "list": lambda camera: vanto.cameras(),
}


@pytest.mark.parametrize("name", WAITING)
def test_the_lock_is_given_up_while_a_camera_is_asked(slow, name):
    for _ in range(20):  # a machine under load may leave the other thread no time in one call
        with only_where_the_lock_is_given_up() as ticks:
            before = ticks[0]
            WAITING[name](slow)
            if ticks[0] > before:
                return
    pytest.fail(f"{name} keeps the interpreter's lock")


def test_the_lock_is_given_up_while_settings_are_saved_and_loaded(own, tmp_path):
    with vanto.open() as camera:
        own.command("delay cam0 1")
        with only_where_the_lock_is_given_up() as ticks:
            begin = ticks[0]
            camera.save(tmp_path / "settings")
            middle = ticks[0]
            camera.load(tmp_path / "settings")
            assert begin < middle < ticks[0]


def test_the_lock_is_given_up_while_a_camera_is_opened_and_closed(own):
    own.command("delay cam0 5")
    with only_where_the_lock_is_given_up() as ticks:
        begin = ticks[0]
        camera = vanto.open()
        middle = ticks[0]
        camera.close()
        assert begin < middle < ticks[0]


def test_the_lock_is_given_up_when_a_camera_is_collected(own):
    camera = vanto.open()
    own.command("delay cam0 20")
    with only_where_the_lock_is_given_up() as ticks:
        before = ticks[0]
        del camera
        assert ticks[0] > before


def test_the_lock_is_given_up_while_a_frame_is_waited_for():
    with vanto.simulate(1, grabber="Trigger=On"), vanto.open() as camera:
        with camera.stream() as stream:
            waiting = threading.Event()

            def trigger():
                waiting.wait()
                camera.stream_features["DebugData1"].value = 1

            thread = threading.Thread(target=trigger)
            thread.start()
            waiting.set()
            assert stream.next(timeout=20).is_complete
            thread.join()


def test_closing_ends_the_waits_of_other_threads():
    with vanto.simulate(1, grabber="Trigger=On"), vanto.open() as camera:
        stream = camera.stream(timeout=60)
        ends = []
        threads = [threading.Thread(target=lambda: ends.append(stream.next())) for _ in range(3)]
        for thread in threads:
            thread.start()
        camera.close()
        for thread in threads:
            thread.join()
        assert ends == [None, None, None]


def test_cameras_are_opened_and_used_by_many_threads(simulation):
    failures = []

    def use(name):
        try:
            for _ in range(10):
                with vanto.open(name) as camera:
                    camera.Width = 128
                    assert camera.Width == 128
        except BaseException as failure:
            failures.append(failure)

    threads = [threading.Thread(target=use, args=(name,)) for name in simulation.serial_numbers]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert failures == []


class Load:
    """Threads that use one camera in all ways at once, callbacks and log messages among them."""

    def __init__(self, camera):
        self.camera = camera
        self.end = False
        self.failures = []
        self.changes = 0
        self.threads = []

    def run(self, *works):
        self.threads = [threading.Thread(target=self._repeat, args=(work,)) for work in works]
        for thread in self.threads:
            thread.start()

    def _repeat(self, work):
        try:
            while not self.end:
                work()
        except BaseException as failure:
            self.failures.append(failure)

    def changed(self, feature):
        self.changes += 1
        assert self.camera.Height and feature.value is not None

    def write(self):
        self.camera.ExposureTime = random.randint(100, 10000)
        self.camera.Gain = random.random()

    def read(self):
        self.camera.features.refresh()
        self.camera.ExposureTime, self.camera.Gain, self.camera.features["Width"].range

    def register(self):
        with self.camera.features["Gain"].on_change(self.changed):
            self.camera.Gain = random.random()

    def grab(self):
        for frame in self.camera.grab(3):
            frame.array.sum()

    def collect(self):
        circle = [self.camera.features["Gain"].on_change(self.changed)]
        circle.append(circle)
        circle[0].cancel()
        del circle
        gc.collect()

    def log(self):
        logging.getLogger("vanto").setLevel(random.choice([logging.DEBUG, logging.INFO, logging.WARNING]))
        time.sleep(0.001)


def test_no_thread_waits_for_another_in_a_circle(camera):
    """T1 would hold the interpreter's lock and wait for a node map's, T2 hold that one and wait for the interpreter's.

    VANTO_PYTHON_SECONDS says for how long, 3 s without it. Where it hangs, the stacks of all threads are shown.
    """
    seconds = float(os.environ.get("VANTO_PYTHON_SECONDS", "3"))
    faulthandler.dump_traceback_later(seconds + 60, exit=True)
    load = Load(camera)
    camera.features["ExposureTime"].on_change(load.changed)
    try:
        load.run(load.write, load.write, load.read, load.read, load.register, load.grab, load.collect, load.log)
        time.sleep(seconds)
        load.end = True
        for thread in load.threads:
            thread.join()
    finally:
        load.end = True
        logging.getLogger("vanto").setLevel(logging.NOTSET)
        faulthandler.cancel_dump_traceback_later()
    assert load.failures == []
    assert load.changes > 0


def test_a_camera_is_closed_while_threads_use_it(simulation):
    for _ in range(5):
        camera = vanto.open("SIM00001")
        load = Load(camera)
        camera.features["ExposureTime"].on_change(lambda feature: None)
        load.run(load.write, load.read, load.grab, load.register)
        time.sleep(0.05)
        camera.close()
        for thread in load.threads:
            thread.join()
        assert all(isinstance(failure, vanto.Error) for failure in load.failures), load.failures
