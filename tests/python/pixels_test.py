# SPDX-License-Identifier: Apache-2.0
"""Packed pixels are unpacked: against values that were packed bit by bit."""

import numpy
import pytest
import vanto
from vanto import _pixels


def dense(values, bits):
    """Values one behind the other, the lowest bit first."""
    number = sum(int(value) << (place * bits) for place, value in enumerate(values))
    return number.to_bytes(-(-len(values) * bits // 8), "little")


def pairs(values, bits):
    """Two values in three bytes, as GigE Vision packs them."""
    low, octets = bits - 8, bytearray()
    values = list(values) + [0] * (len(values) % 2)
    for first, second in zip(values[::2], values[1::2]):
        mask = (1 << low) - 1
        octets += bytes([first >> low, first & mask | (second & mask) << 4, second >> low])
    return bytes(octets)


def some(count, bits):
    return numpy.random.default_rng(bits).integers(0, 1 << bits, count).tolist()


@pytest.mark.parametrize("width, height", [(8, 4), (5, 3), (7, 1), (1, 1)])
@pytest.mark.parametrize(
    "name, bits",
    [
        ("Mono1p", 1),
        ("Mono2p", 2),
        ("Mono4p", 4),
        ("Mono10p", 10),
        ("Mono12p", 12),
        ("Mono14p", 14),
        ("BayerRG10p", 10),
        ("BayerBG12p", 12),
    ],
)
def test_dense_values_are_unpacked(name, bits, width, height):
    values = some(width * height, bits)
    array = _pixels.array(dense(values, bits), name, height, width)
    assert array.shape == (height, width)
    assert array.dtype == (numpy.uint8 if bits <= 8 else numpy.uint16)
    assert array.reshape(-1).tolist() == values


@pytest.mark.parametrize("name, bits", [("Mono10Packed", 10), ("Mono12Packed", 12), ("BayerGR12Packed", 12)])
@pytest.mark.parametrize("width, height", [(8, 4), (5, 3)])
def test_pairs_are_unpacked(name, bits, width, height):
    values = some(width * height, bits)
    array = _pixels.array(pairs(values, bits), name, height, width)
    assert array.dtype == numpy.uint16
    assert array.reshape(-1).tolist() == values


@pytest.mark.parametrize("name, bits", [("RGB10p", 10), ("BGR12p", 12)])
def test_dense_colours_are_unpacked(name, bits):
    values = some(4 * 2 * 3, bits)
    array = _pixels.array(dense(values, bits), name, 2, 4)
    assert array.shape == (2, 4, 3)
    assert array.reshape(-1).tolist() == values


def test_colours_in_words_are_unpacked():
    values = some(4 * 2 * 3, 10)
    words = numpy.array([r | g << 10 | b << 20 for r, g, b in zip(values[::3], values[1::3], values[2::3])], "<u4")
    assert _pixels.array(words.tobytes(), "RGB10p32", 2, 4).reshape(-1).tolist() == values


@pytest.mark.parametrize("name", ["RGB8_Planar", "RGB10_Planar"])
def test_planes_become_channels_without_a_copy(name):
    kind = "u1" if name == "RGB8_Planar" else "<u2"
    planes = numpy.arange(3 * 2 * 4, dtype=kind).reshape(3, 2, 4)
    array = _pixels.array(planes.tobytes(), name, 2, 4)
    assert array.shape == (2, 4, 3) and not array.flags.owndata
    assert (array[..., 1] == planes[1]).all()


@pytest.mark.parametrize(
    "name, shape",
    [
        ("RGBa8", (2, 4, 4)),
        ("BGR8", (2, 4, 3)),
        ("RGB16", (2, 4, 3)),
        ("YUV422_8", (2, 4, 2)),
        ("YUV422_8_UYVY", (2, 4, 2)),
        ("YCbCr422_8", (2, 4, 2)),
        ("YUV8_UYV", (2, 4, 3)),
    ],
)
def test_plain_colours_are_views(name, shape):
    data = bytes(2 * 4 * 8)
    array = _pixels.array(data, name, 2, 4)
    assert array.shape == shape and not array.flags.owndata


def test_signed_grey_is_signed():
    assert _pixels.array(b"\xff\x01", "Mono8s", 1, 2).tolist() == [[-1, 1]]


@pytest.mark.parametrize("name", ["YUV411_8_UYYVYY", "RGB565p", "RGB10V1Packed", "0x01080099", ""])
def test_other_formats_are_left_as_bytes(name):
    with pytest.raises(vanto.Error, match="their bytes are in 'data'"):
        _pixels.array(bytes(64), name, 2, 4)


def test_colours_come_in_the_order_of_files():
    pixels = numpy.array([[[1, 2, 3]]], numpy.uint8)
    assert _pixels.in_rgb_order(pixels, "BGR8").tolist() == [[[3, 2, 1]]]
    assert _pixels.in_rgb_order(pixels, "RGB8").tolist() == [[[1, 2, 3]]]
    deep = numpy.array([[[1023, 512, 4]]], numpy.uint16)
    assert _pixels.in_rgb_order(deep, "RGB10").tolist() == [[[255, 128, 1]]]
    with pytest.raises(vanto.Error, match="not converted"):
        _pixels.in_rgb_order(pixels, "YUV8_UYV")
