# SPDX-License-Identifier: Apache-2.0
"""Arguments of a wrong type are refused, each by an exception that says so, and change nothing."""

import pytest
import vanto

CALLS = {
    "open": lambda camera: vanto.open(1.5),
    "describe": lambda camera: vanto.describe(None),
    "simulate": lambda camera: vanto.simulate("2"),
    "simulate, models": lambda camera: vanto.simulate(1, models=5),
    "simulate, serial numbers": lambda camera: vanto.simulate(1, serial_numbers=5),
    "simulate, frame rate": lambda camera: vanto.simulate(1, frame_rate="fast"),
    "simulate, grabber": lambda camera: vanto.simulate(1, grabber=5),
    "cameras": lambda camera: vanto.cameras(1),
    "ports": lambda camera: vanto.ports(1),
    "an attribute": lambda camera: setattr(camera, "Width", [64]),
    "execute": lambda camera: camera.execute(5),
    "execute, timeout": lambda camera: camera.execute("UserSetLoad", timeout="long"),
    "a command": lambda camera: camera.UserSetLoad("long"),
    "select": lambda camera: camera.select(LineSelector=[1]).__enter__(),
    "save": lambda camera: camera.save(5),
    "load": lambda camera: camera.load(None),
    "read_registers": lambda camera: camera.read_registers("0", 4),
    "read_registers, length": lambda camera: camera.read_registers(0, -1),
    "write_registers": lambda camera: camera.write_registers("0", b"1"),
    "write_registers, data": lambda camera: camera.write_registers(0, "1"),
    "grab": lambda camera: camera.grab("1"),
    "grab_one": lambda camera: camera.grab_one(1),
    "stream, buffers": lambda camera: camera.stream(buffers="8"),
    "stream, timeout": lambda camera: camera.stream(timeout="1"),
    "stream, count": lambda camera: camera.stream(count="1"),
    "on_removal": lambda camera: camera.on_removal(None),
    "features": lambda camera: camera.features[5],
    "names": lambda camera: camera.features.names("all"),
    "on_change": lambda camera: camera.features["Width"].on_change(None),
    "value": lambda camera: setattr(camera.features["Width"], "value", None),
    "what is read only": lambda camera: setattr(camera.features["Width"], "range", None),
    "timeout of execute": lambda camera: camera.features["UserSetLoad"].execute(None),
    "clip": lambda camera: camera.features["Width"].range.clip("64"),
    "an entry": lambda camera: camera.features["PixelFormat"].entries[5],
    "try_next": lambda camera: camera.grab(0).try_next(1),
    "next": lambda camera: camera.grab(0).next("1"),
    "save of a frame": lambda camera: camera.grab_one().save(b"\xff".hex),
    "a camera": lambda camera: vanto.Camera(5),
    "the compiled part": lambda camera: vanto._core.Camera(),
}


@pytest.mark.parametrize("call", CALLS)
def test_wrong_types_are_refused(camera, call):
    before = camera.Width
    with pytest.raises((TypeError, ValueError, LookupError, AttributeError)):
        CALLS[call](camera)
    assert (camera.Width, camera.is_open) == (before, True)
    assert camera.grab_one().is_complete
