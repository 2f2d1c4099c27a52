# SPDX-License-Identifier: Apache-2.0
"""Ports and descriptions are told without a camera."""

import pathlib
import zipfile

import pytest
import vanto

DESCRIPTION = pathlib.Path(__file__).parents[2] / "camera" / "simulator" / "descriptions" / "Heron.xml"


def test_ports_are_listed_with_their_library(simulation):
    ports = {port.name: port for port in vanto.ports()}
    assert {"COM_Port#cam0", "COM_Port#cam1"} <= set(ports)
    assert ports["COM_Port#cam0"].library.endswith("clsertty.so")


def test_a_description_is_read_without_a_camera():
    description = vanto.describe(DESCRIPTION)
    assert description.vendor == "Marlow"
    exposure = description.features["ExposureTime"]
    assert (exposure.kind, exposure.unit, exposure.category) == (vanto.Kind.FLOAT, "us", "AcquisitionControl")
    assert description.features["LineInverter"].selectors == ("LineSelector",)
    assert "Timed" in description.features["ExposureMode"].entries
    assert repr(description).startswith("<Description of Marlow")


def test_a_description_may_be_zipped(tmp_path):
    with zipfile.ZipFile(tmp_path / "camera.zip", "w", zipfile.ZIP_DEFLATED) as archive:
        archive.write(DESCRIPTION, "camera.xml")
    assert vanto.describe(str(tmp_path / "camera.zip")).features.keys() == vanto.describe(DESCRIPTION).features.keys()


def test_what_is_no_description_is_told(tmp_path):
    (tmp_path / "text.xml").write_text("nothing")
    for name in ("text.xml", "missing.xml"):
        with pytest.raises(vanto.Error, match=name):
            vanto.describe(tmp_path / name)
    with pytest.raises(TypeError):
        vanto.describe(5)
