# SPDX-License-Identifier: Apache-2.0
"""What cameras, features and streams tell about themselves."""

from __future__ import annotations

import enum
from collections.abc import Iterator, Mapping
from dataclasses import dataclass, field
from typing import NamedTuple


class Kind(enum.Enum):
    """What kind of value a feature has."""

    INTEGER = 0
    FLOAT = 1
    BOOLEAN = 2
    ENUMERATION = 3
    STRING = 4
    REGISTER = 5
    COMMAND = 6
    CATEGORY = 7
    OTHER = 8


class Access(enum.Enum):
    """What may be done with a feature at present."""

    NOT_IMPLEMENTED = 0
    NOT_AVAILABLE = 1
    WRITE_ONLY = 2
    READ_ONLY = 3
    READ_WRITE = 4


class Visibility(enum.IntEnum):
    """For whom a feature is meant, from beginners to nobody."""

    BEGINNER = 0
    EXPERT = 1
    GURU = 2
    INVISIBLE = 3


class FrameStatus(enum.Enum):
    """What came of an image."""

    COMPLETE = 0
    CUT = 1
    """A part of the image is missing: Frame.size says how many bytes came."""
    FAILED = 2
    """There is no usable data; Frame.error says why."""


@dataclass(frozen=True)
class CameraRecord:
    """A camera as it was found. Texts that it does not tell are empty."""

    name: str
    """For people: "Marlow H2048 (24000001)"."""
    serial_number: str
    """The camera's own."""
    port: str
    """As CLProtocol names it: "COM_Port#ttyS0"."""
    full_name: str
    """Names this camera on this port and no other."""
    vendor: str
    """The camera's maker."""
    model: str
    """The camera's model."""
    properties: Mapping[str, str] = field(default_factory=dict, hash=False)
    """All of them, by name."""


@dataclass(frozen=True)
class Port:
    """A serial port that a Camera Link serial library offers."""

    name: str
    """As CLProtocol names it: "COM_Port#ttyS0"."""
    library: str
    """The file of the serial library."""
    maker: str
    """The maker of the serial library."""


@dataclass(frozen=True)
class Range:
    """What a number may be at present, both ends included."""

    min: int | float
    """The least value."""
    max: int | float
    """The greatest value."""
    step: int | float | None = None
    """From the least value on; None where every value between the ends is taken."""
    values: tuple[int | float, ...] = ()
    """The only values that are taken, where there is such a list."""

    def __contains__(self, value: object) -> bool:
        """Whether a number is between the ends, on a step, and in the list where there is one."""
        if isinstance(value, bool) or not isinstance(value, (int, float)):
            return False
        if not self.min <= value <= self.max:
            return False
        if self.values:
            return value in self.values
        return not (isinstance(self.step, int) and self.step > 1) or (value - self.min) % self.step == 0

    def clip(self, value: int | float) -> int | float:
        """The nearest value that is taken; of two equally near ones the lower."""
        if self.values:
            return min(self.values, key=lambda known: abs(known - value))
        value = min(max(value, self.min), self.max)
        if isinstance(self.step, int) and self.step > 1:
            steps, above = divmod(value - self.min, self.step)
            value = self.min + steps * self.step
            if above * 2 > self.step and value + self.step <= self.max:
                value += self.step
            return int(value)
        return value


class Entry(str):
    """An entry of an enumeration: its name, which values are, and what is known about it."""

    value: int
    """What stands in the camera's register."""
    display_name: str
    """For people."""
    documentation: str
    """May be empty."""
    available: bool
    """Whether it can be set at present."""

    def __new__(cls, name: str, value: int, display_name: str, documentation: str, available: bool) -> Entry:
        """Make an entry."""
        self = super().__new__(cls, name)
        self.value = value
        self.display_name = display_name
        self.documentation = documentation
        self.available = available
        return self

    def __getnewargs__(self) -> tuple[str, int, str, str, bool]:  # type: ignore[override]
        """What pickle needs."""
        return str(self), self.value, self.display_name, self.documentation, self.available

    @property
    def name(self) -> str:
        """The name, as values have it."""
        return str(self)

    def __str__(self) -> str:
        """The name."""
        return str.__str__(self)

    def __repr__(self) -> str:
        """The entry with its number."""
        return f"<Entry {str(self)}: {self.value}{'' if self.available else ', not available'}>"


class Entries(Mapping[str, Entry]):
    """The entries of an enumeration, by name and as attributes, in the order of the description."""

    def __init__(self, entries: list[Entry]) -> None:
        """Make a mapping of entries."""
        self._entries = {str(entry): entry for entry in entries}

    def __getitem__(self, name: str) -> Entry:
        """The entry of a name."""
        return self._entries[name]

    def __getattr__(self, name: str) -> Entry:
        """The entry of a name."""
        try:
            return self.__dict__["_entries"][name]  # type: ignore[no-any-return]
        except KeyError:
            raise AttributeError(f"there is no entry '{name}'") from None

    def __iter__(self) -> Iterator[str]:
        """The names."""
        return iter(self._entries)

    def __len__(self) -> int:
        """How many there are."""
        return len(self._entries)

    def __dir__(self) -> list[str]:
        """The names, for completion."""
        return [*super().__dir__(), *self._entries]

    def _ipython_key_completions_(self) -> list[str]:
        return list(self._entries)

    def __repr__(self) -> str:
        """The names."""
        return f"<Entries {', '.join(self._entries)}>"


class SettingFault(NamedTuple):
    """A feature that was not saved or not loaded, and why."""

    feature: str
    """Its name."""
    selectors: str
    """ "TriggerSelector=FrameStart"; empty without selectors."""
    reason: str
    """A sentence."""
    line: int
    """Of the file, from 1; 0 when saving."""


class StreamCounts(NamedTuple):
    """What became of the frames of one stream."""

    delivered: int
    """Handed out, cut ones among them."""
    missed: int
    """Lost between two that were delivered."""
    cut: int
    """Delivered without all of their bytes."""
    failed: int
    """Handed out without usable data."""
    bytes: int
    """Of all images that were delivered."""
