# SPDX-License-Identifier: Apache-2.0
"""Features take what people mean, and tell what they take."""

import numpy
import pytest
import vanto


@pytest.mark.parametrize(
    "value, expected",
    [
        (512, 512),
        (512.0, 512),
        ("512", 512),
        ("0x200", 512),
        (numpy.int64(512), 512),
        (numpy.uint8(128), 128),
        (numpy.float32(512), 512),
    ],
)
def test_integers_take_whatever_is_one(camera, value, expected):
    camera.Width = value
    assert camera.Width == expected


@pytest.mark.parametrize("value, expected", [(True, True), (0, False), ("on", True), (numpy.bool_(True), True)])
def test_switches_take_whatever_is_one(camera, value, expected):
    camera.ReverseX = not expected
    camera.ReverseX = value
    assert camera.ReverseX is expected


@pytest.mark.parametrize("text, expected", [("2 ms", 2000.0), ("0.5 s", 500000.0), ("70 us", 70.0), ("70", 70.0)])
def test_times_are_taken_in_any_unit(camera, text, expected):
    camera.ExposureTime = text
    assert camera.ExposureTime == expected


def test_texts_keep_all_their_letters(camera):
    camera.DeviceUserID = "grün"
    assert camera.DeviceUserID == "grün"
    assert camera.features["DeviceUserID"].text == "grün"
    camera.DeviceUserID = ""


@pytest.mark.parametrize("value", [None, [1], {}, object(), 1j, numpy.zeros(3)])
def test_what_no_feature_takes_is_a_type_error(camera, value):
    with pytest.raises(TypeError, match="a feature takes"):
        camera.Width = value


@pytest.mark.parametrize(
    "name, value",
    [("Width", "wide"), ("Width", "2 ms"), ("PixelFormat", "Mono7"), ("Gain", b"1"), ("ReverseX", 2)],
)
def test_a_value_of_another_kind_is_told_with_what_is_taken(camera, name, value):
    with pytest.raises(vanto.WrongType, match="It takes") as caught:
        camera.features[name].value = value
    assert isinstance(caught.value, TypeError) and isinstance(caught.value, ValueError)
    assert caught.value.feature == name
    assert caught.value.camera == "Marlow H2048 (SIM00001)"
    assert caught.value.allowed == camera.features[name].allowed


def test_a_value_out_of_range_is_told_with_the_range(camera):
    with pytest.raises(vanto.OutOfRange, match="must not be larger than 2048") as caught:
        camera.Width = 4096
    assert isinstance(caught.value, ValueError)
    assert caught.value.feature == "Width"
    assert caught.value.range == vanto.Range(16, 2048, 8)
    assert caught.value.allowed == "16 .. 2048 step 8 px"


def test_an_integer_of_too_many_bits_overflows(camera):
    with pytest.raises(OverflowError):
        camera.Width = 1 << 64


def test_what_is_read_only_can_not_be_set(camera):
    with pytest.raises(vanto.NotAccessible) as caught:
        camera.DeviceModelName = "other"
    assert caught.value.feature == "DeviceModelName"
    with pytest.raises(vanto.FeatureError):
        camera.features["UserSetLoad"].value
