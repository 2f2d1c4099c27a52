# SPDX-License-Identifier: Apache-2.0
"""Ctrl-C ends each call that waits, before what it waits for has come; and what was left ends by itself."""

import contextlib
import gc
import os
import signal
import sys
import threading
import time

import pytest
import vanto
from features_test import ENDLESS


def heard(simulation):
    """Bytes that the camera has heard, whether or not it answers."""
    return int(simulation.command("stats cam0").split("bytes-in=")[1].split()[0])


@contextlib.contextmanager
def control_c(happens):
    """Presses Ctrl-C once something has happened, unless it is too late."""
    begun, ended = threading.Event(), threading.Event()

    def press():
        begun.wait()
        while not (happened := happens()) and not ended.is_set():
            time.sleep(0.001)
        if happened:
            os.kill(os.getpid(), signal.SIGINT)

    thread = threading.Thread(target=press)
    thread.start()
    try:
        begun.set()
        yield
    finally:
        try:
            ended.set()
            thread.join()
        except KeyboardInterrupt:  # what was to be interrupted had ended already
            ended.set()
            thread.join()


def asked(simulation):
    """Whether the camera has been asked for something since now."""
    before = heard(simulation)
    return lambda: heard(simulation) > before


def is_left(simulation, call):
    """Whether Ctrl-C ends a call to a camera that does not answer, before it is found to be gone."""
    simulation.command("silent cam0 on")
    try:
        with control_c(asked(simulation)):
            try:
                call()
                return False
            except KeyboardInterrupt as interrupt:
                return interrupt.__context__ is None
            except vanto.CameraGone:
                return False
    finally:
        simulation.command("silent cam0 off")


@pytest.fixture(scope="module")
def line():
    with vanto.simulate(1) as simulation:
        yield simulation


def opened():
    """Opens the camera as soon as what was left has let it go, and its baud rate is found."""
    while True:
        with contextlib.suppress(vanto.Error):
            return vanto.open()


def reopened():
    """The same for a block."""
    return contextlib.closing(opened())


def fill(path):
    with reopened() as camera:
        camera.save(path)
    return path


CALLS = {
    "read": lambda camera: camera.DeviceTemperature,
    "write": lambda camera: setattr(camera, "ExposureTime", 1234),
    "text": lambda camera: camera.features["DeviceTemperature"].text,
    "repr": lambda camera: repr(camera.features["DeviceTemperature"]),
    "range": lambda camera: camera.features["OffsetX"].range,
    "step": lambda camera: camera.features["OffsetX"].step,
    "allowed": lambda camera: camera.features["OffsetX"].allowed,
    "command": lambda camera: camera.UserSetLoad(),
    "execute": lambda camera: camera.execute("UserSetLoad"),
    "start": lambda camera: camera.features["UserSetLoad"].start(),
    "select": lambda camera: camera.select(LineSelector="Line2").__enter__(),
    "read_registers": lambda camera: camera.read_registers(0x10005C, 4),
    "write_registers": lambda camera: camera.write_registers(0x10005C, b"\0\0\0\0"),
    "save": lambda camera: camera.save("/dev/null"),
    "stream": lambda camera: camera.stream(),
    "grab": lambda camera: camera.grab(1),
    "grab_one": lambda camera: camera.grab_one(),
    "close": lambda camera: camera.close(),
}


@pytest.mark.parametrize("name", CALLS)
def test_a_call_to_a_camera_that_does_not_answer_is_left(line, name):
    for _ in range(10):  # a machine under load may press too late
        with reopened() as camera:
            for feature in ("DeviceTemperature", "OffsetX", "UserSetLoad", "LineSelector", "ExposureTime"):
                camera.features[feature]
            camera.features.refresh()
            if is_left(line, lambda: CALLS[name](camera)):
                return
    pytest.fail(f"Ctrl-C does not end {name}")


def test_loading_settings_is_left(line, tmp_path):
    settings = fill(tmp_path / "settings")
    for _ in range(10):
        with reopened() as camera:
            if is_left(line, lambda: camera.load(settings)):
                return
    pytest.fail("Ctrl-C does not end load")


@pytest.mark.parametrize("call", [vanto.open, vanto.cameras])
def test_looking_for_cameras_is_left(line, call):
    for _ in range(10):
        if is_left(line, call):
            break
    else:
        pytest.fail("Ctrl-C does not end it")
    with reopened() as camera:
        assert camera.Width == 2048


def test_a_camera_that_nobody_has_closes_behind_control_c(line):
    for _ in range(10):
        camera = opened()
        holder = [camera]
        del camera

        def let_go():
            holder.clear()
            for _ in range(10):  # handlers run between two steps of the interpreter
                pass

        if is_left(line, let_go):
            break
    else:
        pytest.fail("Ctrl-C waits for the end of a camera")
    with reopened() as camera:
        assert camera.Width == 2048


def test_what_was_left_comes_before_what_follows(line):
    for _ in range(10):
        with reopened() as camera:
            camera.ExposureTime = 500
            line.command("delay cam0 300")
            with control_c(asked(line)), contextlib.suppress(KeyboardInterrupt):
                camera.ExposureTime = 777
                line.command("delay cam0 0")
                continue
            line.command("delay cam0 0")
            assert camera.ExposureTime == 777.0
            return
    pytest.fail("Ctrl-C does not end a write")


WITHOUT_ASKING = {
    "a value that is known": lambda camera: camera.Width,
    "a unit": lambda camera: camera.features["Width"].unit,
    "names": lambda camera: camera.features.names(),
    "completion": lambda camera: dir(camera),
    "iteration": lambda camera: list(camera.features),
    "refresh": lambda camera: camera.features.refresh(),
}


@pytest.mark.parametrize("name", WITHOUT_ASKING)
def test_a_wait_for_another_thread_is_left(line, name):
    """The other one holds the node map's lock while it waits for the camera."""
    for _ in range(10):
        with reopened() as camera:
            camera.Width, camera.features["DeviceTemperature"]
            is_asked = asked(line)

            def ask():
                with contextlib.suppress(vanto.Error):
                    camera.DeviceTemperature

            line.command("silent cam0 on")
            thread = threading.Thread(target=ask)
            thread.start()
            left = False
            with control_c(is_asked), contextlib.suppress(vanto.Error):
                try:
                    while not is_asked():
                        pass
                    WITHOUT_ASKING[name](camera)
                except KeyboardInterrupt:
                    left = thread.is_alive()
            line.command("silent cam0 off")
            thread.join()
            if left:
                return
    pytest.fail("Ctrl-C waits for another thread's access")


def test_the_end_of_a_subscription_is_left_while_its_callback_runs(line):
    with reopened() as camera:
        inside, go = threading.Event(), threading.Event()
        subscription = camera.features["Gain"].on_change(lambda feature: (inside.set(), go.wait(60)))
        thread = threading.Thread(target=setattr, args=(camera, "Gain", 1))
        thread.start()
        assert inside.wait(60)
        with pytest.raises(KeyboardInterrupt), control_c(lambda: not subscription.is_active):
            subscription.cancel()
        assert not go.is_set()
        go.set()
        thread.join()


def test_reading_a_description_is_left(tmp_path):
    path = tmp_path / "camera.xml"
    os.mkfifo(path)
    ends = []

    def is_read():
        with contextlib.suppress(OSError):  # nobody has opened it yet
            ends.append(os.open(path, os.O_WRONLY | os.O_NONBLOCK))
        return ends != []

    with pytest.raises(KeyboardInterrupt), control_c(is_read):
        vanto.describe(path)
    os.close(ends[0])


def test_a_command_that_was_left_is_not_asked_for_any_more(tmp_path):
    (tmp_path / "endless.xml").write_text(ENDLESS)
    models = [f"H2048,description={tmp_path / 'endless.xml'}"]
    with vanto.simulate(1, models=models) as simulation, vanto.open() as camera:
        with pytest.raises(KeyboardInterrupt), control_c(asked(simulation)):
            camera.execute("Endless", timeout=3600)
        helpers = threading.active_count()
        while (before := heard(simulation)) != (time.sleep(0.1) or heard(simulation)):
            pass  # the look at it that was under way
        assert heard(simulation) == before and threading.active_count() == helpers


def test_a_signal_handler_may_use_the_camera_that_is_waited_for(tmp_path):
    (tmp_path / "endless.xml").write_text(ENDLESS)
    models = [f"H2048,description={tmp_path / 'endless.xml'}"]
    with vanto.simulate(1, models=models) as simulation, vanto.open() as camera:
        before = signal.signal(signal.SIGINT, lambda number, frame: camera.close())
        try:
            with pytest.raises(vanto.CameraClosed), control_c(asked(simulation)):
                camera.execute("Endless", timeout=3600)
        finally:
            signal.signal(signal.SIGINT, before)


# --- Callbacks ---


def test_callbacks_of_changes_of_the_main_thread_run_on_it(line):
    with reopened() as camera:
        threads = []
        camera.features["Gain"].on_change(lambda feature: threads.append(threading.current_thread()))
        camera.Gain = 1
        assert threads == [threading.main_thread()]
        thread = threading.Thread(target=setattr, args=(camera, "Gain", 2))
        thread.start()
        thread.join()
        assert threads == [threading.main_thread(), thread]


def test_callbacks_change_what_others_are_told_of(line):
    with reopened() as camera:
        told = []
        camera.features["Gain"].on_change(lambda feature: setattr(camera, "ExposureTime", 100 * feature.value))
        camera.features["ExposureTime"].on_change(lambda feature: told.append((feature.value, camera.Height)))
        camera.Gain = 2
        assert (200.0, 2048) in told or told[-1][0] == 200.0


def test_a_callback_cancels_itself_and_ends_its_camera(line):
    camera = opened()
    calls = []

    def once(feature):
        calls.append(feature.name)
        subscription.cancel()
        gc.collect()
        camera.close()

    subscription = camera.features["Gain"].on_change(once)
    with contextlib.suppress(vanto.CameraClosed):
        camera.Gain = 1
    assert calls == ["Gain"] and not camera.is_open
    with reopened() as again:
        assert again.Width == 2048


def test_control_c_in_a_callback_ends_the_change_that_brought_it(line):
    with reopened() as camera:
        begun = threading.Event()

        def wait(feature):
            begun.set()
            time.sleep(60)

        subscription = camera.features["Gain"].on_change(wait)
        with pytest.raises(KeyboardInterrupt), control_c(begun.is_set):
            camera.Gain = 3
        subscription.cancel()
        assert camera.Gain == 3.0


def test_control_c_ends_a_wait_within_a_callback(line):
    for _ in range(10):
        with reopened() as camera:
            ends = []

            def ask(feature):
                ends.append(is_left(line, lambda: camera.DeviceTemperature))

            subscription = camera.features["Gain"].on_change(ask)
            camera.Gain = 3
            subscription.cancel()
            if ends == [True]:
                return
    pytest.fail("Ctrl-C does not end a read in a callback")


def test_callbacks_of_a_change_that_was_left_run_without_the_main_thread(line):
    for _ in range(10):
        with reopened() as camera:
            told = []
            done = threading.Event()
            camera.Gain = 0
            camera.features["Gain"].on_change(lambda feature: (told.append(threading.current_thread()), done.set()))
            line.command("delay cam0 300")
            with control_c(asked(line)), contextlib.suppress(KeyboardInterrupt):
                camera.Gain = 3
                line.command("delay cam0 0")
                continue
            assert done.wait(60)
            line.command("delay cam0 0")
            if threading.main_thread() not in told:
                return
    pytest.fail("the main thread always runs the callback")


def test_a_simulation_that_does_not_start_is_left_and_leaves_nothing(tmp_path, monkeypatch):
    program = tmp_path / "marlow-sim"
    program.write_text(f"#!/bin/sh\necho $$ > {tmp_path}/process\nexec sleep 1000\n")
    program.chmod(0o755)
    monkeypatch.setattr(vanto._core, "folder", lambda kind: str(tmp_path))

    def is_waited_for():
        at = sys._current_frames()[threading.main_thread().ident]
        process = tmp_path / "process"
        return at.f_code.co_name == "_start" and process.exists() and process.read_text().endswith("\n")

    with pytest.raises(KeyboardInterrupt), control_c(is_waited_for):
        vanto.simulate(1)
    with pytest.raises(ProcessLookupError):
        os.kill(int((tmp_path / "process").read_text()), 0)
