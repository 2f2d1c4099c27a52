# SPDX-License-Identifier: Apache-2.0
"""Features of cameras."""

from __future__ import annotations

from collections.abc import Callable, Iterator, Mapping
from typing import Any

from vanto import _core
from vanto._errors import OutOfRange
from vanto._records import Access, Entries, Entry, Kind, Range, Visibility
from vanto._subscriptions import Subscription

_ACCESS_WORDS = {
    Access.NOT_IMPLEMENTED: "not implemented",
    Access.NOT_AVAILABLE: "not available",
    Access.WRITE_ONLY: "write only",
    Access.READ_ONLY: "read only",
    Access.READ_WRITE: "read and write",
}


class Feature:
    """One feature of a camera: its value and all that is known about it.

    A handle: keep it, use it from any thread. After the camera was closed it raises CameraClosed.
    """

    __slots__ = ("_core", "_owner", "_name", "_kind")

    def __init__(self, core: _core.Feature, owner: set[Subscription]) -> None:
        """Make a handle of the library's."""
        self._core = core
        self._owner = owner
        self._name = core.name()
        self._kind = Kind(core.kind())

    @property
    def name(self) -> str:
        """The name, as the camera's description spells it."""
        return self._name

    @property
    def kind(self) -> Kind:
        """What kind of value it has."""
        return self._kind

    @property
    def display_name(self) -> str:
        """The name for people; the name itself where the description has no other."""
        return self._core.display_name()

    @property
    def tool_tip(self) -> str:
        """One sentence; empty where the description has none."""
        return self._core.tool_tip()

    @property
    def documentation(self) -> str:
        """The documentation, or the one sentence where there is no more; empty where the description has none."""
        return self._core.description() or self._core.tool_tip()

    @property
    def visibility(self) -> Visibility:
        """For whom it is meant."""
        return Visibility(self._core.visibility())

    @property
    def unit(self) -> str:
        """The unit of its value, "us" or "Hz"; empty for none."""
        return self._core.unit()

    @property
    def is_setting(self) -> bool:
        """Whether it belongs to what Camera.save writes."""
        return self._core.is_streamable()

    @property
    def selectors(self) -> list[str]:
        """Names of the features that select what this one is about."""
        return [feature.name() for feature in self._core.selectors()]

    @property
    def selected(self) -> list[str]:
        """Names of the features that this one selects; none when it is no selector."""
        return [feature.name() for feature in self._core.selected()]

    @property
    def access(self) -> Access:
        """What may be done with it at present."""
        return Access(self._core.access())

    @property
    def is_readable(self) -> bool:
        """Whether its value can be read at present."""
        return self.access in (Access.READ_ONLY, Access.READ_WRITE)

    @property
    def is_writable(self) -> bool:
        """Whether its value can be set, or a command be executed, at present."""
        return self.access in (Access.WRITE_ONLY, Access.READ_WRITE)

    @property
    def is_available(self) -> bool:
        """Whether anything can be done with it at present."""
        return self.access not in (Access.NOT_IMPLEMENTED, Access.NOT_AVAILABLE)

    @property
    def range(self) -> Range | None:
        """The limits of a number at present; None for features of other kinds."""
        limits = self._core.range()
        if limits is None:
            return None
        least, most, step, values = limits
        return Range(least, most, step, tuple(values))

    @property
    def step(self) -> int | float | None:
        """The step of a number, from its least value on; None where it takes every value."""
        limits = self.range
        return limits.step if limits is not None else None

    @property
    def entries(self) -> Entries:
        """The entries of an enumeration in the order of the description; none for features of other kinds."""
        return Entries([Entry(*entry) for entry in self._core.entries()])

    @property
    def allowed(self) -> str:
        """What it takes at present, as people read it: "16 .. 2048 step 8 px"; empty where it takes anything."""
        return self._core.allowed()

    @property
    def value(self) -> Any:
        """The value: int, float, bool, str (the entry of an enumeration, too) or bytes.

        Set it to a number, a bool, an entry, bytes, or a text as people write it: "2 ms", "0x10", "on".
        """
        return self._core.value()

    @value.setter
    def value(self, value: object) -> None:
        try:
            self._core.set_value(value)
        except OutOfRange as error:
            error.range = self._range_if_known()
            raise

    def _range_if_known(self) -> Range | None:
        try:
            return self.range
        except Exception:  # the error that is on its way is the one to tell
            return None

    @property
    def text(self) -> str:
        """The value in a notation that setting takes."""
        return self._core.text()

    def refresh(self) -> None:
        """Drop what is cached of it: the next read asks the camera."""
        self._core.refresh()

    def execute(self, timeout: float = 10.0) -> None:
        """Execute a command and wait until it is done; raises Timeout after so many seconds."""
        self._core.execute(timeout)

    def start(self) -> None:
        """Execute a command without waiting."""
        self._core.start()

    @property
    def is_done(self) -> bool:
        """Whether a command that was started is done; asks the camera."""
        return self._core.is_done()

    def __call__(self, timeout: float = 10.0) -> None:
        """Execute a command, as execute."""
        self.execute(timeout)

    def on_change(self, callback: Callable[[Feature], object]) -> Subscription:
        """Have something called when value, range or access may have changed.

        It is called on the thread that made the change, and may use all features. What it raises goes to
        sys.unraisablehook. It stays registered until the result is cancelled or the camera is closed.
        """
        if not callable(callback):
            raise TypeError(f"a callback is callable, which {callback!r} is not")
        return Subscription.register(self._owner, lambda: callback(self), self._core.on_change)

    def __repr__(self) -> str:
        """Name, value, and what it takes; for interactive use."""
        try:
            return f"<Feature {self._facts()}>"
        except Exception as error:
            return f"<Feature {self._name}: {error}>"

    def _facts(self) -> str:
        access = self.access
        if self._kind in (Kind.COMMAND, Kind.CATEGORY, Kind.OTHER) or not self.is_readable:
            return f"{self._name}: {self._kind.name.lower()}, {_ACCESS_WORDS[access]}"
        unit = f" {self.unit}" if self.unit else ""
        taken = f", takes {self.allowed}" if access is Access.READ_WRITE and self.allowed else ""
        return f"{self._name} = {self.text}{unit}{taken or ', ' + _ACCESS_WORDS[access]}"


class Features(Mapping[str, Feature]):
    """The features of a camera, of its stream, or of its transport layer; by name and as attributes."""

    def __init__(self, core: _core.FeatureMap, owner: set[Subscription]) -> None:
        """Make a mapping of the library's."""
        self._core = core
        self._owner = owner
        self._known: dict[str, Feature] = {}

    def __getitem__(self, name: str) -> Feature:
        """The feature of a name; raises UnknownFeature, which names a similar one."""
        feature = self._known.get(name)
        if feature is None:
            feature = self._known[name] = Feature(self._core.get(name), self._owner)
        return feature

    def __getattr__(self, name: str) -> Feature:
        """The feature of a name."""
        if name.startswith("_"):
            raise AttributeError(name)
        return self[name]

    def _attribute(self, name: str) -> Any:
        """The value of a feature; of a command the feature itself. In few steps, as programs read them in loops."""
        feature = self._known.get(name)
        if feature is None:
            feature = self[name]
        return feature if feature._kind is Kind.COMMAND else feature._core.value()

    def __contains__(self, name: object) -> bool:
        """Whether there is a feature of this name."""
        return isinstance(name, str) and self._core.find(name) is not None

    def __iter__(self) -> Iterator[str]:
        """The names of all features that are implemented, in the order of the description."""
        return iter(self.names())

    def __len__(self) -> int:
        """How many there are."""
        return len(self.names())

    def names(self, visibility: Visibility = Visibility.INVISIBLE) -> list[str]:
        """The names of all features that are implemented, and meant for those users or for less experienced ones."""
        return self._core.names(Visibility(visibility))

    def refresh(self) -> None:
        """Drop what is cached of all features: the next reads ask the camera."""
        self._core.refresh()

    def __dir__(self) -> list[str]:
        """The names, for completion."""
        return [*super().__dir__(), *self.names()]

    def _ipython_key_completions_(self) -> list[str]:
        return self.names()

    def __repr__(self) -> str:
        """How many there are."""
        try:
            return f"<Features: {len(self)}>"
        except Exception as error:
            return f"<Features: {error}>"
