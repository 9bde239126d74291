# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "manager-service"."""

from __future__ import annotations

import argparse
import asyncio

from servicelib import lifecycle
from usbdev import Notification

from managerlib import changes, notification
from managerlib.library import Library
from managerlib.streams import Streams

ADDRESS = ("127.0.0.1", 10171)
NODES = "/dev"


class Receiver(asyncio.DatagramProtocol):
    """Prints each notification, and updates the streams."""

    def __init__(self, streams: Streams) -> None:
        self._streams = streams

    def datagram_received(self, data: bytes, addr: tuple[str, int]) -> None:
        try:
            print(notification.line(Notification.from_bytes(data)), flush=True)
            self._streams.look_again()
        except ValueError as problem:
            lifecycle.say(f"refused a datagram: {problem}")


async def serve() -> None:
    streams = Streams(Library())
    changes.follow(NODES, streams.cameras_changed)
    loop = asyncio.get_running_loop()
    transport, _ = await loop.create_datagram_endpoint(lambda: Receiver(streams), local_addr=ADDRESS)
    following = loop.create_task(streams.follow())
    stopped = loop.create_task(lifecycle.until_stopped("listening on {}:{}".format(*ADDRESS)))
    await asyncio.wait((following, stopped), return_when=asyncio.FIRST_COMPLETED)
    transport.close()
    streams.end()
    await following


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(
        prog="manager-service", description="Receives the library's change notifications and runs the profiles' streams."
    )
    parser.parse_args(arguments)
    return lifecycle.run(serve())
