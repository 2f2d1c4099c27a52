# SPDX-License-Identifier: Apache-2.0
"""Simulated cameras, so that everything runs on a machine without any."""

from __future__ import annotations

import contextlib
import html
import math
import os
import select
import shutil
import socket
import subprocess
import tempfile
from collections.abc import Sequence
from pathlib import Path
from types import TracebackType

from vanto import _core
from vanto._errors import Error

_MODELS = ("H2048", "H4096", "H8192L")
_MOST = 64
_PATIENCE = 20.0  # seconds for which the simulator may take to start
_BINARIES = 1  # folder type of programs


class Simulation:
    """Simulated cameras, each with a frame grabber; for a with block, or until close.

    They stand in for the machine's own cameras: this process sees no others meanwhile.
    """

    def __init__(
        self,
        count: int = 2,
        *,
        models: Sequence[str] = _MODELS,
        serial_numbers: Sequence[str] = (),
        frame_rate: float = 100.0,
        grabber: str = "",
    ) -> None:
        """Start them; use vanto.simulate instead."""
        if not 1 <= count <= _MOST:
            raise ValueError(f"1 to {_MOST} cameras can be simulated, not {count}")
        if not 0 <= frame_rate < math.inf:
            raise ValueError(f"a frame rate is a number from 0, which is as fast as possible, not {frame_rate}")
        for texts in (models, serial_numbers):
            if isinstance(texts, str) or not all(isinstance(text, str) for text in texts):
                raise TypeError(f"models and serial numbers are lists of texts, not {texts!r}")
        self._owner = os.getpid()
        self._names = [f"cam{number}" for number in range(count)]
        self._serial_numbers = [*serial_numbers, *(f"SIM{number + 1:05}" for number in range(count))][:count]
        self._folder = Path(tempfile.mkdtemp(prefix="vanto-"))
        self._before: dict[str, str | None] = {}
        self._program: subprocess.Popen[bytes] | None = None
        try:
            self._program = self._start(models)
            self._write_configuration((f"SaperaSimulated;FrameRate={frame_rate:g};" + grabber).rstrip(";"))
        except BaseException:
            self.close()
            raise

    def _start(self, models: Sequence[str]) -> subprocess.Popen[bytes]:
        program = Path(_core.folder(_BINARIES)) / "marlow-sim"
        if not program.exists():
            raise Error(f"the simulator '{program}' is not there; it is in the package vanto-cl")
        arguments = ["--until-stdin-closes", "--links", str(self._folder), "--control", str(self._control)]
        for number, name in enumerate(self._names):
            model = models[number % len(models)]
            arguments += ["--camera", f"{name},model={model},serial={self._serial_numbers[number]}"]
        started = subprocess.Popen(
            [str(program), *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE, start_new_session=True
        )
        assert started.stdout is not None
        try:
            waiting, _, _ = select.select([started.stdout], [], [], _PATIENCE)
            if not waiting or started.stdout.readline() != b"ready\n":
                raise Error("the simulator did not start")
        except BaseException:
            started.kill()
            started.communicate()
            raise
        return started

    @property
    def _control(self) -> Path:
        return self._folder / "control"

    def _write_configuration(self, grabber: str) -> None:
        ports = "".join(
            f"<Port><ID>COM_Port#{name}</ID><Enabled>true</Enabled><Manufacturer>Marlow</Manufacturer>"
            f"<DeviceSpecificString>{html.escape(grabber, quote=False)}</DeviceSpecificString></Port>\n"
            for name in self._names
        )
        bindings = self._folder / "configuration"
        bindings.mkdir()
        (bindings / "PortConfiguration_x64.xml").write_text(f"<CLBindings>\n{ports}</CLBindings>\n")
        self._set("CLSERTTY_PATH", self._folder)
        self._set("VANTO_CL_BINDINGS", bindings)
        # Simulated cameras change under the same names: no description of theirs may stay.
        self._set("GENICAM_CACHE", self._folder / "cache")

    def _set(self, name: str, value: Path) -> None:
        self._before[name] = os.environ.get(name)
        os.environ[name] = str(value)

    @property
    def serial_numbers(self) -> list[str]:
        """The serial numbers of the cameras, whether or not they are plugged in."""
        return list(self._serial_numbers)

    def unplug(self, camera: int = 0) -> None:
        """Pull the cable of a camera, by its number from 0."""
        self.command(f"unplug {self._names[camera]}")

    def plug(self, camera: int = 0) -> None:
        """Put the cable of a camera in again, by its number from 0; it starts anew."""
        self.command(f"plug {self._names[camera]}")

    def command(self, line: str) -> str:
        """Give the simulator a command, as marlow-sim takes them ("loss cam0 0.02"); returns its answer."""
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(10)
            connection.connect(str(self._control))
            connection.sendall(line.encode() + b"\n")
            answer = connection.makefile().readline().strip()
        word, _, rest = answer.partition(" ")
        if word != "ok":
            raise Error(f"the simulator does not take '{line}': {rest or answer}")
        return rest

    def close(self) -> None:
        """End them, and have the machine's own cameras back. Does nothing the second time, nor in a forked process."""
        if os.getpid() != self._owner:
            return
        if self._program is not None:
            for pipe in (self._program.stdin, self._program.stdout):
                if pipe is not None:
                    pipe.close()
            self._program.terminate()
            self._program.wait()
            self._program = None
        for name, value in self._before.items():
            if value is None:
                os.environ.pop(name, None)
            else:
                os.environ[name] = value
        self._before.clear()
        shutil.rmtree(self._folder, ignore_errors=True)

    def __enter__(self) -> Simulation:
        """Give itself."""
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        """End them."""
        self.close()

    def __del__(self) -> None:
        """End them."""
        with contextlib.suppress(Exception):
            self.close()

    def __repr__(self) -> str:
        """How many there are."""
        return f"<Simulation of {len(self._names)} cameras{'' if self._program else ', ended'}>"


def simulate(
    count: int = 2,
    *,
    models: Sequence[str] = _MODELS,
    serial_numbers: Sequence[str] = (),
    frame_rate: float = 100.0,
    grabber: str = "",
) -> Simulation:
    """Start simulated cameras in place of the machine's own: with vanto.simulate(1): camera = vanto.open().

    The models ("H2048", "H4096", "H8192L") take turns. Without others the serial numbers are "SIM00001", "SIM00002" ...
    A frame rate of 0 is as fast as possible. More parameters of the simulated frame grabber are written as in port
    configurations: grabber="DropEvery=10;Pattern=Noise".
    """
    return Simulation(
        count, models=models, serial_numbers=serial_numbers, frame_rate=frame_rate, grabber=grabber
    )
