# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How a service runs: it listens, prints that, works until it has to end, and ends in order."""

from __future__ import annotations

import asyncio
import os
import signal
import sys
from collections.abc import Coroutine, Iterator
from contextlib import contextmanager

from systemd import daemon

SIGNS = 3  # of life in the time that the watchdog of a unit allows for one


def run(service: Coroutine[None, None, None]) -> int:
    """Runs a service until it ends. If an address is in use, or the system refuses something else, prints one line."""
    try:
        asyncio.run(service)
    except OSError as problem:
        say(os.strerror(problem.errno) if problem.errno else str(problem))
        return 1
    return 0


async def until_stopped(work: str) -> None:
    """Prints and reports that the service is ready for its work, and returns when a signal ends it."""
    stop = asyncio.Event()
    for number in (signal.SIGINT, signal.SIGTERM):
        asyncio.get_running_loop().add_signal_handler(number, stop.set)
    say(work)
    daemon.notify("READY=1")
    await stop.wait()


async def serve_until_stopped(work: str) -> None:
    """The same for a server, whose event loop gives the service manager signs of life."""
    _give_signs(int(os.environ.get("WATCHDOG_USEC", "0")) / 1e6 / SIGNS)
    await until_stopped(work)


def _give_signs(pause: float) -> None:
    """Gives one now and after each pause, unless there is no watchdog."""
    if pause:
        daemon.notify("WATCHDOG=1")
        asyncio.get_running_loop().call_later(pause, _give_signs, pause)


@contextmanager
def watched() -> Iterator[None]:
    """Lets the service manager end this process if what it does now takes longer than the watchdog of its unit allows.
    At rest it waits for events only, so no sign of life has to wake it up."""
    limit = os.environ.get("WATCHDOG_USEC")
    if limit is None:
        yield
        return
    daemon.notify(f"WATCHDOG_USEC={limit}")
    try:
        yield
    finally:
        daemon.notify("WATCHDOG_USEC=0")


def say(text: str) -> None:
    """Prints a line about the service itself, on standard error."""
    print(f"{os.path.basename(sys.argv[0])}: {text}", file=sys.stderr, flush=True)
