# SPDX-License-Identifier: Apache-2.0
"""Waits end with Ctrl-C, interpreters end with open cameras, forks are refused."""

import os
import pathlib
import pickle
import signal
import subprocess
import sys
import textwrap

import pytest
import vanto
from features_test import ENDLESS

LIMIT = 60  # seconds after which a process counts as hanging


class Script:
    """A process that runs some Python."""

    def __init__(self, text):
        self.process = subprocess.Popen(
            [sys.executable, "-X", "faulthandler", "-c", textwrap.dedent(text)],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        )

    def line(self):
        return self.process.stdout.readline().strip()

    def end(self):
        """Exit code, output and errors."""
        try:
            out, err = self.process.communicate(timeout=LIMIT)
        except subprocess.TimeoutExpired:
            self.process.send_signal(signal.SIGABRT)
            out, err = self.process.communicate()
            pytest.fail(f"it hangs: {out}\n{err}")
        return self.process.returncode, out.strip(), err.strip()


WAITS = {
    "a frame": "with camera.stream(timeout=3600) as stream: waiting(); next(stream)",
    "a frame of a grab": "waiting(); list(camera.grab(1))",
    "an asynchronous frame": """
async def take():
    async with camera.stream(timeout=3600) as stream:
        waiting()
        async for frame in stream: pass
import asyncio; asyncio.run(take())
""",
}


@pytest.fixture
def waiting_camera():
    """A camera whose frames do not come."""
    with vanto.simulate(1, grabber="Trigger=On") as simulation:
        yield simulation


@pytest.fixture
def endless(tmp_path):
    """A camera with a command that is never done."""
    (tmp_path / "endless.xml").write_text(ENDLESS)
    with vanto.simulate(1, models=[f"H2048,description={tmp_path / 'endless.xml'}"]) as simulation:
        yield simulation


def interrupted(wait):
    script = Script(
        "import vanto\n"
        "def waiting(): print('waiting', flush=True)\n"
        "try:\n"
        "    with vanto.open() as camera:\n"
        f"{textwrap.indent(wait, ' ' * 8)}\n"
        "except KeyboardInterrupt:\n"
        "    print('interrupted')\n"
    )
    assert script.line() == "waiting", script.end()
    script.process.send_signal(signal.SIGINT)
    return script.end()


@pytest.mark.parametrize("wait", WAITS)
def test_a_wait_for_frames_ends_with_control_c(waiting_camera, wait):
    assert interrupted(WAITS[wait]) == (0, "interrupted", "")


def test_a_wait_for_a_command_ends_with_control_c(endless):
    assert interrupted("waiting(); camera.execute('Endless', timeout=3600)") == (0, "interrupted", "")


@pytest.mark.parametrize("call", ["vanto.open()", "vanto.cameras()"])
def test_looking_for_cameras_ends_with_control_c(own, call):
    own.command("silent cam0 on")
    script = Script(
        f"""
        import vanto
        try:
            print("waiting", flush=True)
            {call}
            print("not interrupted")
        except KeyboardInterrupt:
            print("interrupted")
        """
    )
    assert script.line() == "waiting"
    script.process.send_signal(signal.SIGINT)
    code, out, err = script.end()
    assert (code, out, err) == (0, "interrupted", "")


def test_a_camera_whose_opening_was_interrupted_is_given_back(own):
    own.command("delay cam0 20")
    script = Script(
        """
        import vanto
        try:
            print("waiting", flush=True)
            vanto.open()
        except KeyboardInterrupt:
            pass
        while True:  # as long as the other opening goes on, the camera is in use
            try:
                camera = vanto.open()
                break
            except vanto.Error:
                pass
        print(camera.Width)
        """
    )
    assert script.line() == "waiting"
    script.process.send_signal(signal.SIGINT)
    own.command("delay cam0 0")
    assert script.end() == (0, "2048", "")


def test_a_signal_handler_may_raise_what_it_likes(waiting_camera):
    script = Script(
        """
        import signal, vanto
        class Alarm(Exception): pass
        def ring(number, frame): raise Alarm
        signal.signal(signal.SIGALRM, ring)
        with vanto.open() as camera, camera.stream(timeout=3600) as stream:
            signal.setitimer(signal.ITIMER_REAL, 0.2)
            try:
                next(stream)
            except Alarm:
                print("alarm", stream.is_running)
        """
    )
    assert script.end() == (0, "alarm True", "")


ENDS = {
    "an open camera": "",
    "a running stream": "stream = camera.stream(); frame = next(stream); view = frame.array",
    "a thread that waits for a frame": """
import threading
stream = camera.stream(timeout=3600)
camera.stream_features
threading.Thread(target=lambda: [frame.array for frame in stream], daemon=True).start()
""",
    "threads that use features": """
import threading, time
def use():
    while True:
        try:
            camera.Gain = 1; camera.features.refresh(); camera.ExposureTime
        except vanto.Error:
            pass
for _ in range(4): threading.Thread(target=use, daemon=True).start()
time.sleep(0.2)
""",
    "callbacks": """
import threading, time
count = 0
def changed(feature):
    global count
    count += 1
    camera.Width
camera.features["Gain"].on_change(changed)
def use():
    while True: camera.Gain = count % 10
threading.Thread(target=use, daemon=True).start()
while count < 3: time.sleep(0.01)
threading.excepthook = lambda arguments: None
""",
    "a thread that opens it": """
import threading, time
camera.close()
def use():
    while True:
        vanto.open().close()
threading.excepthook = lambda arguments: None
threading.Thread(target=use, daemon=True).start()
time.sleep(0.05)
""",
    "the log": "import logging; logging.getLogger('vanto').setLevel(logging.DEBUG); camera.Width = 64",
    "a circle": "camera.__class__.circle = [camera]; camera.features['Gain'].on_change(lambda feature: camera)",
}


@pytest.mark.parametrize("what", ENDS)
def test_an_interpreter_ends_with(own, what):
    script = Script(f"import vanto\ncamera = vanto.open()\n{ENDS[what]}\nprint('end')")
    assert script.end() == (0, "end", "")
    assert own.command("baud cam0") == "9600", "the camera was not closed"


@pytest.mark.parametrize("end, code", [("sys.exit(3)", 3), ("1 / 0", 1), ("os._exit(4)", 4)])
def test_an_interpreter_ends_as_it_is_told(own, end, code):
    script = Script(f"import os, sys, vanto\ncamera = vanto.open()\nstream = camera.stream()\n{end}")
    assert script.end()[0] == code


def test_a_forked_process_can_not_use_cameras(own):
    script = Script(
        """
        import os, sys, vanto
        camera = vanto.open()
        frame = camera.grab_one()
        sys.stdout.flush()
        child = os.fork()
        if child == 0:
            for use in (lambda: camera.Width, lambda: vanto.cameras(), camera.close, lambda: camera.grab_one()):
                try:
                    use()
                except vanto.ForkedError as error:
                    print(error)
            print(int(frame.array[0, 0]) >= 0)
            del camera, frame
            sys.exit(3)
        print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), camera.Width)
        camera.close()
        """
    )
    code, out, err = script.end()
    lines = out.splitlines()
    assert (code, err, lines[4:]) == (0, "", ["True", "3 2048"])
    assert all("start method 'spawn'" in line for line in lines[:4])


def test_a_process_that_is_forked_before_cameras_are_used_may_use_them(own):
    script = Script(
        """
        import os, sys, vanto
        child = os.fork()
        if child == 0:
            with vanto.open() as camera:
                sys.exit(camera.Width // 16)
        print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), vanto.open().Width)
        """
    )
    assert script.end() == (0, "128 2048", "")


def test_a_thread_that_forked_is_the_main_thread_of_its_child(waiting_camera):
    script = Script(
        """
        import os, signal, threading, vanto
        class Alarm(Exception): pass
        def ring(number, frame): raise Alarm
        signal.signal(signal.SIGALRM, ring)
        def fork():
            child = os.fork()
            if child != 0:
                os.waitpid(child, 0)
                return
            with vanto.open() as camera, camera.stream(timeout=3600) as stream:
                signal.setitimer(signal.ITIMER_REAL, 0.2)
                try:
                    next(stream)
                except Alarm:
                    print("alarm", flush=True)
            os._exit(0)
        thread = threading.Thread(target=fork)
        thread.start()
        thread.join()
        """
    )
    assert script.end() == (0, "alarm", "")


def test_workers_that_are_forked_tell_the_error(own):
    script = Script(
        """
        import multiprocessing, vanto
        def work(name): return vanto.open(name).Width
        if __name__ == "__main__":
            with vanto.open():
                pass
            with multiprocessing.get_context("fork").Pool(1) as pool:
                try:
                    pool.map(work, ["SIM00001"])
                except vanto.ForkedError as error:
                    print("told")
        """
    )
    assert script.end() == (0, "told", "")


def test_a_simulation_of_the_parent_survives_its_children(own):
    script = Script(
        """
        import os, sys, vanto
        with vanto.simulate(1):
            child = os.fork()
            if child == 0:
                sys.exit(0)
            os.waitpid(child, 0)
            print(vanto.open().Width)
        """
    )
    assert script.end() == (0, "2048", "")


def test_errors_travel_between_processes(camera):
    with pytest.raises(vanto.OutOfRange) as caught:
        camera.Width = 5000
    again = pickle.loads(pickle.dumps(caught.value))
    assert (again.feature, again.range, str(again)) == ("Width", caught.value.range, str(caught.value))


def test_cameras_are_opened_and_closed_without_end(simulation):
    """VANTO_PYTHON_CYCLES says how often; 30 times without it."""
    cycles = int(os.environ.get("VANTO_PYTHON_CYCLES", "30"))

    def cycle():
        with vanto.open("SIM00001") as camera:
            camera.Width, camera.Height = 64, 32
            camera.features["Gain"].on_change(lambda feature: camera.Width)
            camera.Gain = 1
            list(camera.grab(2))

    def use():
        pages = int(pathlib.Path("/proc/self/statm").read_text().split()[1])
        return len(os.listdir("/proc/self/fd")), len(os.listdir("/proc/self/task")), pages * 4

    for _ in range(10):
        cycle()
    descriptors, threads, kilobytes = use()
    for _ in range(cycles):
        cycle()
    after = use()
    print(f"after {cycles} cycles: {descriptors} to {after[0]} descriptors, {kilobytes} to {after[2]} kB")
    assert after[0] <= descriptors
    assert after[1] <= threads + 1
    assert after[2] - kilobytes < 2000 + 4 * cycles
