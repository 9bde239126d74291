# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Reads the query of a request. The client does not escape a "+", so a "+" is not a blank here."""

from __future__ import annotations

import base64
import binascii
from urllib.parse import unquote_to_bytes

Query = dict[str, bytes]


def parse(query: bytes) -> Query:
    """Returns the first value of each name."""
    values: Query = {}
    for field in query.split(b"&"):
        name, _, value = field.partition(b"=")
        values.setdefault(name.decode("latin-1"), unquote_to_bytes(value))
    return values


def text(query: Query, name: str) -> str | None:
    """Returns a value as text, or nothing."""
    try:
        return query[name].decode()
    except (KeyError, UnicodeDecodeError):
        return None


def password(query: Query) -> bytes | None:
    try:
        return base64.b64decode(query["pwd"], validate=True)
    except (KeyError, binascii.Error):
        return None
