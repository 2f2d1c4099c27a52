# SPDX-License-Identifier: Apache-2.0
"""Features are attributes of their camera."""

import pytest
import vanto


def test_numbers_are_read_and_set(camera):
    camera.Width = 1024
    assert camera.Width == 1024 and isinstance(camera.Width, int)
    camera.ExposureTime = 2500
    assert camera.ExposureTime == 2500.0 and isinstance(camera.ExposureTime, float)


def test_texts_are_taken_as_people_write_them(camera):
    camera.ExposureTime = "2 ms"
    assert camera.ExposureTime == 2000.0
    camera.Width = "0x100"
    assert camera.Width == 256


def test_entries_are_texts(camera):
    camera.PixelFormat = "mono12"
    assert camera.PixelFormat == "Mono12"


def test_commands_are_called(camera):
    camera.Gain = 3
    camera.UserSetSelector = "Default"
    camera.UserSetLoad()
    assert camera.Gain == 0.0
    camera.execute("UserSetLoad", timeout=5)


def test_a_feature_that_is_not_there_is_no_attribute(camera):
    assert not hasattr(camera, "NoSuchFeature")
    with pytest.raises(vanto.UnknownFeature, match="did you mean 'ExposureTime'") as caught:
        camera.ExposureTim = 5
    assert isinstance(caught.value, AttributeError)
    assert caught.value.feature == "ExposureTim"


def test_operations_are_not_overwritten(camera):
    with pytest.raises(AttributeError, match="'close' can't be set"):
        camera.close = 5


def test_completion_knows_features_and_operations(camera):
    names = dir(camera)
    assert {"ExposureTime", "PixelFormat", "UserSetLoad", "grab", "close"} <= set(names)
    camera.close()
    assert "ExposureTime" not in dir(camera)
