# SPDX-License-Identifier: Apache-2.0
"""The other tests call every function that the module has. CTest runs this one behind them."""

import ast
import inspect
import os
import pathlib

import pytest
import vanto

HERE = pathlib.Path(__file__)
STUB = HERE.parents[2] / "python" / "vanto" / "_core.pyi"


def functions_of(kind):
    """Functions and properties that a class has of its own, without those that were made for it."""
    for name, member in vars(kind).items():
        written = getattr(member, "__func__", getattr(member, "fget", member))
        code = getattr(written, "__code__", None)
        if code is not None and "vanto" in code.co_filename and not name.startswith("_abc"):
            yield code.co_qualname
        setter = getattr(member, "fset", None)
        if setter is not None and hasattr(setter, "__code__"):
            yield setter.__code__.co_qualname


def public():
    for name in vanto.__all__:
        thing = getattr(vanto, name)
        if inspect.isclass(thing):
            yield from functions_of(thing)
        else:
            yield thing.__code__.co_qualname


def compiled():
    for node in ast.parse(STUB.read_text()).body:
        if isinstance(node, ast.FunctionDef):
            yield f"_core.{node.name}"
        elif isinstance(node, ast.ClassDef):
            for method in node.body:
                yield f"_core.{node.name}.{method.name}"


# What runs at the end of a process only, or in a forked one, where nobody takes notes.
AT_THE_END = {"_core.shut_down", "_core.note_fork"}


@pytest.fixture(scope="module")
def called():
    folder = pathlib.Path(os.environ.get("VANTO_PYTHON_CALLS") or pytest.skip("ctest -R python.every runs it"))
    return set().union(*(file.read_text().split("\n") for file in folder.glob("*_test.py")))


def test_there_are_functions_to_be_called():
    assert {"Camera.close", "Feature.value", "open", "Range.clip"} <= set(public())
    assert {"_core.open", "_core.Camera.close"} <= set(compiled())


def test_every_public_function_is_called(called):
    assert sorted(set(public()) - called) == []


def test_every_function_of_the_compiled_part_is_called(called):
    assert sorted(set(compiled()) - called - AT_THE_END) == []
