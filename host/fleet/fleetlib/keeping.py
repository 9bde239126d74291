# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Keeps a connection to the broker: whenever it is lost, another one is made, after a growing random pause, because the hosts
of a broker that comes back would all be there at the same moment otherwise."""

from __future__ import annotations

import random
import time
from asyncio import sleep
from collections.abc import Awaitable, Callable

from servicelib.lifecycle import say

from fleetlib.connection import Connection

FIRST_SECONDS = 1.0
LONGEST_SECONDS = 120.0
WELL_SECONDS = 60.0  # a connection that lasted this long worked


async def keep(make: Callable[[], Connection], work: Callable[[Connection], Awaitable[None]]) -> None:
    """Gives each new connection to `work`, until cancelled."""
    pause, told = FIRST_SECONDS, ""
    while True:
        began = time.monotonic()
        reason = await _use(make(), work)
        if time.monotonic() - began >= WELL_SECONDS:
            pause, told = FIRST_SECONDS, ""
        if reason != told:
            say(f"no connection to the broker: {reason}")
            told = reason
        await sleep(random.uniform(pause / 2, pause))
        pause = min(2 * pause, LONGEST_SECONDS)


async def _use(connection: Connection, work: Callable[[Connection], Awaitable[None]]) -> str:
    """Returns why the connection was lost."""
    reason = ""
    try:
        await connection.open()
        say("connected to the broker")
        await work(connection)
    except* OSError as problems:  # among them Lost, and what TLS and the names of machines fail with
        reason = _first(problems)
    finally:
        connection.leave(with_will=True)
    return reason


def _first(problem: BaseException) -> str:
    while isinstance(problem, BaseExceptionGroup):
        problem = problem.exceptions[0]
    return " ".join(str(problem).split()) or type(problem).__name__
