# SPDX-License-Identifier: Apache-2.0
"""Frames and streams of them."""

from __future__ import annotations

import os
from collections.abc import AsyncIterator, Iterator
from types import TracebackType
from typing import TYPE_CHECKING, Any

from vanto import _core, _pixels
from vanto._errors import Error
from vanto._log import logger
from vanto._records import FrameStatus, StreamCounts

if TYPE_CHECKING:
    import asyncio

    import numpy
    import PIL.Image  # type: ignore[import]

    from vanto._camera import Camera


class Frame:
    """One image, in the buffer it was put into.

    The buffer goes back to the camera's queue when this frame and all arrays of it are gone; until then it stays as it
    is, whatever becomes of stream and camera.
    """

    __slots__ = ("_core", "__weakref__")

    def __init__(self, core: _core.Frame) -> None:
        """Make a frame of the library's."""
        self._core = core

    @property
    def number(self) -> int:
        """Counts from 1 within its stream, lost frames included where the frame grabber tells of them."""
        return self._core.number()

    @property
    def missed(self) -> int:
        """How many frames were lost between this one and the one before."""
        return self._core.missed()

    @property
    def tag(self) -> int:
        """The number that the frame grabber gave it; 0 for a failed one."""
        return self._core.tag()

    @property
    def time(self) -> float:
        """When it was taken from the queue, as time.time() tells it."""
        return self._core.time()

    @property
    def status(self) -> FrameStatus:
        """What came of the image."""
        return FrameStatus(self._core.status())

    @property
    def is_complete(self) -> bool:
        """Whether all of the image is there."""
        return self.status is FrameStatus.COMPLETE

    @property
    def error(self) -> str:
        """Why a frame failed; empty for others."""
        return self._core.error()

    @property
    def width(self) -> int:
        """In pixels; 0 for a failed frame."""
        return self._core.width()

    @property
    def height(self) -> int:
        """In lines; 0 for a failed frame."""
        return self._core.height()

    @property
    def offset_x(self) -> int:
        """In pixels."""
        return self._core.offset_x()

    @property
    def offset_y(self) -> int:
        """In lines."""
        return self._core.offset_y()

    @property
    def size(self) -> int:
        """Bytes of the image that are there."""
        return self._core.size()

    @property
    def pixel_format(self) -> str:
        """As PFNC names it: "Mono8"; a number for a type without a name, empty when unknown."""
        return self._core.pixel_format()

    @property
    def bits_per_pixel(self) -> int:
        """That a pixel takes in memory; 0 when unknown."""
        return self._core.bits_per_pixel()

    @property
    def data(self) -> memoryview:
        """The bytes of the image where they lie, whatever its pixel format."""
        return memoryview(self._core)  # type: ignore[arg-type]

    @property
    def array(self) -> numpy.ndarray[Any, Any]:
        """The image: height x width, or height x width x channels.

        A view of the buffer without a copy where numpy has such a type: 8 and 16 bits, grey, Bayer and colours. Packed
        formats are unpacked into a new array. Colours stand as the format has them: RGB8 as red, green, blue, BGR8 the
        other way round. Raises Error for a frame that is not complete.
        """
        self._require_image()
        return _pixels.array(self._core, self.pixel_format, self.height, self.width)

    def image(self) -> PIL.Image.Image:
        """The image for PIL: grey ("L", "I;16") or "RGB"; Bayer formats as grey. Needs the package python3-pil."""
        import PIL.Image

        pixels = _pixels.in_rgb_order(self.array, self.pixel_format)
        return PIL.Image.fromarray(pixels)

    def save(self, path: str | os.PathLike[str]) -> None:
        """Write the image into a file, whose name chooses the format: .png, .pgm, .ppm, .tiff or .raw."""
        self._core.save(os.fsdecode(path))

    def _require_image(self) -> None:
        status = self.status
        if status is FrameStatus.FAILED:
            raise Error(f"frame {self.number} has no image: {self.error}")
        if status is FrameStatus.CUT:
            raise Error(f"frame {self.number} is cut: {self.size} bytes came, which are in its data")

    def __repr__(self) -> str:
        """Number, size and state."""
        lost = f", {self.missed} lost before" if self.missed else ""
        if self.status is FrameStatus.FAILED:
            return f"<Frame {self.number}: failed: {self.error}{lost}>"
        cut = ", cut" if self.status is FrameStatus.CUT else ""
        return f"<Frame {self.number}: {self.width} x {self.height} {self.pixel_format}{cut}{lost}>"


class Stream(Iterator[Frame], AsyncIterator[Frame]):
    """A running acquisition: iterate over it, with for or async for. It ends with close or its with block.

    Several threads may take frames of it; each gets others. It keeps its camera.
    """

    def __init__(self, core: _core.FrameStream, camera: Camera) -> None:
        """Make a stream of the library's; use Camera.stream or Camera.grab instead."""
        self._core = core
        self._camera = camera
        self._told = False
        self._pending: asyncio.Future[Frame | None] | None = None

    def next(self, timeout: float | None = None) -> Frame | None:
        """Wait for the next frame, None when the stream has ended; raises Timeout, without a time that of the stream."""
        core = self._core.next(timeout)
        if core is None:
            self._tell()
            return None
        return Frame(core)

    def try_next(self) -> Frame | None:
        """The next frame if one is there; waits for none."""
        core = self._core.try_next()
        return Frame(core) if core is not None else None

    def __iter__(self) -> Stream:
        """Give itself."""
        return self

    def __next__(self) -> Frame:
        """Wait for the next frame, for the time of the stream."""
        frame = self.next()
        if frame is None:
            raise StopIteration
        return frame

    def __aiter__(self) -> Stream:
        """Give itself."""
        return self

    async def __anext__(self) -> Frame:
        """Wait for the next frame while other tasks run. What a cancelled task waited for comes to the next one."""
        import asyncio  # which takes longer to import than the rest of the module

        if self._pending is None:
            self._pending = asyncio.get_running_loop().run_in_executor(None, self.next)
        pending = self._pending
        try:
            frame = await asyncio.shield(pending)
        finally:
            if pending.done():
                self._pending = None
        if frame is None:
            raise StopAsyncIteration
        return frame

    @property
    def counts(self) -> StreamCounts:
        """What became of the frames so far."""
        return StreamCounts(*self._core.counts())

    @property
    def is_running(self) -> bool:
        """Whether it was not closed yet."""
        return self._core.is_running()

    def close(self) -> None:
        """Stop; waits of other threads end, and frames that are held stay. Does nothing the second time."""
        self._core.stop()
        self._tell()

    def _tell(self) -> None:
        missed = self.counts.missed
        if missed and not self._told:
            self._told = True
            logger.warning("%s: %d frames were lost", self._camera.name, missed)

    def __enter__(self) -> Stream:
        """Give itself."""
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        """Stop."""
        self.close()

    async def __aenter__(self) -> Stream:
        """Give itself."""
        return self

    async def __aexit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        """Stop, while other tasks run."""
        import asyncio

        await asyncio.get_running_loop().run_in_executor(None, self.close)

    def __repr__(self) -> str:
        """Counts and state."""
        counts = self.counts
        state = "running" if self.is_running else "ended"
        return f"<Stream of {self._camera.name}, {state}: {counts.delivered} frames, {counts.missed} lost>"
