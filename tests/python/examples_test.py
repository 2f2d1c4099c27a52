# SPDX-License-Identifier: Apache-2.0
"""The examples, and the code of the documentation, do what they say."""

import doctest
import inspect
import os
import pathlib
import re
import subprocess
import sys

import numpy
import PIL.Image
import pytest
import vanto

ROOT = pathlib.Path(__file__).parents[2]


def run(folder, name, *arguments):
    program = ROOT / "examples" / "python" / name
    done = subprocess.run(
        [sys.executable, program, "--simulate", *arguments], cwd=folder, capture_output=True, text=True, timeout=120
    )
    assert (done.returncode, done.stderr) == (0, "")
    return done.stdout


def test_exposure_sweep_writes_a_table(tmp_path):
    output = run(tmp_path, "exposure_sweep.py", "--steps", "4")
    lines = (tmp_path / "exposure.csv").read_text().splitlines()
    assert lines[0] == "exposure,mean" and len(lines) == 5
    assert (tmp_path / "exposure.png").exists() or "python3-matplotlib" in output


def test_flat_field_writes_a_corrected_image(tmp_path):
    assert "spread of the pixels" in run(tmp_path, "flat_field.py", "--images", "2")
    assert numpy.load(tmp_path / "corrected.npy").shape == (2048, 2048)


def test_burst_to_tiff_writes_all_images(tmp_path):
    assert "5 images of 2048 x 2048" in run(tmp_path, "burst_to_tiff.py", "--count", "5")
    assert PIL.Image.open(tmp_path / "burst.tiff").n_frames == 5


def test_live_histogram_shows_bars(tmp_path):
    output = run(tmp_path, "live_histogram.py", "--count", "2")
    assert "▁" in output or "█" in output


def test_wait_for_trigger_saves_each_image(tmp_path):
    output = run(tmp_path, "wait_for_trigger.py", "--count", "2")
    assert output.count("trigger ") == 2
    assert {path.name for path in tmp_path.glob("*.png")} == {"trigger1.png", "trigger2.png"}


def test_each_example_is_run_here():
    ours = set(re.findall(r'"(\w+\.py)"', pathlib.Path(__file__).read_text()))
    assert {path.name for path in (ROOT / "examples" / "python").glob("*.py")} <= ours


def blocks(page):
    """The Python of a page, with the line where each piece begins."""
    text = (ROOT / page).read_text()
    for match in re.finditer(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        yield text[: match.start()].count("\n") + 2, match[1]


def execute(page, names):
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE)
    for line, code in blocks(page):
        if code.startswith(">>>"):
            test = doctest.DocTestParser().get_doctest(code, names, page, page, line - 1)
            report = []
            runner.run(test, out=report.append, clear_globs=False)
            names.update(test.globs)
            assert not report, "".join(report)
        else:
            exec(compile("\n" * (line - 1) + code, page, "exec"), names)


def test_the_code_of_the_guide_runs(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    execute("docs/python.md", {})


def test_the_code_of_the_read_me_runs(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    with vanto.simulate(1, serial_numbers=["24000001"]):
        execute("README.md", {})


def test_the_guide_has_everything_that_is_public():
    text = (ROOT / "docs" / "python.md").read_text()
    reference = text[text.index("## Reference") :]
    for name in vanto.__all__:
        thing = getattr(vanto, name)
        assert re.search(rf"`{name}\b", reference), name
        if not inspect.isclass(thing) or issubclass(thing, BaseException):
            continue
        for member in vars(thing):
            if not member.startswith("_") and not member.isupper() and member not in ("register",):
                assert re.search(rf"\b{member}\b", reference), f"{name}.{member}"
