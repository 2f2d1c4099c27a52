# SPDX-License-Identifier: Apache-2.0
"""Cameras are found, opened and closed."""

import pytest
import vanto


def test_cameras_are_found_with_all_their_properties(simulation):
    first, second = vanto.cameras()
    assert first.name == "Marlow H2048 (SIM00001)"
    assert first.serial_number == "SIM00001"
    assert first.port == "COM_Port#cam0"
    assert (first.vendor, first.model) == ("Marlow", "H2048")
    assert first.properties["PortID"] == "COM_Port#cam0"
    assert first.properties["DeviceSpecificString"].startswith("SaperaSimulated")
    assert second.model == "H4096"


@pytest.mark.parametrize("name", ["SIM00002", "Marlow H4096 (SIM00002)", "cam1", "COM_Port#cam1"])
def test_a_camera_is_opened_by_each_of_its_names(simulation, name):
    with vanto.open(name) as camera:
        assert camera.name == "Marlow H4096 (SIM00002)"


def test_a_camera_is_opened_by_its_record(simulation):
    record = vanto.cameras()[1]
    with vanto.open(record) as camera:
        assert camera.record.full_name == record.full_name


def test_the_only_camera_needs_no_name(own):
    with vanto.open() as camera:
        assert camera.DeviceSerialNumber == "SIM00001"


def test_several_cameras_need_one(simulation):
    with pytest.raises(vanto.NoCamera, match="say which: .*SIM00001.*SIM00002"):
        vanto.open()


def test_a_camera_that_is_not_there_is_told_with_those_that_are(simulation):
    with pytest.raises(vanto.NoCamera, match="SIM00001") as caught:
        vanto.open("4711")
    assert isinstance(caught.value, LookupError)


def test_simulated_cameras_stand_in_for_others_and_go(simulation):
    with vanto.simulate(1):
        assert [camera.serial_number for camera in vanto.cameras()] == ["SIM00001"]
    assert [camera.serial_number for camera in vanto.cameras()] == simulation.serial_numbers


def test_a_closed_camera_says_so(simulation):
    camera = vanto.open("SIM00001")
    assert camera.is_open and "open" in repr(camera)
    width = camera.features["Width"]
    camera.close()
    camera.close()
    assert not camera.is_open and "closed" in repr(camera)
    with pytest.raises(vanto.CameraClosed) as caught:
        camera.Width
    assert isinstance(caught.value, ValueError)
    assert caught.value.camera == "Marlow H2048 (SIM00001)"
    with pytest.raises(vanto.CameraClosed):
        width.value


def test_a_camera_can_be_opened_again(simulation):
    for _ in range(3):
        with vanto.open("SIM00001") as camera:
            assert camera.Width == 2048


def test_a_camera_is_in_use_until_it_is_closed(simulation):
    with vanto.open("SIM00001"):
        with pytest.raises(vanto.Error):
            vanto.open("SIM00001")
    vanto.open("SIM00001").close()


def test_a_camera_that_nobody_has_is_closed(simulation):
    vanto.open("SIM00001")
    vanto.open("SIM00001").close()


def test_a_camera_tells_what_it_is(camera):
    assert camera.name == "Marlow H2048 (SIM00001)"
    assert camera.record.serial_number == "SIM00001"
    assert not camera.is_gone


@pytest.mark.parametrize("name", [5, 1.5, b"SIM00001", ["SIM00001"]])
def test_a_name_is_a_text(name):
    with pytest.raises(TypeError, match="opened by a name or a record"):
        vanto.open(name)


def test_simulated_cameras_are_counted():
    for count in (0, 65):
        with pytest.raises(ValueError, match="1 to 64"):
            vanto.simulate(count)


def test_simulated_cameras_have_the_models_that_are_wanted():
    with vanto.simulate(2, models=["H8192L"]) as simulation:
        assert [camera.model for camera in vanto.cameras()] == ["H8192L", "H8192L"]
        assert simulation.serial_numbers == ["SIM00001", "SIM00002"]
    assert "ended" in repr(simulation)


def test_a_simulator_tells_why_it_does_not_take_a_command(own):
    with pytest.raises(vanto.Error, match="dance"):
        own.command("dance cam0")
    assert own.command("baud cam0") == "9600"
