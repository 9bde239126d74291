# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""One connection to the broker. All of it runs on the event loop, but the way to the broker, which may take long."""

from __future__ import annotations

import asyncio
import ssl
from collections.abc import Callable
from typing import Any

from paho.mqtt.client import MQTT_ERR_SUCCESS, MQTTMessage, error_string
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties
from paho.mqtt.reasoncodes import ReasonCodes
from paho.mqtt.subscribeoptions import SubscribeOptions

from fleetlib.careful_client import CarefulClient
from fleetlib.settings import Broker, Login

KEEP_ALIVE_SECONDS = 60
ACCEPTANCE_SECONDS = 20
TAKING_SECONDS = 60
MOST_NOT_TAKEN = 100  # messages that the broker may leave waiting for its answer; of more they are not sent
UNREADABLE = "it sends what cannot be read"


class Lost(ConnectionError):
    """The connection has ended, or the broker does not do what it is asked for; the text gives the reason."""


class Connection:
    def __init__(self, broker: Broker, login: Login, name: str, received: Callable[[MQTTMessage], None]) -> None:
        self._broker = broker
        self._login = login
        self._received = received
        self._loop = asyncio.get_running_loop()
        self._lost: asyncio.Future[str] = self._loop.create_future()
        self._accepted: asyncio.Future[None] = self._loop.create_future()
        self._waiting: dict[int, asyncio.Future[None]] = {}  # messages that the broker has not taken yet
        self._client = CarefulClient(name, self._refused)
        self._client.max_queued_messages_set(MOST_NOT_TAKEN)
        self._client.on_connect = self._answered
        self._client.on_publish = self._taken
        self._client.on_message = lambda client, data, message: self._received(message)
        self._client.on_disconnect = lambda client, data, code, properties: self._end(_reason(code))
        self._client.on_socket_close = lambda client, data, socket: self._forget(socket)

    def will(self, topic: str, text: str) -> None:
        """Has the broker publish this when the connection ends without leave()."""
        self._client.will_set(topic, text, qos=1, retain=True)

    async def open(self) -> None:
        """Returns when the broker has accepted the connection; raises OSError if it does not."""
        try:
            await asyncio.to_thread(self._connect)
        except ValueError as problem:  # at an address that no machine can have
            raise Lost(str(problem)) from None
        self._socket = self._client.socket()
        self._flush()
        self._keep_alive()
        ends: set[asyncio.Future[Any]] = {self._accepted, self._lost}
        await asyncio.wait(ends, timeout=ACCEPTANCE_SECONDS, return_when=asyncio.FIRST_COMPLETED)
        if not self._accepted.done():
            self._end("it does not answer")
        self._check()

    async def until_lost(self) -> None:
        raise Lost(await asyncio.shield(self._lost))

    def subscribe(self, topic: str) -> None:
        """Asks for what comes from now on, at least once, and for nothing that was kept."""
        options = SubscribeOptions(qos=1, retainHandling=SubscribeOptions.RETAIN_DO_NOT_SEND)
        self._guarded(self._client.subscribe, topic, options=options)
        self._flush()

    async def publish(self, topic: str, text: bytes, retain: bool = False) -> None:
        """Returns when the broker has taken the message."""
        self._check()
        sent = self._guarded(self._client.publish, topic, text, qos=1, retain=retain)
        self._flush()
        self._check()
        future = self._waiting[sent.mid] = self._loop.create_future()
        try:
            async with asyncio.timeout(TAKING_SECONDS):
                await future
        except TimeoutError:
            raise Lost("it does not take a message") from None
        finally:
            del self._waiting[sent.mid]

    def post(self, topic: str, text: bytes, properties: Properties) -> None:
        """Sends a message once, and does not wait; without a connection it is gone."""
        if self._accepted.done() and not self._lost.done():
            self._guarded(self._client.publish, topic, text, qos=1, properties=properties)
            self._flush()

    def leave(self, with_will: bool = False) -> None:
        """Ends the connection in order."""
        if not self._lost.done():
            how = ReasonCodes(PacketTypes.DISCONNECT, "Disconnect with will message" if with_will else "Normal disconnection")
            self._guarded(self._client.disconnect, reasoncode=how)
        self._end("left")

    def _connect(self) -> None:
        if self._broker.tls:
            context = ssl.create_default_context(cafile=self._broker.ca)
            if self._login.certificate:
                context.load_cert_chain(self._login.certificate, self._login.key, password="")  # nobody is there to type one
            self._client.tls_set_context(context)
        if self._login.user is not None:
            self._client.username_pw_set(self._login.user, self._login.password)
        self._client.connect(
            self._broker.address, self._broker.port, KEEP_ALIVE_SECONDS, clean_start=True, properties=self._client.wishes())

    def _answered(self, client: Any, data: Any, flags: Any, code: ReasonCodes, properties: Any) -> None:
        if code == 0 and not self._accepted.done():
            self._accepted.set_result(None)
        elif code != 0:
            self._end(f"it refuses the connection: {code}")

    def _taken(self, client: Any, data: Any, number: int) -> None:
        future = self._waiting.get(number)
        if future is not None and not future.done():
            future.set_result(None)

    def _refused(self, number: int, code: int) -> None:
        future = self._waiting.get(number)
        if future is not None and not future.done():
            future.set_exception(Lost(f"it does not take a message (reason {code})"))

    def _read(self) -> None:
        self._guarded(self._client.loop_read)
        while not self._lost.done() and self._broker.tls and self._socket.pending():  # of which the event loop knows nothing
            self._guarded(self._client.loop_read)
        self._flush()

    def _write(self) -> None:
        self._guarded(self._client.loop_write)
        self._flush()

    def _flush(self) -> None:
        """Writes what waits. Until the broker takes it nothing more is read, for what could become more and more answers."""
        if self._lost.done():
            return
        if self._client.want_write():
            self._loop.remove_reader(self._socket)
            self._loop.add_writer(self._socket, self._write)
        else:
            self._loop.remove_writer(self._socket)
            self._loop.add_reader(self._socket, self._read)

    def _keep_alive(self) -> None:
        if not self._lost.done():
            self._guarded(self._client.loop_misc)
            self._flush()
            self._loop.call_later(KEEP_ALIVE_SECONDS / 3, self._keep_alive)

    def _guarded(self, call: Callable[..., Any], *arguments: Any, **named: Any) -> Any:
        """Makes a call of paho, which raises errors of many kinds at what a broker should not send."""
        try:
            return call(*arguments, **named)
        except Exception as problem:  # any of them ends the connection
            self._end(problem.strerror or UNREADABLE if isinstance(problem, OSError) else UNREADABLE)
            return None

    def _check(self) -> None:
        if self._lost.done():
            raise Lost(self._lost.result())

    def _end(self, reason: str) -> None:
        if self._lost.done():
            return
        self._lost.set_result(reason)
        for future in self._waiting.values():
            if not future.done():
                future.set_exception(Lost(reason))
        if (socket := self._client.socket()) is not None:
            self._forget(socket)
            socket.close()

    def _forget(self, socket: Any) -> None:
        if socket.fileno() >= 0:
            self._loop.remove_reader(socket)
            self._loop.remove_writer(socket)


def _reason(code: Any) -> str:
    return f"the connection has ended: {error_string(code) if isinstance(code, int) and code != MQTT_ERR_SUCCESS else code}"
