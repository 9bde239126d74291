# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The document of the interface, compared with the server in both directions."""

from __future__ import annotations

import re
from pathlib import Path
from typing import Any

import pytest
from client import API, DESCRIPTION, DOCUMENT, load, resolver
from jsonschema import Draft202012Validator
from ownerlib.service import routes
from ownerlib.view_answers import FILES
from tornado.web import RequestHandler

SCHEMAS = sorted(DESCRIPTION.parent.glob("schemas/*.yaml"))
METHODS = ("get", "post", "put", "patch", "delete")


def served() -> dict[str, set[str]]:
    """The paths of the server, without the names of their parts, and what each answers to."""
    found = {}
    for route in routes(None):  # type: ignore[arg-type]
        path = re.sub(r"\([^)]*\)", "{}", str(route[0]).replace(FILES, "{}").replace("\\", "")).removeprefix(API)
        found[path] = {name for name in METHODS if getattr(route[1], name) is not getattr(RequestHandler, name)}
    return found


def described() -> dict[str, set[str]]:
    return {re.sub(r"\{\w+\}", "{}", path): set(METHODS) & set(operations) for path, operations in DOCUMENT["paths"].items()}


def test_every_request_that_is_answered_is_described_and_the_other_way_round() -> None:
    assert served() == described()


def test_every_schema_is_one() -> None:
    for file in SCHEMAS:
        for schema in load(file.as_uri()).values():
            Draft202012Validator.check_schema(schema)


def references(part: Any) -> list[str]:
    if isinstance(part, dict):
        own = [part["$ref"]] if "$ref" in part else []
        return own + [reference for value in part.values() for reference in references(value)]
    return [reference for value in part for reference in references(value)] if isinstance(part, list) else []


@pytest.mark.parametrize("file", [DESCRIPTION, *SCHEMAS], ids=lambda file: file.name)
def test_every_reference_leads_somewhere(file: Path) -> None:
    found = references(load(file.as_uri()))
    assert found
    for reference in found:
        assert resolver(file).resolve(reference)
