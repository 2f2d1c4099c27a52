# SPDX-License-Identifier: Apache-2.0
"""What can be told without a camera: ports of the machine, descriptions in files."""

from __future__ import annotations

import os
from collections.abc import Mapping
from dataclasses import dataclass

from vanto import _core
from vanto._facts import FeatureFacts
from vanto._records import Kind, Port, Visibility


@dataclass(frozen=True)
class DescribedFeature:
    """A feature as a description has it. What only a camera can tell is not here."""

    name: str
    """As programs use it."""
    kind: Kind
    """What kind of value it has."""
    category: str
    """The path of its category: "AnalogControl/Gains"."""
    display_name: str
    """For people."""
    tool_tip: str
    """One sentence; may be empty."""
    documentation: str
    """May be empty."""
    unit: str
    """ "us"; empty for none."""
    visibility: Visibility
    """For whom it is meant."""
    selectors: tuple[str, ...]
    """Names of the features that select what this one is about."""
    entries: Mapping[str, int]
    """Of an enumeration, with their values."""


@dataclass(frozen=True)
class Description:
    """What a description file says."""

    vendor: str
    """The camera's maker."""
    model: str
    """The camera's model."""
    tool_tip: str
    """One sentence; may be empty."""
    features: Mapping[str, DescribedFeature]
    """By name, in the order of the description."""
    warnings: tuple[str, ...]
    """Faults that did not keep it from being loaded: "line 12: ..."."""

    def __repr__(self) -> str:
        """What camera it describes."""
        return f"<Description of {self.vendor} {self.model}: {len(self.features)} features>"


def ports() -> list[Port]:
    """List the serial ports of this machine, whether or not a camera is looked for on them."""
    return [Port(*port) for port in _core.ports()]


def describe(file: str | os.PathLike[str]) -> Description:
    """Read a camera description without a camera: an XML file, or a ZIP file that holds one."""
    vendor, model, tool_tip, features, warnings = _core.describe(os.fsdecode(file))
    return Description(
        vendor, model, tool_tip, {feature[0]: _feature(feature) for feature in features}, tuple(warnings)
    )


def _feature(facts: FeatureFacts) -> DescribedFeature:
    name, kind, category, display_name, tool_tip, documentation, unit, visibility, selectors, entries = facts
    return DescribedFeature(
        name,
        Kind(kind),
        category,
        display_name,
        tool_tip,
        documentation,
        unit,
        Visibility(visibility),
        tuple(selectors),
        dict(entries),
    )
