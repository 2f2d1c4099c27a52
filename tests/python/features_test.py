# SPDX-License-Identifier: Apache-2.0
"""Features tell all that is known about them, and take what people mean."""

import gc
import pickle
import weakref

import pytest
import vanto


def test_a_feature_tells_what_it_is(camera):
    gain = camera.features["Gain"]
    assert gain.name == "Gain"
    assert gain.kind is vanto.Kind.FLOAT
    assert gain.display_name == "Gain"
    assert gain.unit == "dB"
    assert gain.documentation and gain.tool_tip
    assert gain.visibility is vanto.Visibility.BEGINNER
    assert gain.is_setting
    assert gain.access is vanto.Access.READ_WRITE
    assert gain.is_readable and gain.is_writable and gain.is_available


def test_each_kind_of_feature_is_known(camera):
    kinds = {name: feature.kind for name, feature in camera.features.items()}
    assert kinds["Width"] is vanto.Kind.INTEGER
    assert kinds["LineInverter"] is vanto.Kind.BOOLEAN
    assert kinds["PixelFormat"] is vanto.Kind.ENUMERATION
    assert kinds["DeviceUserID"] is vanto.Kind.STRING
    assert kinds["UserSetLoad"] is vanto.Kind.COMMAND


def test_numbers_have_a_range(camera):
    width = camera.features["Width"].range
    assert (width.min, width.max, width.step) == (16, 2048, 8)
    assert 1024 in width and 1025 not in width and 4096 not in width
    assert "1024" not in width and True not in width
    assert camera.features["Width"].step == 8
    gain = camera.features["Gain"].range
    assert (gain.min, gain.max, gain.step) == (0.0, 24.0, None)
    assert 3.5 in gain
    assert camera.features["PixelFormat"].range is None
    assert camera.features["PixelFormat"].step is None


def test_a_range_clips():
    steps = vanto.Range(16, 100, 8)
    assert [steps.clip(value) for value in (0, 20, 21, 97, 1000)] == [16, 16, 24, 96, 96]
    assert vanto.Range(0.0, 1.0).clip(1.5) == 1.0
    assert vanto.Range(1, 8, None, (1, 2, 4, 8)).clip(3) == 2
    assert 3 not in vanto.Range(1, 8, None, (1, 2, 4, 8))


def test_entries_are_like_an_enum(camera):
    entries = camera.features["PixelFormat"].entries
    assert list(entries) == ["Mono8", "Mono10", "Mono12", "Mono16"]
    assert entries.Mono12 == "Mono12" and entries["Mono12"].name == "Mono12"
    assert entries.Mono8.value == 0x01080001 and entries.Mono8.available
    assert "Mono12" in entries and len(entries) == 4 and "Mono12" in dir(entries)
    assert entries._ipython_key_completions_() == list(entries)
    camera.PixelFormat = entries.Mono12
    assert camera.PixelFormat == entries.Mono12
    with pytest.raises(AttributeError, match="no entry 'Mono7'"):
        entries.Mono7
    assert "Mono8" in repr(entries) and "Mono12" in repr(entries.Mono12)
    assert pickle.loads(pickle.dumps(entries.Mono12)).value == entries.Mono12.value
    assert len(camera.features["Width"].entries) == 0


def test_a_feature_says_what_it_takes(camera):
    assert camera.features["Width"].allowed == "16 .. 2048 step 8 px"
    assert camera.features["PixelFormat"].allowed == "Mono8, Mono10, Mono12, Mono16"


@pytest.mark.parametrize(
    "name, text",
    [
        ("Width", "<Feature Width = 64 px, takes 16 .. 2048 step 8 px>"),
        ("DeviceModelName", "<Feature DeviceModelName = H2048, read only>"),
        ("UserSetLoad", "<Feature UserSetLoad: command, write only>"),
        ("PixelFormat", "<Feature PixelFormat = Mono8, takes Mono8, Mono10, Mono12, Mono16>"),
    ],
)
def test_a_feature_shows_what_matters(camera, name, text):
    assert repr(camera.features[name]) == text


def test_a_feature_of_a_closed_camera_shows_why_it_shows_nothing(simulation):
    with vanto.open("SIM00001") as camera:
        features = camera.features
        width = features["Width"]
    assert repr(width) == "<Feature Width: Marlow H2048 (SIM00001) was closed>"
    assert "closed" in repr(features)


def test_features_are_a_mapping(camera):
    features = camera.features
    assert "Width" in features and "Nope" not in features and 5 not in features
    assert len(features) == len(list(features)) > 60
    assert features.get("Nope") is None
    assert features.Width.value == 64
    assert "Width" in dir(features) and "Width" in features._ipython_key_completions_()
    assert repr(features) == f"<Features: {len(features)}>"
    beginner = features.names(vanto.Visibility.BEGINNER)
    assert "Width" in beginner and len(beginner) < len(features)
    with pytest.raises(AttributeError):
        features._nothing


def test_an_unknown_feature_is_no_key(camera):
    with pytest.raises(LookupError, match="no feature 'Widthh'; did you mean 'Width'"):
        camera.features["Widthh"]


def test_commands_are_executed(camera):
    before = camera.SoftwareTriggerCount
    trigger = camera.features["TriggerSoftware"]
    trigger.execute(timeout=5)
    trigger()
    trigger.start()
    while not trigger.is_done:
        pass
    camera.features["SoftwareTriggerCount"].refresh()
    assert camera.SoftwareTriggerCount == before + 3


def test_only_commands_are_executed(camera):
    for operation in (camera.features["Width"].execute, camera.features["Width"].start, camera.features["Width"]):
        with pytest.raises(vanto.WrongType, match="is no command"):
            operation()


@pytest.mark.parametrize("timeout", [-1, float("nan")])
def test_a_time_is_not_negative(camera, timeout):
    with pytest.raises(ValueError, match="not negative"):
        camera.features["UserSetLoad"].execute(timeout)


ENDLESS = """<?xml version="1.0"?>
<RegisterDescription ModelName="H2048" VendorName="Marlow" ToolTip="" StandardNameSpace="CL"
 SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0"
 SubMinorVersion="0" ProductGuid="a" VersionGuid="b" xmlns="http://www.genicam.org/GenApi/Version_1_1">
 <Category Name="Root"><pFeature>Endless</pFeature></Category>
 <Command Name="Endless"><pValue>Register</pValue><CommandValue>1000</CommandValue></Command>
 <IntReg Name="Register"><Address>0x10005C</Address><Length>4</Length><AccessMode>RW</AccessMode>
  <pPort>Device</pPort><Cachable>NoCache</Cachable><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>
 <Port Name="Device"/>
</RegisterDescription>"""


@pytest.fixture
def endless(tmp_path):
    """A camera with a command that is never done."""
    (tmp_path / "endless.xml").write_text(ENDLESS)
    with vanto.simulate(1, models=[f"H2048,description={tmp_path / 'endless.xml'}"]), vanto.open() as camera:
        yield camera


def test_a_command_that_is_not_done_in_time_says_so(endless):
    with pytest.raises(vanto.Timeout, match="Endless was started and is not done") as caught:
        endless.execute("Endless", timeout=0.1)
    assert isinstance(caught.value, TimeoutError)
    assert caught.value.camera == "Marlow H2048 (SIM00001)"
    endless.features["Endless"].start()
    assert not endless.features["Endless"].is_done


def test_selectors_are_set_for_a_block(camera):
    camera.LineSelector = "Line1"
    assert camera.features["LineInverter"].selectors == ["LineSelector"]
    assert "LineInverter" in camera.features["LineSelector"].selected
    with camera.select(LineSelector="Line2"):
        assert camera.LineSelector == "Line2"
        camera.LineInverter = True
    assert camera.LineSelector == "Line1"
    assert camera.LineInverter is False
    with camera.select(LineSelector="Line2"):
        assert camera.LineInverter is True


def test_several_selectors_are_put_back_in_the_other_order(camera):
    camera.LineSelector, camera.TriggerSelector = "Line1", "FrameStart"
    with camera.select(LineSelector="Line3", TriggerSelector="AcquisitionStart"):
        assert (camera.LineSelector, camera.TriggerSelector) == ("Line3", "AcquisitionStart")
    assert (camera.LineSelector, camera.TriggerSelector) == ("Line1", "FrameStart")


def test_a_selection_that_fails_leaves_nothing_behind(camera):
    camera.LineSelector = "Line1"
    with pytest.raises(vanto.WrongType):
        with camera.select(LineSelector="Line2", TriggerSelector="Nothing"):
            pass
    assert camera.LineSelector == "Line1"
    with pytest.raises(vanto.UnknownFeature):
        camera.select(Nothing=1)


def test_changes_are_told(camera):
    seen = []
    subscription = camera.features["Width"].on_change(lambda feature: seen.append((feature.name, feature.value)))
    camera.Width = 128
    assert seen[-1] == ("Width", 128)
    assert subscription.is_active and "cancelled" not in repr(subscription)
    subscription.cancel()
    subscription.cancel()
    seen.clear()
    camera.Width = 256
    assert seen == [] and not subscription.is_active and "cancelled" in repr(subscription)


def test_changes_are_told_without_the_subscription_being_kept(camera):
    seen = []
    camera.features["Width"].on_change(seen.append)
    gc.collect()
    camera.Width = 128
    assert seen


def test_changes_are_told_for_a_block(camera):
    seen = []
    with camera.features["Width"].on_change(seen.append):
        camera.Width = 128
    count = len(seen)
    assert count
    camera.Width = 256
    assert len(seen) == count


def test_a_callback_may_use_and_cancel_everything(camera):
    seen = []

    def callback(feature):
        seen.append(camera.OffsetX)
        subscription.cancel()
        camera.Height = 16

    subscription = camera.features["Width"].on_change(callback)
    camera.Width = 128
    assert seen == [0] and camera.Height == 16


def test_a_camera_may_be_closed_in_a_callback(simulation):
    camera = vanto.open("SIM00001")
    camera.features["Width"].on_change(lambda feature: camera.close())
    camera.Width = 128
    assert not camera.is_open
    vanto.open("SIM00001").close()


def test_a_camera_may_be_let_go_in_a_callback(simulation):
    cameras = [vanto.open("SIM00001")]
    cameras[0].features["Width"].on_change(lambda feature: cameras.clear())
    cameras[0].Width = 128
    assert cameras == []
    gc.collect()
    vanto.open("SIM00001").close()


def test_what_a_callback_raises_goes_to_the_hook(camera, monkeypatch):
    seen = []
    monkeypatch.setattr("sys.unraisablehook", lambda args: seen.append(args.exc_type))
    camera.features["Width"].on_change(lambda feature: 1 / 0)
    camera.Width = 128
    assert seen and seen[0] is ZeroDivisionError


def test_a_callback_is_callable(camera):
    for register in (camera.features["Width"].on_change, camera.on_removal):
        with pytest.raises(TypeError, match="a callback is callable"):
            register(5)


def test_a_callback_that_uses_its_camera_does_not_keep_it(simulation):
    camera = vanto.open("SIM00001")
    camera.features["Width"].on_change(lambda feature: camera.Height)
    gone = weakref.ref(camera)
    del camera
    gc.collect()
    assert gone() is None
    vanto.open("SIM00001").close()


def test_settings_are_saved_and_loaded(camera, tmp_path):
    camera.ExposureTime = 1234
    assert camera.save(tmp_path / "settings.txt") == []
    camera.ExposureTime = 4321
    camera.load(tmp_path / "settings.txt")
    assert camera.ExposureTime == 1234


def test_settings_that_are_refused_are_told(camera, tmp_path):
    (tmp_path / "settings.txt").write_text("ExposureTime = 2000\nWidth = 5\n")
    with pytest.raises(vanto.SettingsRefused, match="Width") as caught:
        camera.load(tmp_path / "settings.txt")
    assert camera.ExposureTime == 2000
    (fault,) = caught.value.faults
    assert (fault.feature, fault.line) == ("Width", 2) and "Width" in fault.reason


def test_settings_that_are_not_there_are_told(camera, tmp_path):
    with pytest.raises(vanto.Error, match="missing.txt"):
        camera.load(tmp_path / "missing.txt")
    with pytest.raises(vanto.Error, match="missing"):
        camera.save(tmp_path / "missing" / "settings.txt")


def test_registers_are_read_and_written(camera):
    before = camera.read_registers(0x10005C, 4)
    assert isinstance(before, bytes) and len(before) == 4
    camera.write_registers(0x10005C, before)
    camera.write_registers(0x10005C, bytearray(before))
    with pytest.raises(vanto.Error):
        camera.read_registers(0x7FFFFFF0, 4)


@pytest.mark.parametrize("arguments", [("0", 4), (0, "4"), (None, None), (0.5, 4)])
def test_registers_have_numbers(camera, arguments):
    with pytest.raises(TypeError):
        camera.read_registers(*arguments)
    with pytest.raises(TypeError):
        camera.write_registers(0, 5)


def test_stream_and_connection_have_features(camera):
    assert camera.stream_features["PayloadSize"].value == 64 * 32
    camera.transport_features["AutoCloseTimeout"].value = 500
    assert camera.transport_features.AutoCloseTimeout.value == 500
    assert camera.stream_features is camera.stream_features


def test_refreshing_asks_the_camera_again(camera):
    camera.features.refresh()
    assert camera.Width == 64
