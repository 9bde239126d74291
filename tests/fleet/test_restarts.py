# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Broker, consumer and host are restarted in every order, and the broker keeps its messages on the disk or not: each time the
consumer sees the host as it is, and every event was taken by a broker."""

from __future__ import annotations

import asyncio
import itertools
import json
from contextlib import AsyncExitStack
from pathlib import Path

import pytest
from conftest import Broker, made_up, publishing, settings, soon, write_events
from fleetlib.publisher import Publisher
from paho.mqtt.client import Client, MQTTMessage, MQTTv5
from statelib import event_log

BASE = "usbdev/garden"
PARTS = ("broker", "consumer", "host")


class PatientConsumer:
    """Connects when there is a broker, and forgets everything at a restart."""

    def __init__(self, port: int) -> None:
        self.newest: dict[str, bytes] = {}
        self._client = Client(protocol=MQTTv5)
        self._client.on_connect = lambda client, *_: client.subscribe([("usbdev/#", 1), ("homeassistant/#", 1)])
        self._client.on_message = self._received
        self._client.reconnect_delay_set(0.1, 0.1)
        self._client.connect_async("127.0.0.1", port, 5)
        self._client.loop_start()

    def _received(self, client: Client, data: object, message: MQTTMessage) -> None:
        self.newest[message.topic] = message.payload

    def end(self) -> None:
        self._client.disconnect()
        self._client.loop_stop()

    def sees(self, device: str) -> bool:
        state = json.loads(self.newest.get(f"{BASE}/state", b"null"))
        return (
            state is not None
            and state["channels"][0]["device"] == device
            and self.newest.get(f"{BASE}/availability") == b"online"
            and "homeassistant/device/usbdev_garden/config" in self.newest
        )


class World:
    """The three, each of which can be stopped and started."""

    def __init__(self, folder: Path, log: Path, persistent: bool) -> None:
        self._folder = folder
        self._log = log
        kept = f"persistence true\npersistence_location {folder}/\n" if persistent else "persistence false\n"
        self._broker = Broker(folder, kept)
        self._consumer: PatientConsumer | None = None
        self._host: Publisher | None = None
        self._hosts_end = AsyncExitStack()
        self.device = ""

    async def start(self, part: str) -> None:
        if part == "broker":
            self._broker.start()
        elif part == "consumer":
            self._consumer = PatientConsumer(self._broker.port)
        else:
            given = settings(self._broker.port, discovery=True)
            self._host = await self._hosts_end.enter_async_context(publishing(given, self._folder, made_up(device=self.device)))

    async def stop(self, part: str) -> None:
        if part == "broker":
            self._broker.stop()
        elif part == "consumer":
            assert self._consumer is not None
            self._consumer.end()
        else:
            await self._hosts_end.aclose()
            self._host = None

    def change(self, device: str) -> None:
        """Another camera is there, of which the host learns if it runs."""
        self.device = device
        write_events(self._log, 3)
        if self._host is not None:
            self._host.note(made_up(device=device))
            self._host.logged()

    async def is_whole(self) -> None:
        assert self._consumer is not None
        await soon(lambda: self._consumer.sees(self.device))
        await soon(lambda: self._sent() == self._written())

    def _sent(self) -> int:
        assert self._host is not None
        return int(self._host._backlog._sent or 0)

    def _written(self) -> int:
        return event_log.newest_id() or 0


@pytest.mark.parametrize("persistent", [True, False], ids=["kept on the disk", "not kept"])
@pytest.mark.parametrize("order", itertools.permutations(PARTS), ids=" ".join)
def test_the_picture_is_whole_after_restarts(
    order: tuple[str, ...], persistent: bool, tmp_path: Path, log: Path, short_pauses: None
) -> None:
    async def scenario() -> None:
        world = World(tmp_path, log, persistent)
        write_events(log, 1)
        world.change("first")
        for part in order:
            await world.start(part)
        await world.is_whole()
        for part in order:  # one after the other
            await world.stop(part)
            world.change(f"while {part} was away")
            await world.start(part)
            await world.is_whole()
        for part in order:  # all together
            await world.stop(part)
        world.change("while nobody was there")
        for part in order:
            await world.start(part)
        await world.is_whole()
        for part in reversed(order):
            await world.stop(part)

    asyncio.run(scenario())
