# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Notices with inotify that files in a folder come and go. Which, the one who is called finds out."""

from __future__ import annotations

import asyncio
import ctypes
import os
from collections.abc import Callable

# Of <sys/inotify.h>: a file has come, or has other permissions or fewer names.
CREATED = 0x100
ATTRIBUTES = 0x4
MOST_BYTES = 65536


def follow(folder: str, changed: Callable[[], None]) -> None:
    """Calls `changed` after files came, went or got other permissions, as long as the event loop runs."""
    libc = ctypes.CDLL(None, use_errno=True)
    events = _checked(libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC))
    _checked(libc.inotify_add_watch(events, os.fsencode(folder), CREATED | ATTRIBUTES))

    def take() -> None:
        os.read(events, MOST_BYTES)
        changed()

    asyncio.get_running_loop().add_reader(events, take)


def _checked(result: int) -> int:
    if result < 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))
    return result
