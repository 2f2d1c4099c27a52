# SPDX-License-Identifier: Apache-2.0
"""Pixels as arrays: views where numpy has their type, unpacked ones where not."""

from __future__ import annotations

import math
import re
from typing import TYPE_CHECKING, Any

from vanto._errors import Error

if TYPE_CHECKING:
    import numpy

    Array = numpy.ndarray[Any, Any]

_FORMAT = re.compile(
    r"(?P<colours>Mono|Bayer[RGB]{2}|RGBa|BGRa|RGB|BGR|YUV422_|YUV|YCbCr422_|YCbCr)"
    r"(?P<bits>\d{1,2})(?P<signed>s)?(?P<rest>p32|p|Packed|_Planar|_UYVY?|_CbYCrY?|_CbYCr)?$"
)
_CHANNELS = {"RGB": 3, "BGR": 3, "RGBa": 4, "BGRa": 4, "YUV": 3, "YCbCr": 3, "YUV422_": 2, "YCbCr422_": 2}


def array(data: Any, pixel_format: str, height: int, width: int) -> Array:
    """The pixels of a buffer; raises Error for formats that have no such form."""
    import numpy

    parts = _FORMAT.match(pixel_format)
    if parts is None:
        raise Error(f"images of the pixel format '{pixel_format}' are not unpacked; their bytes are in 'data'")
    channels = _CHANNELS.get(parts["colours"], 1)
    bits = int(parts["bits"])
    shape = (height, width, channels) if channels > 1 else (height, width)
    if parts["rest"] in ("p", "Packed", "p32"):
        octets = numpy.frombuffer(data, numpy.uint8)
        return _UNPACK[parts["rest"]](octets, bits, math.prod(shape)).reshape(shape)
    kind = ("<i" if parts["signed"] else "<u") + ("1" if bits == 8 else "2")
    pixels = numpy.frombuffer(data, kind, math.prod(shape))
    if parts["rest"] == "_Planar":
        return numpy.moveaxis(pixels.reshape(channels, height, width), 0, -1)
    return pixels.reshape(shape)


def in_rgb_order(pixels: Array, pixel_format: str) -> Array:
    """Colours as files have them, 8 bits each; grey as it is."""
    import numpy

    parts = _FORMAT.match(pixel_format)
    colours = parts["colours"] if parts else ""
    if colours.startswith("Y"):
        raise Error(f"images of the pixel format '{pixel_format}' are not converted to colours")
    if parts is None or colours not in _CHANNELS:
        return pixels
    if colours.startswith("BGR"):
        pixels = pixels[..., [2, 1, 0, 3][: pixels.shape[-1]]]
    if pixels.dtype != numpy.uint8:
        pixels = pixels >> (int(parts["bits"]) - 8)
    return numpy.ascontiguousarray(pixels, numpy.uint8)


def _unpack_dense(octets: Array, bits: int, count: int) -> Array:
    """Values that lie bit by bit, the lowest first: "Mono10p"."""
    import numpy

    group = math.lcm(bits, 8) // 8  # bytes after which values begin at a byte again
    per_group = group * 8 // bits
    groups = -(-count // per_group)
    padded = numpy.zeros(groups * group + 1, numpy.uint8)  # one more, so that each value has two bytes to look at
    used = min(len(octets), groups * group)
    padded[:used] = octets[:used]
    values = numpy.empty((groups, per_group), numpy.uint16 if bits > 8 else numpy.uint8)
    for place in range(per_group):
        first, shift = divmod(place * bits, 8)
        value = numpy.zeros(groups, numpy.uint32)
        for more in range((shift + bits + 7) // 8):
            start = first + more
            value |= padded[start : start + groups * group : group].astype(numpy.uint32) << numpy.uint32(8 * more)
        values[:, place] = (value >> shift) & ((1 << bits) - 1)
    return values.reshape(-1)[:count]


def _unpack_pairs(octets: Array, bits: int, count: int) -> Array:
    """Two values in three bytes, the low bits of both in the middle one: "Mono12Packed"."""
    import numpy

    pairs = -(-count // 2)
    padded = numpy.zeros(pairs * 3, numpy.uint16)
    used = min(len(octets), pairs * 3)
    padded[:used] = octets[:used]
    first, middle, last = padded.reshape(-1, 3).T
    low = bits - 8
    mask = (1 << low) - 1
    values = numpy.empty((pairs, 2), numpy.uint16)
    values[:, 0] = first << low | middle & mask
    values[:, 1] = last << low | middle >> 4 & mask
    return values.reshape(-1)[:count]


def _unpack_words(octets: Array, bits: int, count: int) -> Array:
    """Three values in a 32-bit word, the lowest first: "RGB10p32"."""
    import numpy

    words = octets[: count // 3 * 4].view("<u4")
    values = numpy.empty((len(words), 3), numpy.uint16)
    for place in range(3):
        values[:, place] = words >> (bits * place) & ((1 << bits) - 1)
    return values.reshape(-1)


_UNPACK = {"p": _unpack_dense, "Packed": _unpack_pairs, "p32": _unpack_words}
