# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Publishes what is new. Each connection begins with everything: the newest state, then that the host is there, then the events
that wait. So it does not matter what a broker has lost."""

from __future__ import annotations

import asyncio
import random
from itertools import takewhile
from typing import Any

from paho.mqtt.client import MQTTMessage

from fleetlib import discovery, documents
from fleetlib.backlog import Backlog
from fleetlib.connection import Connection, Lost
from fleetlib.settings import Settings
from fleetlib.topics import Topics

ONLINE, OFFLINE = b"online", b"offline"
EVENTS_AT_ONCE = 20  # which brokers take without an answer to the first one
BIRTH_SECONDS = 10.0  # the hosts that answer to one birth message spread over this time

Value = dict[str, Any]


class Publisher:
    def __init__(self, settings: Settings, versions: Value, backlog: Backlog) -> None:
        self._settings = settings
        self._topics = Topics(settings.host, settings.prefix)
        self._versions = versions
        self._backlog = backlog
        self._state: Value | None = None
        self._known, self._changed = asyncio.Event(), asyncio.Event()
        self._logged, self._born = asyncio.Event(), asyncio.Event()

    def note(self, state: Value | None) -> None:
        """Notes the newest state, or that the host cannot be read."""
        self._state = state
        self._known.set()
        self._changed.set()

    def logged(self) -> None:
        """Notes that there are new events."""
        self._logged.set()

    def connection(self) -> Connection:
        made = Connection(self._settings.broker, self._settings.login, f"usbdev-{self._settings.host}", self._received)
        made.will(self._topics.availability, OFFLINE.decode())
        return made

    async def work(self, connection: Connection) -> None:
        """Publishes until the connection is lost."""
        if self._settings.discovery:
            connection.subscribe(self._topics.birth)
        async with asyncio.TaskGroup() as group:
            group.create_task(connection.until_lost())
            group.create_task(self._publish_states(connection))
            group.create_task(self._publish_events(connection))
            group.create_task(self._publish_discovery(connection))

    async def _publish_states(self, connection: Connection) -> None:
        """What changes while the broker takes a state is sent together, as the next one."""
        sent: Value | None = None
        told = b""
        await self._known.wait()
        while True:
            self._changed.clear()
            document = self._document()
            if document is not None and document != sent:
                await connection.publish(self._topics.state, documents.with_time(document), retain=True)
                sent = document
            available = OFFLINE if document is None else ONLINE
            if available != told:
                await connection.publish(self._topics.availability, available, retain=True)
                told = available
            await self._changed.wait()

    def _document(self) -> Value | None:
        return self._state and documents.state(self._settings.host, self._versions, self._state, self._backlog.dropped)

    async def _publish_events(self, connection: Connection) -> None:
        while True:
            self._logged.clear()
            dropped = self._backlog.dropped
            while events := await asyncio.to_thread(self._backlog.next, EVENTS_AT_ONCE):
                await self._publish_these(events, connection)
            if self._backlog.dropped != dropped:
                self._changed.set()
            await self._logged.wait()

    async def _publish_these(self, events: list[Value], connection: Connection) -> None:
        """Sends the events in their order, and notes those at the begin that the broker took, also if it did not take all."""
        texts = [documents.text(documents.event(self._settings.host, event)) for event in events]
        sent = [asyncio.ensure_future(connection.publish(self._topics.event, text)) for text in texts]
        try:
            await asyncio.gather(*sent)
        finally:
            taken = [event["id"] for event, _ in takewhile(lambda pair: _is_taken(pair[1]), zip(events, sent))]
            if taken:
                self._backlog.taken(taken[-1])

    async def _publish_discovery(self, connection: Connection) -> None:
        """Without discovery it removes the message of earlier times, which a broker may refuse, if there was never one."""
        if not self._settings.discovery:
            try:
                await connection.publish(self._topics.discovery, b"", retain=True)
            except Lost:
                pass
            return
        message = documents.text(discovery.message(self._settings.host, self._topics, self._versions["library"]))
        while True:
            self._born.clear()
            await connection.publish(self._topics.discovery, message, retain=True)
            await self._born.wait()
            await asyncio.sleep(random.uniform(0, BIRTH_SECONDS))

    def _received(self, message: MQTTMessage) -> None:
        if message.topic == self._topics.birth and message.payload == ONLINE:
            self._born.set()


def _is_taken(sent: asyncio.Future[None]) -> bool:
    return sent.done() and not sent.cancelled() and sent.exception() is None
