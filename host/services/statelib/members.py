# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The members of a request, which is a JSON object from outside: each is known, and of the right kind."""

from __future__ import annotations

import json
from types import UnionType
from typing import Any, get_args

from statelib import problems

Kind = type | UnionType
Kinds = dict[str, Kind]


def members(body: bytes, required: Kinds, optional: Kinds | None = None) -> dict[str, Any]:
    """Returns the members of the body; raises Problem for one that is missing, unknown or of another kind."""
    kinds = {**required, **(optional or {})}
    found = _object(body)
    if missing := [name for name in required if name not in found]:
        raise problems.invalid(f"The request lacks {missing[0]}.")
    for name, value in found.items():
        if name not in kinds or not _is(value, kinds[name]):
            raise problems.invalid(f"The request has no proper {name}." if name in kinds else "The request has a member too many.")
    return found


def _object(body: bytes) -> dict[str, Any]:
    try:
        found = json.loads(body)
    except (ValueError, RecursionError):
        found = None
    if not isinstance(found, dict):
        raise problems.invalid("The request is not a JSON object.")
    return found


def _is(value: object, kind: Kind) -> bool:
    """Checks that a value has the kind, and that a text can be passed on. No truth value is a number."""
    if isinstance(kind, UnionType):
        return any(_is(value, one) for one in get_args(kind))
    if kind is str:
        return isinstance(value, str) and _can_be_passed_on(value)
    if kind is float:
        return isinstance(value, (int, float)) and not isinstance(value, bool)
    return type(value) is kind


def _can_be_passed_on(text: str) -> bool:
    try:
        text.encode()
    except UnicodeError:
        return False
    return "\0" not in text
