# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How long whoever changes the configuration has to wait for its lock. They wait inside the library, which reports to nobody
how long; so the lock is taken as they do, once for each scrape, and released at once."""

from __future__ import annotations

import asyncio
import os
import time
from fcntl import LOCK_EX, LOCK_NB, flock

from servicelib.counts import counts
from servicelib.places import CONFIGURATION

PAUSE_SECONDS = 0.002
LONGEST_SECONDS = 5.0  # less than a scrape may take


class LockProbe:
    """Whoever asks while it waits gets the same answer, so that the lock is never taken twice at a time."""

    def __init__(self) -> None:
        self._running: asyncio.Task[None] | None = None

    async def measure(self) -> None:
        if self._running is None or self._running.done():
            self._running = asyncio.create_task(self._measure())
        await asyncio.shield(self._running)

    async def _measure(self) -> None:
        """Tries again and again, because a thread that waits for a lock would keep the service from ending."""
        try:
            file = os.open(CONFIGURATION, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC)
        except OSError:
            return  # which the state shows
        began = time.monotonic()
        try:
            while not _is_free(file) and time.monotonic() - began < LONGEST_SECONDS:
                await asyncio.sleep(PAUSE_SECONDS)
        finally:
            os.close(file)
        counts.add_time(time.monotonic() - began, "lock_waits")
        counts.write()  # for the scrape that waits


def _is_free(file: int) -> bool:
    """Takes the lock, which the caller's close releases."""
    try:
        flock(file, LOCK_EX | LOCK_NB)
    except BlockingIOError:
        return False
    return True
