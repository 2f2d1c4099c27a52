# SPDX-License-Identifier: Apache-2.0
"""The tuples that the compiled part gives records in, for type checkers."""

from __future__ import annotations

from typing import TypeAlias, Union

Number: TypeAlias = Union[int, float]
RecordFacts: TypeAlias = tuple[str, str, str, str, str, str, dict[str, str]]
RangeFacts: TypeAlias = tuple[Number, Number, Union[Number, None], list[Number]]
EntryFacts: TypeAlias = tuple[str, int, str, str, bool]
FeatureFacts: TypeAlias = tuple[str, int, str, str, str, str, str, int, list[str], list[tuple[str, int]]]
DescriptionFacts: TypeAlias = tuple[str, str, str, list[FeatureFacts], list[str]]
