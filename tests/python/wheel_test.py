# SPDX-License-Identifier: Apache-2.0
"""A wheel of the installed tree works in an environment that knows nothing else, without a network."""

import pathlib
import re
import subprocess
import sys
import zipfile

import pytest
import vanto

ROOT = pathlib.Path(__file__).parents[2]
BUILD = pathlib.Path(vanto.__file__).parents[4]
USE = """
import vanto
print(vanto.__file__)
with vanto.simulate(1), vanto.open() as camera:
    print(camera.name, camera.grab_one().array.shape)
"""


def quietly(*command, **options):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=250, **options)
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


@pytest.fixture(scope="module")
def wheel(tmp_path_factory):
    folder = tmp_path_factory.mktemp("wheel")
    for component in ("libraries", "tools", "python"):
        quietly("cmake", "--install", BUILD, "--prefix", folder / "tree", "--component", component)
    return pathlib.Path(quietly(sys.executable, ROOT / "packaging" / "make-wheel.py", folder / "tree", folder).strip())


def test_the_wheel_is_installed_from_its_file_and_works(wheel, tmp_path):
    quietly("/usr/bin/python3", "-m", "venv", "--system-site-packages", tmp_path / "lab")
    quietly(tmp_path / "lab" / "bin" / "pip", "install", "--no-index", "--quiet", wheel)
    bare = {"PATH": "/usr/bin:/bin", "HOME": str(tmp_path)}
    place, camera = quietly(tmp_path / "lab" / "bin" / "python3", "-c", USE, env=bare, cwd=tmp_path).splitlines()
    assert place.startswith(str(tmp_path / "lab"))
    assert camera == "Marlow H2048 (SIM00001) (2048, 2048)"
    quietly(tmp_path / "lab" / "bin" / "pip", "uninstall", "--yes", "vanto")
    assert not list((tmp_path / "lab").rglob("*vanto*"))


def test_the_wheel_names_nothing_of_the_machine_that_made_it(wheel):
    with zipfile.ZipFile(wheel) as archive:
        for name in archive.namelist():
            assert str(BUILD).encode() not in archive.read(name), name


def test_the_wheel_says_what_it_is(wheel):
    assert re.fullmatch(rf"vanto-{re.escape(vanto.__version__)}-cp311-cp311-linux_x86_64\.whl", wheel.name)
    with zipfile.ZipFile(wheel) as archive:
        names = archive.namelist()
        assert archive.testzip() is None
    needed = {"vanto/py.typed", "vanto/_core.pyi", "vanto/tree/bin/marlow-sim", "vanto/tree/lib/clsertty.so"}
    assert needed <= set(names)
    assert not [name for name in names if "__pycache__" in name]


def test_what_takes_long_to_import_is_imported_when_it_is_needed():
    loaded = quietly(sys.executable, "-c", "import sys, vanto; print({'numpy', 'asyncio', 'PIL'} & set(sys.modules))")
    assert loaded.strip() == "set()"
