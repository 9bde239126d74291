# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The answers; clients search them for the text between markers."""

from __future__ import annotations

_ANSWER = '<?xml version="1.0" encoding="UTF-8"?>\n<login>\n{}</login>\n'
_FIELD = "<{0}><![CDATA[{1}]]></{0}>\n"


def refused() -> str:
    return _ANSWER.format(_FIELD.format("authPassed", 0))


def passed() -> str:
    return _ANSWER.format(_FIELD.format("authPassed", 1))


def logged_in(session: str) -> str:
    return _ANSWER.format(_FIELD.format("authPassed", 1) + _FIELD.format("authSid", session))
