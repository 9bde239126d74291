"""A signal to the streaming service. What its bytes mean is between its sender and the service, so they are shown as they are."""

from __future__ import annotations

SIZE = 32


def check(message: bytes) -> None:
    """Raises ValueError for a signal of another size; more than one byte too many is never read."""
    if len(message) < SIZE:
        raise ValueError(f"it has {len(message)} bytes, not {SIZE}")
    if len(message) > SIZE:
        raise ValueError(f"it has more than {SIZE} bytes")


def shown(message: bytes) -> str:
    """Each byte in hexadecimal, and as a character where it is one."""
    characters = "".join(chr(byte) if 0x20 <= byte < 0x7F else "." for byte in message)
    return f"signal  {message.hex(' ', 4)}  |{characters}|"
