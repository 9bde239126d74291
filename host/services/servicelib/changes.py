# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Notices with inotify that files in a folder come, change and go. What that means, the one who is called finds out."""

from __future__ import annotations

import asyncio
import ctypes
import os
import struct
from collections.abc import Callable, Iterator

# Of <sys/inotify.h>: a file has come, or has other permissions or fewer names; it was written and closed, was written, has
# come by another name, has gone.
CREATED = 0x100
ATTRIBUTES = 0x4
WRITTEN = 0x8
MODIFIED = 0x2
RENAMED = 0x80
REMOVED = 0x200
MOST_BYTES = 65536
EVENT = struct.Struct("iIII")  # and the name, filled up with zeros


def follow(folder: str, kinds: int, changed: Callable[[set[str]], None]) -> Callable[[], None]:
    """Calls `changed` with the names of files to which that happened, as long as the event loop runs, or until the returned
    function is called. No name means that too much happened to tell."""
    libc = ctypes.CDLL(None, use_errno=True)
    events = _checked(libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC))
    loop = asyncio.get_running_loop()

    def end() -> None:
        loop.remove_reader(events)
        os.close(events)

    try:
        _checked(libc.inotify_add_watch(events, os.fsencode(folder), kinds))
    except OSError:
        end()
        raise
    loop.add_reader(events, lambda: changed(set(_names(os.read(events, MOST_BYTES)))))
    return end


def _names(events: bytes) -> Iterator[str]:
    while events:
        length = EVENT.unpack_from(events)[3]
        yield os.fsdecode(events[EVENT.size : EVENT.size + length].rstrip(b"\0"))
        events = events[EVENT.size + length :]


def _checked(result: int) -> int:
    if result < 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))
    return result
