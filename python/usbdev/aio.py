# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Calls of the library from an event loop."""

from __future__ import annotations

import asyncio
import contextvars
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from typing import ParamSpec, TypeVar

from usbdev._turns import device_event, login, turns

P = ParamSpec("P")
R = TypeVar("R")

_threads = {turn: ThreadPoolExecutor(max_workers=1) for turn in (login, device_event)}


async def call(function: Callable[P, R], *arguments: P.args, **named: P.kwargs) -> R:
    """Calls a function of this package in a thread, while the event loop runs on: `await call(profiles.stream_info, 0)`.

    Logins wait for each other in a thread of their own, and so do device events, so that they keep no other call from
    a thread. A call that is cancelled still runs to its end.
    """
    context = contextvars.copy_context()

    def run() -> R:
        return context.run(function, *arguments, **named)

    turn = turns.get(function)
    thread = None if turn is None else _threads[turn]
    return await asyncio.get_running_loop().run_in_executor(thread, run)
