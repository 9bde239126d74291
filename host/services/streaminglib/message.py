# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A signal to the streaming service. Only its sender knows what the bytes mean, so they are shown as they are."""

from __future__ import annotations

SIZE = 32


def check(message: bytes) -> None:
    """Raises ValueError for a signal of another size; more than one byte too many is never read."""
    if len(message) < SIZE:
        raise ValueError(f"it has {len(message)} bytes, not {SIZE}")
    if len(message) > SIZE:
        raise ValueError(f"it has more than {SIZE} bytes")


def shown(message: bytes) -> str:
    """Returns each byte in hexadecimal, and as a character if it is one."""
    characters = "".join(chr(byte) if 0x20 <= byte < 0x7F else "." for byte in message)
    return f"signal  {message.hex(' ', 4)}  |{characters}|"
