# SPDX-License-Identifier: Apache-2.0
"""Frames are taken as numpy arrays."""

import numpy
import pytest
import vanto


def test_so_many_frames_come_as_are_wanted(camera):
    frames = list(camera.grab(10))
    numbers = [frame.number for frame in frames]
    assert len(numbers) == 10 and numbers == sorted(set(numbers))
    for frame in frames:
        assert frame.array.shape == (32, 64)
        assert frame.array.dtype == numpy.uint8
        assert frame.status is vanto.FrameStatus.COMPLETE


def test_none_come_when_none_are_wanted(camera):
    assert list(camera.grab(0)) == []
    assert camera.grab_one().is_complete


def test_a_count_is_not_negative(camera):
    with pytest.raises(ValueError, match="not negative"):
        camera.grab(-1)


def test_an_array_is_a_view_of_the_buffer(camera):
    frame = camera.grab_one()
    first, second = frame.array, frame.array
    assert not first.flags.owndata
    assert numpy.shares_memory(first, second)
    assert numpy.shares_memory(first, numpy.frombuffer(frame.data, numpy.uint8))


def test_a_frame_outlives_its_camera(simulation):
    with vanto.open("SIM00001") as camera:
        array = camera.grab_one().array
    assert array.mean() > 0
