# SPDX-License-Identifier: Apache-2.0
"""Camera Link cameras as GenICam devices.

    import vanto

    with vanto.open("24000001") as camera:
        camera.Width = 1024
        camera.ExposureTime = "2 ms"
        for frame in camera.grab(10):
            print(frame.number, frame.array.mean())
"""

from __future__ import annotations

import atexit
import os

from vanto import _core
from vanto._camera import Camera, Selection, cameras, open
from vanto._errors import (
    CameraClosed,
    CameraGone,
    Error,
    FeatureError,
    ForkedError,
    GrabError,
    NoCamera,
    NotAccessible,
    OutOfRange,
    SettingsRefused,
    Timeout,
    UnknownFeature,
    WrongType,
)
from vanto._features import Feature, Features
from vanto._frames import Frame, Stream
from vanto._machine import DescribedFeature, Description, describe, ports
from vanto._records import (
    Access,
    CameraRecord,
    Entries,
    Entry,
    FrameStatus,
    Kind,
    Port,
    Range,
    SettingFault,
    StreamCounts,
    Visibility,
)
from vanto._simulation import Simulation, simulate
from vanto._subscriptions import Subscription

__all__ = [
    "Access",
    "Camera",
    "CameraClosed",
    "CameraGone",
    "CameraRecord",
    "DescribedFeature",
    "Description",
    "Entries",
    "Entry",
    "Error",
    "Feature",
    "FeatureError",
    "Features",
    "ForkedError",
    "Frame",
    "FrameStatus",
    "GrabError",
    "Kind",
    "NoCamera",
    "NotAccessible",
    "OutOfRange",
    "Port",
    "Range",
    "Selection",
    "SettingFault",
    "SettingsRefused",
    "Simulation",
    "Stream",
    "StreamCounts",
    "Subscription",
    "Timeout",
    "UnknownFeature",
    "Visibility",
    "WrongType",
    "cameras",
    "describe",
    "open",
    "ports",
    "simulate",
]

__version__ = _core.__version__

atexit.register(_core.shut_down)
os.register_at_fork(after_in_child=_core.note_fork)
