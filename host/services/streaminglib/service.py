# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "streaming-service"."""

from __future__ import annotations

import argparse
import asyncio

from servicelib import lifecycle

from streaminglib import message

ADDRESS = ("127.0.0.1", 10170)
# The connection of a sender that sends nothing is closed after this time.
PATIENCE_SECONDS = 10


async def receive(reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
    """Prints the one signal of a connection; there is no answer."""
    try:
        async with asyncio.timeout(PATIENCE_SECONDS):
            signal = await _whole(reader)
        message.check(signal)
        print(message.shown(signal), flush=True)
    except TimeoutError:
        lifecycle.say(f"refused a signal: it was not complete after {PATIENCE_SECONDS} seconds")
    except (ValueError, ConnectionError) as problem:
        lifecycle.say(f"refused a signal: {problem}")
    finally:
        writer.close()


async def _whole(reader: asyncio.StreamReader) -> bytes:
    """Reads what the sender sends, but no more than is needed to notice that it is too much."""
    try:
        return await reader.readexactly(message.SIZE + 1)
    except asyncio.IncompleteReadError as end:
        return end.partial


async def serve() -> None:
    server = await asyncio.start_server(receive, *ADDRESS)
    await lifecycle.until_stopped("listening on {}:{}".format(*ADDRESS))
    server.close()


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="streaming-service", description="Receives the library's stream signals.")
    parser.parse_args(arguments)
    return lifecycle.run(serve())
