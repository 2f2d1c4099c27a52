# SPDX-License-Identifier: Apache-2.0
"""A cable is pulled at every moment, and the camera is opened again when it is back."""

import threading

import pytest
import vanto


def test_a_camera_that_is_gone_says_so(own):
    camera = vanto.open()
    own.unplug()
    with pytest.raises(vanto.CameraGone, match="is gone. Is its cable plugged in") as caught:
        camera.DeviceTemperature
    assert isinstance(caught.value, ConnectionError)
    assert caught.value.camera == "Marlow H2048 (SIM00001)"
    assert camera.is_gone and "gone" in repr(camera)
    with pytest.raises(vanto.CameraGone):
        camera.Width = 64
    camera.close()


def test_removal_is_told_once(own):
    with vanto.open() as camera:
        told = threading.Semaphore(0)
        camera.on_removal(told.release)
        own.unplug()
        with pytest.raises(vanto.CameraGone):
            camera.DeviceTemperature
        assert told.acquire(timeout=30)
        with pytest.raises(vanto.CameraGone):
            camera.DeviceTemperature
        assert not told.acquire(blocking=False)
        late = threading.Event()
        camera.on_removal(late.set)
        assert late.wait(30)


def test_removal_is_not_told_to_who_cancelled(own):
    with vanto.open() as camera:
        told = threading.Event()
        kept = threading.Event()
        camera.on_removal(told.set).cancel()
        camera.on_removal(kept.set)
        own.unplug()
        with pytest.raises(vanto.CameraGone):
            camera.DeviceTemperature
        assert kept.wait(30) and not told.is_set()


def test_a_camera_may_be_closed_in_its_removal_callback(own):
    camera = vanto.open()
    closed = threading.Event()
    camera.on_removal(lambda: (camera.close(), closed.set()))
    own.unplug()
    with pytest.raises(vanto.CameraGone):
        camera.DeviceTemperature
    assert closed.wait(30) and not camera.is_open


def test_a_camera_that_is_back_is_opened_anew(own):
    for _ in range(3):
        with vanto.open() as camera:
            camera.Width = 512
            own.unplug()
            with pytest.raises(vanto.CameraGone):
                camera.DeviceTemperature
        with pytest.raises(vanto.NoCamera):
            vanto.open()
        own.plug()
        with vanto.open() as camera:
            assert camera.Width == 2048


def test_a_stream_ends_when_the_camera_goes(own):
    with vanto.open() as camera:
        camera.Width, camera.Height = 64, 32
        with camera.stream() as stream:
            frame = next(stream)
            own.unplug()
            with pytest.raises(vanto.CameraGone):
                camera.DeviceTemperature
            with pytest.raises(vanto.CameraGone):
                while True:
                    next(stream)
        assert frame.array.shape == (32, 64)


def session(path):
    """Uses a camera in all ways."""
    with vanto.open() as camera:
        camera.Width, camera.Height = 64, 32
        camera.features["Gain"].on_change(lambda feature: feature.value)
        camera.Gain = 3
        list(camera.grab(1))
        with camera.select(LineSelector="Line2"):
            camera.features.refresh()
            camera.LineInverter
        camera.save(path)
        camera.load(path)
        camera.UserSetLoad()


def packets(own):
    return int(own.command("stats cam0").split("packets-in=")[1].split()[0])


def test_a_cable_is_pulled_at_every_moment(own, tmp_path):
    session(tmp_path / "settings")
    begin = packets(own)
    session(tmp_path / "settings")
    count = packets(own) - begin
    assert count > 100
    for moment in [*range(1, 40, 2), *range(40, count, count // 15)]:
        own.command(f"drop-after cam0 {moment}")
        with pytest.raises(vanto.Error) as caught:
            session(tmp_path / "settings")
        assert not isinstance(caught.value, vanto.FeatureError), f"at packet {moment}: {caught.value!r}"
        own.plug()
    session(tmp_path / "settings")
