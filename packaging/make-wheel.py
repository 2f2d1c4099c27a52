#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Makes a wheel of the Python module from an installed tree: module, libraries, plug-ins and simulator in one file.

The libraries of Debian 12 that those need are not within it.
usage: packaging/make-wheel.py INSTALLED_TREE [FOLDER]
"""

import base64
import hashlib
import os
import pathlib
import re
import subprocess
import sys
import sysconfig
import zipfile

MODULES = pathlib.Path("lib/python3/dist-packages")
METADATA = """Metadata-Version: 2.1
Name: vanto
Version: {version}
Summary: Camera Link cameras as GenICam devices
License: Apache-2.0
Requires-Python: >=3.11,<3.12
Requires-Dist: numpy
Description-Content-Type: text/markdown

{description}"""
WHEEL = """Wheel-Version: 1.0
Generator: make-wheel
Root-Is-Purelib: false
Tag: {tag}
"""


def version_of(tree):
    """What the module says of itself, which shows as well that it can be imported."""
    environment = dict(os.environ, PYTHONPATH=str(tree / MODULES), PYTHONDONTWRITEBYTECODE="1")
    command = [sys.executable, "-c", "import vanto; print(vanto.__version__)"]
    return subprocess.run(command, env=environment, check=True, capture_output=True, text=True).stdout.strip()


def is_needed(path):
    """Libraries go by the names under which they are looked for: libVantoBase.so.3, clsertty.so."""
    if re.search(r"\.so\.\d+$", path.name):
        return True
    return path.name.endswith(".so") and not path.is_symlink()


def files_of(tree):
    """Pairs of names in the wheel and files."""
    package = tree / MODULES / "vanto"
    for path in sorted(package.iterdir()):
        if path.is_file():
            yield f"vanto/{path.name}", path
    for path in sorted((tree / "lib").iterdir()):
        if path.is_file() and is_needed(path):
            yield f"vanto/tree/lib/{path.name}", path
    for folder in ("tl", "clprotocol", "plugins"):
        for path in sorted((tree / "lib" / "vanto" / folder).rglob("*")):
            if path.is_file():
                yield f"vanto/tree/{path.relative_to(tree)}", path
    yield "vanto/tree/bin/marlow-sim", tree / "bin" / "marlow-sim"


class Wheel:
    """A wheel that is written."""

    def __init__(self, path, info):
        self._file = zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED)
        self._info = info
        self._record = []

    def add(self, name, data, mode=0o644):
        entry = zipfile.ZipInfo(name, (1980, 1, 1, 0, 0, 0))
        entry.external_attr = (0o100000 | mode) << 16
        entry.compress_type = zipfile.ZIP_DEFLATED
        self._file.writestr(entry, data)
        digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).decode().rstrip("=")
        self._record.append(f"{name},sha256={digest},{len(data)}")

    def close(self):
        record = f"{self._info}/RECORD"
        self._file.writestr(record, "\n".join([*self._record, f"{record},,", ""]))
        self._file.close()


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    tree = pathlib.Path(sys.argv[1]).resolve()
    version = version_of(tree)
    system = sysconfig.get_platform().replace("-", "_").replace(".", "_")
    tag = f"cp311-cp311-{system}"
    path = pathlib.Path(sys.argv[2] if len(sys.argv) == 3 else ".") / f"vanto-{version}-{tag}.whl"
    info = f"vanto-{version}.dist-info"
    guide = tree / "share" / "doc" / "vanto" / "docs" / "python.md"
    description = guide.read_text() if guide.exists() else "See docs/python.md."
    wheel = Wheel(path, info)
    for name, file in files_of(tree):
        wheel.add(name, file.read_bytes(), 0o755 if os.access(file, os.X_OK) else 0o644)
    wheel.add(f"{info}/METADATA", METADATA.format(version=version, description=description).encode())
    wheel.add(f"{info}/WHEEL", WHEEL.format(tag=tag).encode())
    wheel.close()
    print(path)


if __name__ == "__main__":
    main()
