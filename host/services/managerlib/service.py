# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "manager-service"."""

from __future__ import annotations

import argparse
import asyncio

from servicelib import changes, lifecycle
from servicelib.counts import counts
from usbdev import Notification

from managerlib import notification
from managerlib.hub import Hub
from managerlib.library import Library
from managerlib.streams import Streams

ADDRESS = ("127.0.0.1", 10171)
NODES = "/dev"


class Receiver(asyncio.DatagramProtocol):
    """Prints each notification, updates the streams and passes it on."""

    def __init__(self, streams: Streams, hub: Hub) -> None:
        self._streams = streams
        self._hub = hub

    def datagram_received(self, data: bytes, addr: tuple[str, int]) -> None:
        try:
            print(notification.line(Notification.from_bytes(data)), flush=True)
            self._streams.look_again()
            self._hub.pass_on(data)
            counts.add("notifications", "received")
        except ValueError as problem:
            counts.add("notifications", "refused")
            lifecycle.say(f"refused a datagram: {problem}")


async def serve() -> None:
    counts.begin("streams")
    streams = Streams(Library())
    changes.follow(NODES, changes.CREATED | changes.ATTRIBUTES, lambda _: streams.cameras_changed())
    hub = Hub()
    loop = asyncio.get_running_loop()
    transport, _ = await loop.create_datagram_endpoint(lambda: Receiver(streams, hub), local_addr=ADDRESS)
    hub.open()
    following = loop.create_task(streams.follow())
    stopped = loop.create_task(lifecycle.until_stopped("listening on {}:{}".format(*ADDRESS)))
    await asyncio.wait((following, stopped), return_when=asyncio.FIRST_COMPLETED)
    transport.close()
    hub.close()
    streams.end()
    await following


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(
        prog="manager-service", description="Receives the library's change notifications and runs the profiles' streams."
    )
    parser.parse_args(arguments)
    return lifecycle.run(serve())
