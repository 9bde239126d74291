# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How a service runs: it listens, prints that, works until it has to end, and ends in order."""

from __future__ import annotations

import asyncio
import os
import signal
import socket
import sys
from collections.abc import Coroutine


def run(service: Coroutine[None, None, None]) -> int:
    """Runs a service until it ends. If an address is in use, or the system refuses something else, prints one line."""
    try:
        asyncio.run(service)
    except OSError as problem:
        say(os.strerror(problem.errno) if problem.errno else str(problem))
        return 1
    return 0


async def until_stopped(address: str) -> None:
    """Prints that the service listens on the address, and returns when a signal ends it."""
    stop = asyncio.Event()
    for number in (signal.SIGINT, signal.SIGTERM):
        asyncio.get_running_loop().add_signal_handler(number, stop.set)
    say(f"listening on {address}")
    _tell_starter()
    await stop.wait()


def say(text: str) -> None:
    """Prints a line about the service itself, on standard error."""
    print(f"{os.path.basename(sys.argv[0])}: {text}", file=sys.stderr, flush=True)


def _tell_starter() -> None:
    """Reports that the service is ready, with the protocol of sd_notify(3), to the program that started it."""
    starter = os.environ.get("NOTIFY_SOCKET")
    if starter:
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as out:
            out.sendto(b"READY=1", "\0" + starter[1:] if starter.startswith("@") else starter)
