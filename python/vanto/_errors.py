# SPDX-License-Identifier: Apache-2.0
"""What vanto raises. The text of each is a sentence that names camera and feature."""

from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from vanto._records import Range, SettingFault


class Error(Exception):
    """Root of what vanto raises."""

    camera: str = ""
    """The camera's name; empty where none was chosen yet."""


class NoCamera(Error, LookupError):
    """No camera fits, or several do; the text lists those that are there."""


class CameraGone(Error, ConnectionError):
    """The camera does not answer any more. It stays gone; open it anew when it is back."""


class CameraClosed(Error, ValueError):
    """The camera was closed by this program."""


class Timeout(Error, TimeoutError):
    """No frame came, or a command was not done, in time."""


class GrabError(Error, RuntimeError):
    """Frames can't be taken: no frame grabber, or one that refuses."""


class ForkedError(Error, RuntimeError):
    """Cameras were used before this process was forked; they can't be used in it."""


class SettingsRefused(Error, ValueError):
    """The camera did not take all settings of a file; the others are set."""

    faults: list[SettingFault] = []
    """Each of them, in the order of the file."""


class FeatureError(Error):
    """Something is wrong with the use of one feature."""

    feature: str = ""
    """The name of the feature."""
    allowed: str = ""
    """What it takes, as people read it; empty where that is not the question."""
    range: Range | None = None
    """The limits of a number, as Feature.range has them; None where they are not the question."""


class UnknownFeature(FeatureError, AttributeError, KeyError):
    """There is no feature of this name; the text names a similar one."""

    def __str__(self) -> str:
        """The text; a KeyError by itself shows it in quotes."""
        return Exception.__str__(self)


class NotAccessible(FeatureError):
    """The feature can't be read, written or executed at present."""


class OutOfRange(FeatureError, ValueError):
    """The value is outside of what the feature takes at present."""


class WrongType(FeatureError, TypeError, ValueError):
    """The value is of a kind that the feature does not have: a word for a number, no entry, another unit."""
