# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The comments of the public headers, from which the manual is made."""

from __future__ import annotations

import re
from collections.abc import Iterable

import pytest
from conftest import REPOSITORY
from manuallib.costs import read_costs
from manuallib.doxygen import Undocumented, read_reference
from manuallib.reference import Function, Reference


@pytest.fixture(scope="module")
def reference() -> Reference:
    """What doxygen reads of them."""
    return read_reference()


@pytest.fixture(scope="module")
def functions(reference: Reference) -> list[Function]:
    return reference.functions


def names(functions: Iterable[Function]) -> set[str]:
    return {function.name for function in functions}


def test_doxygen_finds_a_text_for_everything_that_they_declare() -> None:
    try:
        read_reference()
    except Undocumented as problem:
        pytest.fail(str(problem))


def test_they_describe_what_the_library_exports(reference: Reference) -> None:
    exported = set(re.findall(r"^ +(\w+);", (REPOSITORY / "src/libusbdevlib.map").read_text(), re.MULTILINE))
    assert names(reference.functions) | {one.name for one in reference.variables} == exported


def test_every_parameter_is_named_once_with_its_direction(functions: list[Function]) -> None:
    different = {
        function.name
        for function in functions
        if sorted(name for one in function.parameters for name in one.names) != sorted(name for _, name in function.arguments)
        or not all(one.direction for one in function.parameters)
    }
    assert different == set()


def test_the_functions_that_take_the_lock_are_those_that_were_counted_opening_the_file(functions: list[Function]) -> None:
    costs = read_costs()
    counted = {name for name, cost in costs.items() if cost.passes}
    assert names(function for function in functions if function.takes_lock) == counted


def test_the_functions_that_run_commands_are_those_that_were_counted_running_some(functions: list[Function]) -> None:
    costs = read_costs()
    counted = {name for name, cost in costs.items() if cost.commands}
    assert names(function for function in functions if function.runs_commands) == counted
