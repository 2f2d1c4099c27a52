#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes the pictures of README.md from the real program: a terminal session and a grabbed image.

usage: docs/pictures/make.py FOLDER-OF-VANTO-CL [FOLDER-FOR-THE-PICTURES]
"""
import fcntl
import html
import os
import pty
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import termios

PICTURES = os.path.abspath(sys.argv[2] if len(sys.argv) > 2 else os.path.dirname(__file__))
COLUMNS = 80
SESSION = [
    "vanto-cl list",
    "vanto-cl features 0 'Exposure*'",
    "vanto-cl set 0 'ExposureTime=2 ms' PixelFormat=Mono8",
    "vanto-cl get 0 ExposureTime",
    "vanto-cl grab 0 -n 20 --set Width=512 --set Height=256 -o images",
]
COLOURS = {"1": "#ffffff", "2": "#808890", "31": "#ff7b72", "32": "#7ee787", "33": "#e3b341"}


def on_terminal(command, folder):
    """What appears on a terminal while a shell runs a command."""
    pid, terminal = pty.fork()
    if pid == 0:
        os.chdir(folder)
        os.environ["TERM"] = "xterm"
        os.execvp("sh", ["sh", "-c", command])
    fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, COLUMNS, 0, 0))
    text = b""
    try:
        while part := os.read(terminal, 65536):
            text += part
    except OSError:  # nobody writes any more
        pass
    os.waitpid(pid, 0)
    lines = text.decode().replace("\r\n", "\n").split("\n")
    # Progress goes back to the beginning of its line and clears it.
    return [line.split("\r")[-1].replace("\x1b[K", "") for line in lines]


def spans(line):
    """A line with sequences of colours as parts of an SVG text."""
    result, colour = "", None
    for part in re.split(r"(\x1b\[[0-9;]*m)", line):
        if sequence := re.fullmatch(r"\x1b\[([0-9;]*)m", part):
            colour = COLOURS.get(sequence.group(1))
        elif part:
            fill = f' fill="{colour}"' if colour else ""
            result += f"<tspan{fill}>{html.escape(part)}</tspan>"
    return result


def picture(lines):
    width, step = 8.4 * COLUMNS + 32, 19
    height = step * len(lines) + 32
    rows = "\n".join(
        f'<text x="16" y="{30 + step * number}" xml:space="preserve">{spans(line)}</text>'
        for number, line in enumerate(lines)
    )
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{width:.0f}" height="{height}">\n'
        '<rect width="100%" height="100%" rx="8" fill="#161b22"/>\n'
        f'<g font-family="DejaVu Sans Mono,Menlo,Consolas,monospace" font-size="14" fill="#c9d1d9">\n{rows}\n</g>\n</svg>\n'
    )


def main():
    programs = os.path.abspath(sys.argv[1])
    os.environ["PATH"] = programs + os.pathsep + os.environ["PATH"]
    with tempfile.TemporaryDirectory() as folder:
        links = os.path.join(folder, "ports")
        cameras = ["--camera", "cam0,serial=24000001", "--camera", "cam1,model=H4096,serial=24000002"]
        simulator = subprocess.Popen(
            [os.path.join(programs, "marlow-sim"), "--links", links, *cameras, "--until-stdin-closes"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        simulator.stdout.readline()
        ports = "".join(
            f"<Port><ID>COM_Port#{name}</ID><Enabled>true</Enabled><Manufacturer>Marlow</Manufacturer>"
            "<DeviceSpecificString>SaperaSimulated;FrameRate=100</DeviceSpecificString></Port>"
            for name in ("cam0", "cam1"))
        with open(os.path.join(folder, "PortConfiguration_x64.xml"), "w", encoding="utf-8") as file:
            file.write(f"<CLBindings>{ports}</CLBindings>")
        os.environ.update(VANTO_CL_BINDINGS=folder, CLSERTTY_PATH=links, VANTO_CL_STATE=os.path.join(folder, "state"),
                          GENICAM_CACHE=os.path.join(folder, "cache"))
        shown = []
        for command in SESSION:
            shown += ["\x1b[32m$\x1b[0m \x1b[1m" + command + "\x1b[0m"]
            shown += [line for line in on_terminal(command, folder) if line]
        with open(os.path.join(PICTURES, "session.svg"), "w", encoding="utf-8") as file:
            file.write(picture(shown))
        subprocess.run(
            ["vanto-cl", "grab", "0", "--set", "Width=512", "--set", "Height=256", "-o", "picture"],
            cwd=folder, check=True, stdout=subprocess.DEVNULL)
        shutil.move(os.path.join(folder, "picture", "frame_000001.png"), os.path.join(PICTURES, "image.png"))
        simulator.stdin.close()
        simulator.wait()


main()
