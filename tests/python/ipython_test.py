# SPDX-License-Identifier: Apache-2.0
"""IPython completes features and entries with the tab key, and shows things as people read them."""

import pytest
import vanto
from IPython.core.completer import provisionalcompleter
from IPython.core.interactiveshell import InteractiveShell


@pytest.fixture(params=[True, False], ids=["with jedi", "without jedi"])
def shell(request, camera, tmp_path, monkeypatch):
    monkeypatch.setenv("IPYTHONDIR", str(tmp_path))
    shell = InteractiveShell()
    shell.Completer.use_jedi = request.param
    shell.user_ns.update(vanto=vanto, camera=camera, entries=camera.features["PixelFormat"].entries)
    yield shell
    shell.history_manager.end_session()


def completed(shell, text):
    """What the tab key makes of a text."""
    with provisionalcompleter():
        return {text[: one.start] + one.text for one in shell.Completer.completions(text, len(text))}


def shown(shell, text):
    return shell.display_formatter.format(shell.ev(text))[0]["text/plain"]


@pytest.mark.parametrize(
    "text, some",
    [
        ("camera.Expos", {"camera.ExposureTime", "camera.ExposureMode"}),
        ("camera.gr", {"camera.grab", "camera.grab_one"}),
        ("camera.features.Expos", {"camera.features.ExposureTime", "camera.features.ExposureMode"}),
        ("camera.features['Expos", {"camera.features['ExposureTime", "camera.features['ExposureMode"}),
        ("camera.stream_features['Payl", {"camera.stream_features['PayloadSize"}),
        ("entries.Mono1", {"entries.Mono10", "entries.Mono12", "entries.Mono16"}),
        ("entries['Mono1", {"entries['Mono10", "entries['Mono12", "entries['Mono16"}),
        ("vanto.cam", {"vanto.cameras"}),
        ("x = camera.str", {"x = camera.stream", "x = camera.stream_features"}),
    ],
)
def test_the_tab_key_completes(shell, text, some):
    found = completed(shell, text)
    assert some <= found
    assert all(one.startswith(text) for one in found)


def test_a_camera_that_is_closed_completes_operations_only(shell, camera):
    camera.close()
    assert completed(shell, "camera.Expos") == set()
    assert "camera.close" in completed(shell, "camera.cl")


@pytest.mark.parametrize(
    "text, output",
    [
        ("camera", "<Camera Marlow H2048 (SIM00001), open>"),
        ("camera.features.Width", "<Feature Width = 64 px, takes 16 .. 2048 step 8 px>"),
        ("camera.features.PixelFormat", "<Feature PixelFormat = Mono8, takes Mono8, Mono10, Mono12, Mono16>"),
        ("camera.features.UserSetLoad", "<Feature UserSetLoad: command, write only>"),
        ("camera.UserSetLoad", "<Feature UserSetLoad: command, write only>"),
        ("entries", "<Entries Mono8, Mono10, Mono12, Mono16>"),
        ("camera.features.Width.range", "Range(min=16, max=2048, step=8, values=())"),
        ("camera.grab_one()", "<Frame 1: 64 x 32 Mono8>"),
    ],
)
def test_things_are_shown_as_people_read_them(shell, text, output):
    assert shown(shell, text) == output


def test_what_can_not_be_asked_is_shown_all_the_same(shell, camera):
    feature = camera.features["Width"]
    shell.user_ns["feature"] = feature
    camera.close()
    assert shown(shell, "camera") == "<Camera Marlow H2048 (SIM00001), closed>"
    assert shown(shell, "feature") == "<Feature Width: Marlow H2048 (SIM00001) was closed>"
    assert "was closed" in shown(shell, "camera.features")


def test_help_tells_what_an_operation_does(shell):
    assert "for frame in camera.grab(10)" in shell.object_inspect_text("camera.grab")
