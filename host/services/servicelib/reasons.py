# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The event log, in which a camera that gets no channel, or a stream that begins to fail, has the reason and the cure."""

from __future__ import annotations

import asyncio
import subprocess

from servicelib.counts import counts
from servicelib.lifecycle import say

# It has the words, and shows the same ones to users.
PROGRAM = "/usr/bin/usbdevctl"
SECONDS = 60


async def log(camera: str) -> None:
    """Lets usbdevctl find out and log why a camera, named by its port or profile, does not work. Nothing depends on it, so it
    may fail."""
    with counts.timed("commands", "explain"):
        await _log(camera)


async def _log(camera: str) -> None:
    try:
        process = await asyncio.create_subprocess_exec(
            PROGRAM, "explain", camera, "--log", stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
    except OSError as problem:
        say(f"why {camera} does not work was not logged: {problem}")
        return
    try:
        async with asyncio.timeout(SECONDS):
            await process.wait()
    except (TimeoutError, asyncio.CancelledError):
        process.kill()
        await process.wait()
