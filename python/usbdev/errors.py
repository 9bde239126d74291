# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the package raises when a function of the library fails.

An argument that cannot be passed raises ValueError, OverflowError (a number) or TypeError, and nothing is called.
"""

from __future__ import annotations


class UsbdevError(Exception):
    """A function of the library failed: `function` is its C name, `result` what it returned."""

    def __init__(self, function: str, result: int) -> None:
        super().__init__(f"{function} returned {result}")
        self.function = function
        self.result = result


class NotViewableError(UsbdevError):
    """A stream cannot be shown: `code` is the reason, see ViewerCode; None if no channel serves the profile."""

    def __init__(self, function: str, result: int, code: int | None) -> None:
        super().__init__(function, result)
        self.code = code

    def __str__(self) -> str:
        return f"{super().__str__()}, code {self.code}"
