# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Requests that come over the broker: checked and carried out as those of the owner's pages, one at a time."""

from __future__ import annotations

import asyncio
import math
import re
import sqlite3
import time
from collections import deque
from collections.abc import Callable, Coroutine
from typing import Any

from paho.mqtt.client import MQTTMessage
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties
from servicelib.lifecycle import say
from statelib import actions, problems
from statelib.members import members
from statelib.problems import Problem
from statelib.stream_settings import KINDS
from usbdev.records import CHANNELS, PROFILES

from fleetlib import documents
from fleetlib.connection import Connection
from fleetlib.requests import Requests
from fleetlib.settings import Login, Settings
from fleetlib.topics import REQUESTS, Topics

LARGEST_BODY = 4096  # bytes, as for the pages
LONGEST_RESPONSE_TOPIC = 256
LONGEST_TRANSACTION = 64  # bytes
MOST_WAITING = 16
MOST_PER_MINUTE = 60
SECONDS_UNTIL_SAID_AGAIN = 60
SHARE_ACTIONS = ("on", "off", "renew")
RESPONSE = re.compile(r"[A-Za-z0-9_/.-]+")

Value = dict[str, Any]


async def carry_out(request: str, body: bytes) -> Value:
    """Carries a request out, and returns what the pages would get too, but no link; raises Problem."""
    if request == "switch":
        given = members(body, {"channel": int, "on": bool})
        return await actions.switch(_number(given, "channel", CHANNELS), given["on"])
    if request == "share":
        given = members(body, {"profile": int, "action": str})
        if given["action"] not in SHARE_ACTIONS:
            raise problems.invalid("The request has no proper action.")
        link = await actions.share(_number(given, "profile", PROFILES), given["action"])
        return {"on": link["on"], "password": link["password"]}
    given = members(body, {"profile": int}, KINDS)
    profile = _number(given, "profile", PROFILES)
    return await actions.set_stream(profile, {name: value for name, value in given.items() if name != "profile"})


def _number(given: Value, name: str, bound: int) -> int:
    if given[name] not in range(bound):
        raise problems.invalid(f"The request has no proper {name}.")
    return int(given[name])


class Commands:
    def __init__(
        self,
        settings: Settings,
        login: Login,
        requests: Requests,
        perform: Callable[[str, bytes], Coroutine[Any, Any, Value]] = carry_out,
        clock: Callable[[], float] = time.monotonic,
    ) -> None:
        self._settings = settings
        self._login = login
        self._requests = requests
        self._perform = perform
        self._clock = clock
        self._topics = Topics(settings.host, settings.prefix)
        self._queue: asyncio.Queue[MQTTMessage] = asyncio.Queue(MOST_WAITING)
        self._times: deque[float] = deque(maxlen=MOST_PER_MINUTE)
        self._connection: Connection | None = None
        self._said_ignored = -math.inf

    def connection(self) -> Connection:
        name = f"usbdev-{self._settings.host}-commands"
        self._connection = Connection(self._settings.broker, self._login, name, self._received)
        return self._connection

    async def work(self, connection: Connection) -> None:
        """Takes requests until the connection is lost."""
        connection.subscribe(f"{self._topics.request}+")
        await connection.until_lost()

    async def follow(self) -> None:
        """Carries requests out, until cancelled. A connection that is lost meanwhile does not stop one half way."""
        while True:
            message = await self._queue.get()
            self._answer(message, await self._answer_to(message))

    def _received(self, message: MQTTMessage) -> None:
        """Notes a request. One that nobody can be answered about, or that the broker kept, is ignored."""
        if message.retain or not self._may_be_answered(message):
            self._say_ignored()
            return
        try:
            self._admit()
            self._queue.put_nowait(message)
        except asyncio.QueueFull:
            self._answer(message, _told(_too_many(1)))
        except Problem as problem:
            self._answer(message, _told(problem))

    def _say_ignored(self) -> None:
        """Prints that once in a while only, because anybody who may send requests can send many of them."""
        if self._clock() - self._said_ignored >= SECONDS_UNTIL_SAID_AGAIN:
            self._said_ignored = self._clock()
            say("ignored a request without a proper response topic and transaction")

    def _may_be_answered(self, message: MQTTMessage) -> bool:
        """Checks that the answer goes to a topic for that, because the service may publish to more than the requester."""
        topic, transaction = _response_topic(message), _transaction(message)
        return (
            topic.startswith(self._topics.response)
            and len(topic) <= LONGEST_RESPONSE_TOPIC
            and RESPONSE.fullmatch(topic) is not None
            and 0 < len(transaction) <= LONGEST_TRANSACTION
        )

    def _admit(self) -> None:
        now = self._clock()
        if len(self._times) == MOST_PER_MINUTE and now - self._times[0] < 60:
            raise _too_many(int(self._times[0] + 60 - now) + 1)
        self._times.append(now)

    async def _answer_to(self, message: MQTTMessage) -> bytes:
        """Returns the answer: a new one, or that of the first time."""
        name = f"{_response_topic(message)} {_transaction(message).hex()}"
        try:
            before = await asyncio.to_thread(self._requests.begin, name)
            if before is None:
                answer = await self._try(message)
                await asyncio.to_thread(self._requests.end, name, answer)
                return answer
        except sqlite3.Error as problem:
            return _told(problems.host_away(f"The request cannot be remembered: {problem}."))
        return before or _told(problems.host_away("The service ended while it carried this request out."))

    async def _try(self, message: MQTTMessage) -> bytes:
        request = message.topic.removeprefix(self._topics.request)
        try:
            if request not in REQUESTS:
                raise problems.not_found()
            if len(message.payload) > LARGEST_BODY:
                raise Problem(413, *problems.OF_STATUS[413])
            answer = documents.text({"schema": documents.SCHEMA, "result": await self._perform(request, message.payload)})
        except Problem as problem:
            answer = _told(problem)
        say(f"request {request[:16]!a} from {_response_topic(message)}: {'refused' if b'error' in answer[:20] else 'done'}")
        return answer

    def _answer(self, message: MQTTMessage, answer: bytes) -> None:
        properties = Properties(PacketTypes.PUBLISH)
        properties.CorrelationData = _transaction(message)
        if self._connection is not None:
            self._connection.post(_response_topic(message), answer, properties)


def _told(problem: Problem) -> bytes:
    return documents.text({"schema": documents.SCHEMA, **problem.answer})


def _too_many(seconds: int) -> Problem:
    return Problem(429, "too_many", "There were too many requests.", f"Try again in {seconds} seconds.", seconds=seconds)


def _response_topic(message: MQTTMessage) -> str:
    return str(getattr(message.properties, "ResponseTopic", ""))


def _transaction(message: MQTTMessage) -> bytes:
    return bytes(getattr(message.properties, "CorrelationData", b""))
