# SPDX-License-Identifier: Apache-2.0
"""Cameras: found, opened, used."""

from __future__ import annotations

import os
from collections.abc import Callable
from types import TracebackType
from typing import Any

from vanto import _core, _log
from vanto._errors import UnknownFeature
from vanto._features import Feature, Features
from vanto._frames import Frame, Stream
from vanto._records import CameraRecord, SettingFault
from vanto._subscriptions import Subscription


def cameras() -> list[CameraRecord]:
    """Look for cameras on all enabled ports.

    A port without a camera takes a second or two. Ports in use are left out.
    """
    _log.follow()
    return [CameraRecord(*record) for record in _core.find_cameras()]


def open(camera: str | CameraRecord | None = None) -> Camera:
    """Open a camera: by serial number, name, full name or port, or as cameras() found it; without any the only one."""
    if camera is not None and not isinstance(camera, (str, CameraRecord)):
        raise TypeError(f"a camera is opened by a name or a record, not by {type(camera).__name__}")
    _log.follow()
    return Camera(_core.open(camera.full_name if isinstance(camera, CameraRecord) else camera))


class Camera:
    """A camera that is open until close, the end of its with block, or the end of this object.

    Features are attributes: camera.Width = 1024, camera.ExposureTime = "2 ms". A command is called:
    camera.TriggerSoftware(). All operations may be used from any thread.
    """

    __slots__ = ("_core", "_features", "_subscriptions", "_stream_features", "_transport_features", "__weakref__")

    def __init__(self, core: _core.Camera) -> None:
        """Make a camera of the library's; use vanto.open instead."""
        self._core = core
        self._subscriptions: set[Subscription] = set()
        self._features = Features(core.features(), self._subscriptions)
        self._stream_features: Features | None = None
        self._transport_features: Features | None = None

    # --- The camera ---

    @property
    def name(self) -> str:
        """For people: "Marlow H2048 (24000001)"."""
        return self._core.name()

    @property
    def record(self) -> CameraRecord:
        """What was found of it."""
        return CameraRecord(*self._core.record())

    @property
    def is_open(self) -> bool:
        """Whether it was not closed yet. A camera that is gone is open all the same."""
        return self._core.is_open()

    @property
    def is_gone(self) -> bool:
        """Whether it went away since it was opened, as far as an access has found out."""
        return self._core.is_gone()

    def close(self) -> None:
        """Stop its stream, give the camera its old baud rate back and let its port go.

        Waits of other threads end with CameraClosed, or without a frame. Does nothing the second time.
        """
        for subscription in list(self._subscriptions):
            subscription.cancel()
        self._core.close()

    def __enter__(self) -> Camera:
        """Give itself."""
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        """Close it."""
        self.close()

    def on_removal(self, callback: Callable[[], object]) -> Subscription:
        """Have something called once when the camera goes away; soon, when it is gone already.

        It is called on a thread of the module, which tells of one thing after the other. What finds out that a camera
        went away is an access to it.
        """
        if not callable(callback):
            raise TypeError(f"a callback is callable, which {callback!r} is not")
        return Subscription.register(self._subscriptions, callback, self._core.on_removal)

    # --- Features ---

    @property
    def features(self) -> Features:
        """The camera's features."""
        return self._features

    @property
    def stream_features(self) -> Features:
        """The features of the stream, the frame grabber's among them; raises GrabError without a frame grabber."""
        if self._stream_features is None:
            self._stream_features = Features(self._core.stream_features(), self._subscriptions)
        return self._stream_features

    @property
    def transport_features(self) -> Features:
        """The features of the connection, AutoCloseTimeout among them."""
        if self._transport_features is None:
            self._transport_features = Features(self._core.transport_features(), self._subscriptions)
        return self._transport_features

    def __getattr__(self, name: str) -> Any:
        """The value of a feature; of a command the feature itself, to be called."""
        if name.startswith("_"):
            raise AttributeError(name)
        return self._features._attribute(name)

    def __setattr__(self, name: str, value: object) -> None:
        """Set a feature, as Feature.value."""
        if name.startswith("_"):
            object.__setattr__(self, name, value)
        elif hasattr(type(self), name):
            raise AttributeError(f"'{name}' can't be set; a feature of this name is in features['{name}']")
        else:
            self._features[name].value = value

    def __dir__(self) -> list[str]:
        """Operations and features, for completion."""
        return [*super().__dir__(), *(self._features.names() if self.is_open else [])]

    def execute(self, command: str, timeout: float = 10.0) -> None:
        """Execute a command and wait until it is done; raises Timeout after so many seconds."""
        self._features[command].execute(timeout)

    def select(self, **selectors: object) -> Selection:
        """Set selectors for a with block: with camera.select(LineSelector="Line2"): ... Then they stand as before."""
        for name in selectors:
            self._features[name]
        return Selection(self._core, selectors)

    def save(self, path: str | os.PathLike[str]) -> list[SettingFault]:
        """Write all settings into a file, as 'vanto-cl save' does; returns features that could not be read."""
        return self._core.save(_path(path))

    def load(self, path: str | os.PathLike[str]) -> None:
        """Set what a file of save says; raises SettingsRefused where the camera did not take all of it."""
        self._core.load(_path(path))

    def read_registers(self, address: int, length: int) -> bytes:
        """Read bytes as the camera has them, past description and caches."""
        return self._core.read_registers(address, length)

    def write_registers(self, address: int, data: bytes) -> None:
        """Write all bytes in one access, past description and caches: features.refresh() drops what is cached."""
        self._core.write_registers(address, data)

    # --- Frames ---

    def grab(self, count: int) -> Stream:
        """Take so many frames: for frame in camera.grab(10). Raises GrabError where none can be taken."""
        if count < 0:
            raise ValueError("a count is not negative")
        stream = self.stream(count=count)
        if count == 0:
            stream.close()
        return stream

    def grab_one(self) -> Frame:
        """Take one frame."""
        with self.stream(buffers=2, count=1) as frames:
            return next(frames)

    def stream(self, buffers: int = 8, timeout: float = 5.0, count: int = 0) -> Stream:
        """Take frames until close, the end of its with block, or behind count of them.

        So many buffers wait for frames besides those that are held. Raises Timeout where none comes for timeout
        seconds.
        """
        if buffers < 1:
            raise ValueError("a stream has one buffer at least")
        _log.follow()
        return Stream(self._core.stream(buffers, timeout, count), self)

    def __repr__(self) -> str:
        """Name and state."""
        state = "gone" if self.is_gone else "open" if self.is_open else "closed"
        return f"<Camera {self.name}, {state}>"


class Selection:
    """Selectors that are set for a with block."""

    def __init__(self, camera: _core.Camera, selectors: dict[str, object]) -> None:
        """Make one that sets nothing yet."""
        self._camera = camera
        self._selectors = selectors
        self._set: list[_core.Subscription] = []

    def __enter__(self) -> Selection:
        """Set them, in their order."""
        try:
            for name, value in self._selectors.items():
                self._set.append(self._camera.select(name, value))
        except BaseException:
            self._put_back()
            raise
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        """Put them back; what goes wrong is logged."""
        self._put_back()

    def _put_back(self) -> None:
        while self._set:
            self._set.pop().cancel()


def _path(path: str | os.PathLike[str]) -> str:
    return os.fsdecode(path)


__all__ = ["Camera", "Selection", "Feature", "UnknownFeature", "cameras", "open"]
