# SPDX-License-Identifier: Apache-2.0
"""Each argument of each public function refuses values of other types, and nothing is worse behind it."""

import inspect
import itertools

import pytest
import vanto

NOTHING = object()
WRONG = {
    "str": [None, 5, 1.5, b"x", [], {}, NOTHING],
    "str | CameraRecord | None": [5, 1.5, b"x", [], NOTHING],
    "str | os.PathLike[str]": [None, 5, 1.5, [], {}, NOTHING],
    "int": [None, "8", 1.5, b"8", [], NOTHING, 2**70],
    "int | float": [None, "8", b"8", [], NOTHING],
    "float": [None, "8", b"8", [], NOTHING, float("nan"), -1],
    "float | None": ["8", b"8", [], NOTHING, float("nan"), -1],
    "bytes": [None, 5, 1.5, "x", [1], NOTHING],
    "object": [None, [5], {}, NOTHING, (1, 2), 1j],
    "Any": [None, [5], {}, NOTHING, (1, 2), 1j],
    "Visibility": [None, "all", 99, [], NOTHING],
    "Sequence[str]": [None, 5, [5], "H2048", NOTHING],
    "Callable[[], object]": [None, 5, "x", []],
    "Callable[[Feature], object]": [None, 5, "x", []],
}
GOOD = {
    "address": 0x10005C,
    "callback": print,
    "camera": 0,
    "command": "UserSetLoad",
    "count": 1,
    "data": b"\0\0\0\0",
    "file": "missing",
    "length": 4,
    "line": "status",
    "name": "Width",
    "path": "missing/settings",
    "selectors": "Line2",
    "timeout": 5.0,
    "value": 64,
}
REFUSALS = (TypeError, ValueError, LookupError, AttributeError, OverflowError, vanto.Error)
# Special methods with arguments of a user; the others have those of the interpreter. Looking something up that is no
# name finds nothing, as in every mapping.
SPECIAL = {"__getitem__", "__call__"}


@pytest.fixture(scope="module")
def things(simulation):
    """One of each class."""
    with vanto.open("SIM00001") as camera:
        camera.Width, camera.Height = 64, 32
        frame = camera.grab_one()
        width = camera.features["Width"]
        yield {
            vanto.Camera: camera,
            vanto.Features: camera.features,
            vanto.Feature: camera.features["UserSetLoad"],
            vanto.Frame: frame,
            vanto.Stream: camera.grab(0),
            vanto.Range: width.range,
            vanto.Entries: camera.features["PixelFormat"].entries,
            vanto.Subscription: width.on_change(print),
            vanto.Selection: camera.select(LineSelector="Line2"),
            vanto.Simulation: simulation,
        }


def operations(thing):
    """Public operations that take an argument, by name."""
    for name, member in vars(type(thing)).items():
        if (inspect.isfunction(member) and not name.startswith("_")) or name in SPECIAL:
            yield name


def calls():
    """Which function, which of its arguments, and that one's type."""
    functions = [(None, name) for name in vanto.__all__ if inspect.isfunction(getattr(vanto, name))]
    kinds = [kind for name in vanto.__all__ if inspect.isclass(kind := getattr(vanto, name))]
    methods = [
        (kind, name)
        for kind in kinds
        for name, member in vars(kind).items()
        if inspect.isfunction(member) and (not name.startswith("_") or name in SPECIAL)
    ]
    for owner, name in functions + methods:
        if owner is not None and issubclass(owner, (Exception, vanto.StreamCounts, str)):
            continue
        function = getattr(owner or vanto, name)
        for parameter in list(inspect.signature(function).parameters.values())[owner is not None :]:
            yield owner, name, parameter


def label(owner, name, parameter):
    return f"{owner.__name__ if owner else 'vanto'}.{name}.{parameter.name}"


CALLS = [pytest.param(*call, id=label(*call)) for call in calls()]


@pytest.mark.parametrize("owner, name, parameter", CALLS)
def test_an_argument_of_another_type_is_refused(things, owner, name, parameter):
    function = getattr(things[owner] if owner else vanto, name)
    others = [
        GOOD[other.name]
        for other in itertools.takewhile(
            lambda other: other.name != parameter.name, inspect.signature(function).parameters.values()
        )
        if other.default is inspect.Parameter.empty and other.kind is inspect.Parameter.POSITIONAL_OR_KEYWORD
    ]
    rest = {
        other.name: GOOD[other.name]
        for other in list(inspect.signature(function).parameters.values())[len(others) + 1 :]
        if other.default is inspect.Parameter.empty and other.name != parameter.name
    }
    for wrong in WRONG[parameter.annotation]:
        with pytest.raises(REFUSALS):
            if parameter.kind is inspect.Parameter.VAR_KEYWORD:
                function(LineSelector=wrong).__enter__()
            elif parameter.kind is inspect.Parameter.KEYWORD_ONLY or parameter.default is not inspect.Parameter.empty:
                function(*others, **rest, **{parameter.name: wrong})
            else:
                function(*others, wrong, **rest)
            print("taken:", repr(wrong))


@pytest.mark.parametrize("feature", ["Width", "ExposureTime", "PixelFormat", "ReverseX", "DeviceUserID", "UserSetLoad"])
def test_a_value_of_another_type_is_refused(things, feature):
    camera = things[vanto.Camera]
    before = camera.Width
    for wrong in WRONG["Any"]:
        with pytest.raises(REFUSALS):
            camera.features[feature].value = wrong
        with pytest.raises(REFUSALS):
            setattr(camera, feature, wrong)
    assert camera.Width == before


@pytest.mark.parametrize("count", [1, 2, 5])
def test_too_many_arguments_are_refused(things, count):
    for thing in things.values():
        for name in operations(thing):
            parameters = inspect.signature(getattr(thing, name)).parameters.values()
            if any(one.kind is inspect.Parameter.VAR_POSITIONAL for one in parameters):
                continue
            with pytest.raises(TypeError):
                getattr(thing, name)(*[NOTHING] * (len(parameters) + count))


def test_everything_works_behind_all_that(things):
    camera = things[vanto.Camera]
    camera.Width = 128
    assert camera.grab_one().array.shape == (32, 128)
