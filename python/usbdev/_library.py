# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The library, and how texts and results cross its border."""

from __future__ import annotations

from functools import cache
from typing import Any

from usbdev._usbdev import ffi as ffi
from usbdev.errors import UsbdevError

UNTOUCHED = b"\n"  # no text of the library begins with a line end
NAME_SIZE = 256
ID_SIZE = 16


@cache
def library() -> Any:
    """Loads the library at the first call, so that records and notifications can be used without it."""
    return ffi.dlopen("libusbdevlib.so.1")


def ask(function: str, *arguments: object) -> Any:
    """Calls a function of the library; returns its result."""
    return getattr(library(), function)(*arguments)


def call(function: str, *arguments: object) -> None:
    """Calls a function of the library; raises UsbdevError unless it returns 0."""
    result = ask(function, *arguments)
    if result != 0:
        raise UsbdevError(function, result)


def encoded(text: str, size: int | None = None) -> bytes:
    """Returns the bytes of a text; raises ValueError if they do not fit into `size` bytes with a terminating zero."""
    if not isinstance(text, str):
        raise TypeError(f"a text is needed, not {type(text).__name__}")
    result = text.encode("utf-8", "surrogateescape")
    if b"\0" in result:
        raise ValueError("the text contains a zero")
    if size is not None and len(result) >= size:
        raise ValueError(f"the text has {len(result)} bytes, and at most {size - 1} are possible")
    return result


def decoded(content: bytes) -> str:
    return content.decode("utf-8", "surrogateescape")


def text_in(buffer: Any) -> str:
    """Returns the zero-terminated text in a buffer, which may fill all of it."""
    return decoded(ffi.string(buffer))


def new_buffer(size: int, content: bytes = b"") -> Any:
    """Makes a buffer of `size` bytes that begins with the content; the rest is zero."""
    buffer = ffi.new("char[]", size)
    ffi.memmove(buffer, content, len(content))
    return buffer


def new_ints(values: tuple[int, ...]) -> Any:
    return ffi.new("int[]", values)


def text_from(function: str, *arguments: object, size: int) -> str:
    """Calls a function whose last argument is a buffer of `size` bytes; returns the text that it put there."""
    out = new_buffer(size)
    call(function, *arguments, out)
    return text_in(out)


def text_if_set(function: str, *arguments: object, size: int) -> str | None:
    """The same, for a function that succeeds and leaves the buffer untouched if there is nothing to return."""
    out = new_buffer(size, UNTOUCHED)
    call(function, *arguments, out)
    return None if ffi.string(out) == UNTOUCHED else text_in(out)


def text_if_found(function: str, *arguments: object, size: int) -> str | None:
    """The same, for a function that returns 1 if it found something."""
    out = new_buffer(size)
    return text_in(out) if ask(function, *arguments, out) == 1 else None


def int_from(function: str, *arguments: object) -> int:
    """Calls a function whose last argument is an integer that it sets; returns that."""
    out = ffi.new("int *")
    call(function, *arguments, out)
    return int(out[0])


def number_or_none(value: int) -> int | None:
    """Returns None for -1, which stands for no profile, no channel or no node."""
    return None if value == -1 else int(value)
