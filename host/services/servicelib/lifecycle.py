"""A service's life: it listens, says so, works until it is asked to end, and ends in order."""

from __future__ import annotations

import asyncio
import os
import signal
import socket
import sys
from collections.abc import Coroutine


def run(service: Coroutine[None, None, None]) -> int:
    """Runs a service to its end. An address that cannot be had, or another refusal of the system, is told in a line."""
    try:
        asyncio.run(service)
    except OSError as problem:
        say(os.strerror(problem.errno) if problem.errno else str(problem))
        return 1
    return 0


async def until_stopped(address: str) -> None:
    """Tells that the service listens on the address, and returns when a signal asks it to end."""
    stop = asyncio.Event()
    for number in (signal.SIGINT, signal.SIGTERM):
        asyncio.get_running_loop().add_signal_handler(number, stop.set)
    say(f"listening on {address}")
    _tell_starter()
    await stop.wait()


def say(text: str) -> None:
    """A line about the service itself, which is not part of what it prints."""
    print(f"{os.path.basename(sys.argv[0])}: {text}", file=sys.stderr, flush=True)


def _tell_starter() -> None:
    """The protocol of sd_notify(3): whoever started the service may want to wait until it is ready."""
    starter = os.environ.get("NOTIFY_SOCKET")
    if starter:
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as out:
            out.sendto(b"READY=1", "\0" + starter[1:] if starter.startswith("@") else starter)
