# SPDX-License-Identifier: Apache-2.0
"""What tests of vanto share: simulated cameras, small images, and a record of what they call."""

import os
import pathlib
import re
import sys
import threading

import pytest
import vanto

PACKAGE = str(pathlib.Path(vanto.__file__).parent) + os.sep
CALLED = set()


def note(frame, event, argument):
    """Notes the functions of vanto that are called, those of the compiled part by the signature in their docstring."""
    if event == "call" and frame.f_code.co_filename.startswith(PACKAGE):
        CALLED.add(frame.f_code.co_qualname)
    elif event == "c_call" and (made := re.match(r"(\w+)\((?:self: vanto\._core\.(\w+))?", argument.__doc__ or "")):
        CALLED.add(f"_core.{made[2]}.{made[1]}" if made[2] else f"_core.{made[1]}")


def pytest_sessionstart():
    """every_test.py reads what VANTO_PYTHON_CALLS names a folder for."""
    if "VANTO_PYTHON_CALLS" in os.environ:
        threading.setprofile(note)
        sys.setprofile(note)


def pytest_sessionfinish(session):
    if "VANTO_PYTHON_CALLS" not in os.environ:
        return
    sys.setprofile(None)
    folder = pathlib.Path(os.environ["VANTO_PYTHON_CALLS"])
    folder.mkdir(parents=True, exist_ok=True)
    for name in {item.path.name for item in session.items}:
        (folder / name).write_text("\n".join(sorted(CALLED)))


@pytest.fixture(scope="module")
def simulation():
    with vanto.simulate(2) as cameras:
        yield cameras


@pytest.fixture
def camera(simulation):
    with vanto.open("SIM00001") as opened:
        opened.PixelFormat = "Mono8"
        opened.Width = 64
        opened.Height = 32
        yield opened


@pytest.fixture
def own():
    """A simulated camera that a test may unplug."""
    with vanto.simulate(1) as cameras:
        yield cameras
