# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The package against the library: one function for each export, one dataclass for each record, declarations as in C."""

from __future__ import annotations

import ast
import os
import re
import sys
from collections.abc import Iterator
from dataclasses import fields
from pathlib import Path

import pytest

REPOSITORY = Path(__file__).resolve().parent.parent.parent
PACKAGE = REPOSITORY / "python/usbdev"
INCLUDE = REPOSITORY / "include"
sys.path += [str(REPOSITORY / "python"), str(REPOSITORY / "tests/abi")]

import declare  # noqa: E402
from library_file import listed_exports  # noqa: E402
from usbdev import records  # noqa: E402
from usbdev._usbdev import ffi  # noqa: E402

EXPORTS = listed_exports(REPOSITORY / "src/libusbdevlib.map")
SUBJECTS = ("core", "devices", "hostinfo", "hotplug", "profiles", "web")


def functions(subject: str) -> Iterator[ast.FunctionDef]:
    """Yields the public functions of a module."""
    tree = ast.parse((PACKAGE / f"{subject}.py").read_text())
    yield from (it for it in tree.body if isinstance(it, ast.FunctionDef) and not it.name.startswith("_"))


def described(function: ast.FunctionDef) -> str:
    """Returns the C name in the brackets that end the first line of the description."""
    line = (ast.get_docstring(function) or "").split("\n")[0]
    found = re.search(r"\((\w+)\)\.$", line)
    assert found, f"{function.name} does not name its C function: {line}"
    return found[1]


def exports_in(function: ast.FunctionDef) -> set[str]:
    """Returns the exports that the code of a function names."""
    names = {node.value for line in function.body[1:] for node in ast.walk(line) if isinstance(node, ast.Constant)}
    attributes = {node.attr for node in ast.walk(function) if isinstance(node, ast.Attribute)}
    return (names | attributes) & EXPORTS


ALL = [(subject, function) for subject in SUBJECTS for function in functions(subject)]
NAMES = [f"{subject}.{function.name}" for subject, function in ALL]


def test_every_export_has_a_function() -> None:
    assert {described(function) for _, function in ALL} == EXPORTS


def test_no_export_but_the_request_path_has_two_functions() -> None:
    called = [described(function) for _, function in ALL]
    assert {name for name in called if called.count(name) > 1} == {"NVR_CGI"}


def test_every_function_is_called_by_a_test() -> None:
    tests = [ast.parse(path.read_text()) for path in Path(__file__).parent.glob("on_host/test_*.py")]
    called = {ast.unparse(node) for tree in tests for node in ast.walk(tree) if isinstance(node, ast.Attribute)}
    assert set(NAMES) - called == set()


@pytest.mark.parametrize(("subject", "function"), ALL, ids=NAMES)
def test_a_function_calls_what_its_description_names(subject: str, function: ast.FunctionDef) -> None:
    assert exports_in(function) == {described(function)}


@pytest.mark.parametrize("subject", SUBJECTS)
def test_a_module_has_the_functions_of_its_header(subject: str) -> None:
    header = (INCLUDE / f"usbdev/{subject}.h").read_text()
    assert not [name for name in map(described, functions(subject)) if not re.search(rf"\b{name}\b", header)]


RECORDS = records.Record.__subclasses__()
COUNTED = {"_usbres_des", "_usbfmt_des"}  # their counts are lengths of tuples


def test_every_record_of_the_library_has_a_dataclass() -> None:
    assert {it.C_NAME for it in RECORDS} | COUNTED == set(ffi.list_types()[0])


@pytest.mark.parametrize("record", RECORDS, ids=lambda it: it.__name__)
def test_a_dataclass_has_the_fields_of_its_record_in_their_order(record: type[records.Record]) -> None:
    stored = [name for name, _ in ffi.typeof(record.C_NAME).fields if not name.startswith("reserved")]
    assert [field.name for field in fields(record)] == stored


PREPROCESSED = """\
# 1 "/include/usbdev/usbdev.h"
#define USBDEV_CHANNELS 10
#define USBDEV_USBDEV_H
# 1 "/usr/include/limits.h" 1 3 4
#define USBDEV_OF_ANOTHER 3
int of_the_c_library(void);
# 20 "/include/usbdev/usbdev.h" 2
#pragma GCC visibility push(default)
int own(void);
"""


def test_only_the_declarations_and_numbers_of_the_public_headers_are_used() -> None:
    own = list(declare.own_lines(PREPROCESSED, Path("/include")))
    assert own == ["#define USBDEV_CHANNELS 10", "int own(void);"]


def test_the_package_of_the_build_declares_every_export() -> None:
    generated = Path(os.environ["USBDEV_BUILD_DIR"], "python/usbdev/_usbdev.py").read_text()
    assert {name for name in EXPORTS if not re.search(rf"{name}\b", generated)} == set()
