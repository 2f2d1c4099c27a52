# SPDX-License-Identifier: Apache-2.0
"""Types say what the module does, and everything that is public is documented."""

import ast
import inspect
import os
import pathlib
import subprocess
import sys

import pytest
import vanto

PACKAGE = pathlib.Path(__file__).parents[2] / "python"
USE = """
import vanto

with vanto.open("24000001") as camera:
    camera.Width = 1024
    camera.ExposureTime = "2 ms"
    limits = camera.features["Gain"].range
    if limits is not None:
        print(limits.max)
    with camera.select(LineSelector="Line1"):
        camera.LineInverter = True
    for frame in camera.grab(10):
        print(frame.number, frame.array.mean())
    frames: list[vanto.Frame] = list(camera.stream(buffers=4, count=2))
records: list[vanto.CameraRecord] = vanto.cameras()
"""


@pytest.fixture(scope="module")
def check(tmp_path_factory):
    """Runs a module of mypy in a folder; what it found out about numpy is kept from one run to the next."""
    environment = dict(os.environ, MYPYPATH=str(PACKAGE), MYPY_CACHE_DIR=str(tmp_path_factory.mktemp("cache")))

    def run(folder, *arguments):
        command = [sys.executable, "-m", *arguments]
        return subprocess.run(command, cwd=folder, env=environment, capture_output=True, text=True)

    return run


def test_the_modules_are_typed_strictly(check, tmp_path):
    checked = check(tmp_path, "mypy", "--strict", "-p", "vanto")
    assert checked.returncode == 0, checked.stdout


def test_programs_that_use_it_are_typed_strictly(check, tmp_path):
    (tmp_path / "use.py").write_text(USE)
    checked = check(tmp_path, "mypy", "--strict", "use.py")
    assert checked.returncode == 0, checked.stdout
    (tmp_path / "misuse.py").write_text(USE + "\nvanto.open(5)\n")
    checked = check(tmp_path, "mypy", "--strict", "misuse.py")
    assert "misuse.py" in checked.stdout and "arg-type" in checked.stdout


# pybind11's classes have a metaclass of their own and take any arguments, to say that nobody makes them.
ALLOWED = r"""
vanto\._core\.[A-Z]\w+
vanto\._core\.[A-Z]\w+\.__init__
"""


def test_the_stubs_are_those_of_the_compiled_part(check, tmp_path):
    (tmp_path / "allowed").write_text(ALLOWED)
    checked = check(tmp_path, "mypy.stubtest", "vanto._core", "--allowlist", "allowed")
    assert checked.returncode == 0, checked.stdout + checked.stderr


def test_the_stubs_have_the_classes_of_the_compiled_part():
    stub = ast.parse((PACKAGE / "vanto" / "_core.pyi").read_text())
    described = {node.name for node in stub.body if isinstance(node, ast.ClassDef)}
    assert described == {name for name, value in vars(vanto._core).items() if inspect.isclass(value)}


def public_members(kind):
    for name, member in vars(kind).items():
        if not name.startswith("_") and (inspect.isfunction(member) or isinstance(member, (property, classmethod))):
            yield name, member


def test_everything_that_is_public_is_documented():
    for name in vanto.__all__:
        thing = getattr(vanto, name)
        assert inspect.getdoc(thing), name
        if inspect.isclass(thing):
            for member, value in public_members(thing):
                assert inspect.getdoc(value), f"{name}.{member}"


def test_all_is_what_is_public():
    public = {name for name, value in vars(vanto).items() if not name.startswith("_") and not inspect.ismodule(value)}
    assert public - {"annotations"} == set(vanto.__all__)
    assert list(vanto.__all__) == sorted(vanto.__all__)
