# SPDX-License-Identifier: Apache-2.0
"""Frames stay as long as somebody has them, and no longer."""

import asyncio
import gc
import threading
import time

import numpy
import pytest
import vanto


def places(stream, count):
    """Where the frames of a stream lie, each let go before the next one comes."""
    found = set()
    for _ in range(count):
        frame = stream.next()
        found.add(frame.array.ctypes.data)
        del frame
    return found


def test_a_buffer_goes_back_when_the_last_view_dies(camera):
    with camera.stream(buffers=2) as stream:
        assert len(places(stream, 50)) <= 4


def test_a_buffer_stays_as_long_as_a_view_of_a_view(camera):
    gc.disable()
    try:
        with camera.stream(buffers=2) as stream:
            part = stream.next().array[8:16, ::2].T
            place = part.ctypes.data - part.ctypes.data % 64
            before = part.copy()
            for _ in range(50):
                other = stream.next().array
                assert not numpy.shares_memory(part, other)
            assert (part == before).all() and place
            del part, other
            assert len(places(stream, 50)) <= 5
    finally:
        gc.enable()


def test_a_buffer_in_a_circle_goes_back_with_the_circle(camera):
    with camera.stream(buffers=1) as stream:
        circle = [stream.next().array]
        circle.append(circle)
        place = circle[0].ctypes.data
        del circle
        gc.collect()
        assert place in places(stream, 20)


def test_all_frames_may_be_kept(camera):
    frames = list(camera.grab(50))
    assert len({frame.array.ctypes.data for frame in frames}) == 50
    assert len({frame.tag for frame in frames}) == 50


def test_a_view_outlives_everything(simulation):
    with vanto.open("SIM00001") as camera:
        camera.Width, camera.Height = 64, 32
        view = camera.grab_one().array[1:]
    gc.collect()
    before = view.copy()
    with vanto.open("SIM00001") as camera:
        list(camera.grab(5))
    assert (view == before).all()


def test_a_frame_tells_about_itself(camera):
    camera.Width, camera.Height = 128, 16
    camera.OffsetX, camera.OffsetY = 8, 2
    before = time.time()
    frame = camera.grab_one()
    assert (frame.width, frame.height, frame.size) == (128, 16, 128 * 16)
    assert (frame.offset_x, frame.offset_y) == (8, 2)
    assert (frame.pixel_format, frame.bits_per_pixel) == ("Mono8", 8)
    assert frame.number == 1 and frame.missed == 0 and isinstance(frame.tag, int)
    assert before - 1 < frame.time < time.time() + 1
    assert frame.status is vanto.FrameStatus.COMPLETE and frame.is_complete and frame.error == ""
    assert repr(frame) == "<Frame 1: 128 x 16 Mono8>"
    assert bytes(frame.data) == frame.array.tobytes()
    camera.OffsetX = camera.OffsetY = 0


class Damaged:
    """What the library gives for a frame that did not come as a whole; simulated frame grabbers make none."""

    def __init__(self, status):
        self._status = status

    def __getattr__(self, name):
        facts = {"status": self._status, "error": "the line was busy", "number": 7, "size": 100, "missed": 0}
        facts.update(width=64, height=32, pixel_format="Mono8")
        return lambda: facts[name]


@pytest.mark.parametrize(
    "status, text", [(1, "frame 7 is cut: 100 bytes came"), (2, "frame 7 has no image: the line was busy")]
)
def test_a_frame_that_is_not_complete_has_no_array(status, text):
    frame = vanto.Frame(Damaged(status))
    assert not frame.is_complete
    for access in (lambda: frame.array, frame.image):
        with pytest.raises(vanto.Error, match=text):
            access()


def test_a_frame_that_is_not_complete_shows_it():
    assert repr(vanto.Frame(Damaged(1))) == "<Frame 7: 64 x 32 Mono8, cut>"
    assert repr(vanto.Frame(Damaged(2))) == "<Frame 7: failed: the line was busy>"


def test_an_array_may_be_changed_in_place(camera):
    frame = camera.grab_one()
    frame.array[:] = 7
    assert (frame.array == 7).all()


@pytest.mark.parametrize("pixel_format", ["Mono10", "Mono12", "Mono16"])
def test_deep_grey_has_16_bits(camera, pixel_format):
    camera.PixelFormat = pixel_format
    array = camera.grab_one().array
    assert array.dtype == numpy.uint16 and array.shape == (32, 64)
    assert not array.flags.owndata
    assert array[1:].max() < 1 << int(pixel_format[4:])


@pytest.fixture
def colour(simulation):
    with vanto.open("SIM00002") as camera:
        camera.Width, camera.Height = 64, 32
        yield camera


def test_colours_are_a_third_dimension(colour):
    colour.PixelFormat = "RGB8"
    array = colour.grab_one().array
    assert array.shape == (32, 64, 3) and array.dtype == numpy.uint8
    assert not array.flags.owndata


@pytest.mark.parametrize("pixel_format, kind", [("BayerRG8", "u1"), ("BayerRG12", "<u2")])
def test_bayer_patterns_stay_as_they_are(colour, pixel_format, kind):
    colour.PixelFormat = pixel_format
    frame = colour.grab_one()
    assert frame.pixel_format == pixel_format
    assert frame.array.shape == (32, 64) and frame.array.dtype == numpy.dtype(kind)


@pytest.mark.parametrize("pixel_format, mode", [("RGB8", "RGB"), ("BayerRG8", "L"), ("BayerRG12", "I;16")])
def test_images_are_for_pil(colour, pixel_format, mode):
    colour.PixelFormat = pixel_format
    frame = colour.grab_one()
    image = frame.image()
    assert (image.mode, image.size) == (mode, (64, 32))
    assert (numpy.asarray(image) == frame.array).all()


@pytest.mark.parametrize("name", ["image.png", "image.pgm", "image.tiff", "image.raw"])
def test_frames_are_saved(camera, tmp_path, name):
    frame = camera.grab_one()
    frame.save(tmp_path / name)
    if name.endswith("raw"):
        assert (tmp_path / name).read_bytes() == frame.array.tobytes()
    else:
        import PIL.Image

        assert (numpy.asarray(PIL.Image.open(tmp_path / name)) == frame.array).all()


def test_what_can_not_be_saved_is_told(camera, tmp_path):
    frame = camera.grab_one()
    with pytest.raises(vanto.Error, match="no image format"):
        frame.save(tmp_path / "image.xyz")
    with pytest.raises(TypeError):
        frame.save(5)


def test_streams_end_by_themselves_or_are_closed(camera):
    stream = camera.stream(count=3)
    assert stream.is_running
    assert len(list(stream)) == 3
    assert stream.next() is None and stream.try_next() is None
    stream.close()
    stream.close()
    assert not stream.is_running
    with camera.stream() as stream:
        assert next(stream).number == 1
        assert "running" in repr(stream)
    assert list(stream) == [] and "ended" in repr(stream)


def test_a_camera_has_one_stream_at_a_time(camera):
    with camera.stream():
        with pytest.raises(vanto.GrabError, match="takes frames already") as caught:
            camera.stream()
    assert isinstance(caught.value, RuntimeError)
    assert camera.grab_one().is_complete


def test_a_stream_that_nobody_has_is_closed(camera):
    camera.stream()
    camera.stream().close()


def test_a_stream_keeps_its_camera(simulation):
    assert len(list(vanto.open("SIM00001").grab(3))) == 3
    vanto.open("SIM00001").close()


def test_a_camera_that_is_collected_while_it_grabs_is_closed(simulation):
    circle = [vanto.open("SIM00001").stream()]
    frame = next(circle[0])
    circle.append(circle)
    del circle
    gc.collect()
    vanto.open("SIM00001").close()
    assert frame.array.size == frame.width * frame.height > 0


def test_frames_are_counted(camera):
    stream = camera.grab(5)
    list(stream)
    counts = stream.counts
    assert (counts.delivered, counts.cut, counts.failed, counts.bytes) == (5, 0, 0, 5 * 64 * 32)


def test_lost_frames_are_counted_and_told(caplog):
    with vanto.simulate(1, grabber="DropEvery=4"), vanto.open() as camera:
        camera.Width, camera.Height = 64, 32
        stream = camera.grab(9)
        frames = list(stream)
    lost = sum(frame.missed for frame in frames)
    assert lost >= 2 and stream.counts.missed == lost
    assert frames[-1].number == 9 + lost
    assert "lost before" in repr(next(frame for frame in frames if frame.missed))
    assert [record.levelname for record in caplog.records if "frames were lost" in record.message] == ["WARNING"]


def test_frames_that_do_not_come_are_a_timeout(capsys):
    with vanto.simulate(1, grabber="Trigger=On"), vanto.open() as camera:
        with camera.stream(timeout=0.1) as stream:
            assert stream.try_next() is None
            with pytest.raises(vanto.Timeout, match="no frame came in time"):
                next(stream)
            with pytest.raises(TimeoutError):
                stream.next(timeout=0)
            camera.stream_features["DebugData1"].value = 1
            assert stream.next(timeout=5).is_complete


@pytest.mark.parametrize("arguments", [{"buffers": 0}, {"timeout": -1}, {"timeout": float("nan")}])
def test_a_stream_has_sensible_numbers(camera, arguments):
    with pytest.raises(ValueError):
        camera.stream(**arguments)


@pytest.mark.parametrize("arguments", [{"buffers": "8"}, {"timeout": "1"}, {"count": 1.5}, {"count": None}])
def test_a_stream_has_numbers(camera, arguments):
    with pytest.raises(TypeError):
        camera.stream(**arguments)
    with pytest.raises(TypeError):
        camera.grab("10")


def test_without_a_frame_grabber_there_are_no_frames():
    with vanto.simulate(1, grabber="FailInit=broken") as simulation, vanto.open() as camera:
        with pytest.raises(vanto.GrabError, match="has no frame grabber"):
            camera.grab_one()
        with pytest.raises(vanto.GrabError):
            camera.stream_features
        assert simulation.serial_numbers == ["SIM00001"]


def test_frames_come_asynchronously(camera):
    async def take():
        numbers = []
        async with camera.stream(count=5) as stream:
            async for frame in stream:
                numbers.append(frame.number)
        return numbers, stream.is_running

    numbers, running = asyncio.run(take())
    assert len(numbers) == 5 and numbers == sorted(set(numbers)) and not running


def test_other_tasks_run_meanwhile():
    async def take(camera):
        ticks = 0

        async def tick():
            nonlocal ticks
            while True:
                await asyncio.sleep(0)
                ticks += 1

        ticker = asyncio.create_task(tick())
        async for frame in camera.grab(3):
            assert frame.is_complete
        ticker.cancel()
        return ticks

    with vanto.simulate(1, frame_rate=20), vanto.open() as camera:
        assert asyncio.run(take(camera)) > 3


def test_a_frame_that_a_cancelled_task_waited_for_comes_to_the_next_one():
    async def take(camera):
        async with camera.stream() as stream:
            with pytest.raises(asyncio.TimeoutError):
                await asyncio.wait_for(anext(stream), 0.05)
            camera.stream_features["DebugData1"].value = 1
            return (await anext(stream)).number

    with vanto.simulate(1, grabber="Trigger=On"), vanto.open() as camera:
        assert asyncio.run(take(camera)) == 1


def test_several_threads_share_a_stream(camera):
    numbers, lock = [], threading.Lock()

    def take(stream):
        for frame in stream:
            with lock:
                numbers.append(frame.number)

    with camera.stream(count=60) as stream:
        threads = [threading.Thread(target=take, args=(stream,)) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    assert len(numbers) == len(set(numbers)) == 60
