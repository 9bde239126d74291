# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The connection: who is trusted, what a hostile broker can do, and when the next one is made."""

from __future__ import annotations

import asyncio
import random
import socket
import struct
import subprocess
from collections.abc import AsyncIterator, Awaitable, Callable
from contextlib import asynccontextmanager
from dataclasses import replace
from pathlib import Path

import pytest
from conftest import Broker, Certificates, Consumer, publishing, settings, soon
from fleetlib import careful_client, connection, keeping
from fleetlib.connection import Connection, Lost
from fleetlib.settings import Broker as Address
from fleetlib.settings import Login
from paho.mqtt.properties import PacketTypes, Properties

Talk = Callable[[asyncio.StreamReader, asyncio.StreamWriter], Awaitable[None]]
ACCEPTED = b"\x20\x03\x00\x00\x00"


@asynccontextmanager
async def hostile(talk: Talk) -> AsyncIterator[int]:
    """A broker that does what the test wants; its port."""
    server = await asyncio.start_server(talk, "127.0.0.1", 0)
    yield server.sockets[0].getsockname()[1]
    server.close()


async def lost(talk: Talk) -> str:
    """Connects to the broker, publishes, and returns why the connection was lost."""
    async with hostile(talk) as port:
        made = Connection(Address("127.0.0.1", port, False, None), Login(), "test", lambda message: message.topic)
        with pytest.raises(Lost) as raised:
            await asyncio.wait_for(_open_and_publish(made), 20)
        made.leave()
        return str(raised.value)


async def _open_and_publish(made: Connection) -> None:
    await made.open()
    await made.publish("usbdev/garden/state", b"{}", retain=True)
    await made.until_lost()


def saying(*answers: bytes) -> Talk:
    async def talk(reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        try:
            for answer in answers:
                await reader.read(9999)
                writer.write(answer)
                await writer.drain()
            while await reader.read(9999):
                pass
        except ConnectionError:
            pass
        writer.close()

    return talk


def packet(kind: int, content: bytes) -> bytes:
    length, digits = len(content), b""
    while True:
        length, digit = divmod(length, 128)
        digits += bytes([digit | (0x80 if length else 0)])
        if not length:
            return bytes([kind]) + digits + content


@pytest.mark.parametrize("answer", [
    b"GET / HTTP/1.1\r\n\r\n",
    b"\xff" * 100,
    b"\x20\x03\x00\x87\x00",  # not authorised
    b"\x20\x00", b"\x20\x02\x00\x01", b"\x20\x04\x00\x00\x7f\x00",
    ACCEPTED + b"\x30\x01\x00", ACCEPTED + packet(0x30, b"\x00\x00\x00"), ACCEPTED + packet(0x30, b"\x00\x02\xff\xff\x00"),
    ACCEPTED + packet(0x32, b"\x00\x01a\x00\x01\xff\xff\xff\xff"), ACCEPTED + packet(0x40, b"\x00"), ACCEPTED + packet(0x90, b"\x00\x01"),
    ACCEPTED + ACCEPTED[:1] + b"\x03\x00\x01\x00",
])  # fmt: skip
def test_garbage_ends_the_connection(answer: bytes) -> None:
    assert asyncio.run(lost(saying_once(answer)))


def test_random_bytes_end_the_connection_or_do_nothing() -> None:
    async def scenario() -> None:
        for _ in range(40):
            found = await lost(saying_once(ACCEPTED + bytes([chance.choice(b"\x20\x30\x32\x40\x90\xd0\xe0\xf0")]) + chance.randbytes(60)))
            assert found

    chance = random.Random(7)
    asyncio.run(scenario())


def saying_once(answer: bytes) -> Talk:
    """Ends its side of the connection after the answer, so that nobody waits for the rest of a packet."""

    async def talk(reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        await reader.read(9999)
        writer.write(answer)
        writer.write_eof()

    return talk


@pytest.mark.parametrize("more", [b"", bytes(100)])
def test_a_message_that_is_too_large_ends_the_connection_before_it_is_read(more: bytes) -> None:
    announced = ACCEPTED + packet(0x30, bytes(careful_client.LARGEST_PACKET + 1))[:5] + more
    assert asyncio.run(lost(saying(announced)))


def test_the_largest_message_is_taken() -> None:
    async def scenario() -> int:
        topic = b"\x00\x01a\x00"
        message = packet(0x30, topic + bytes(careful_client.LARGEST_PACKET - len(topic)))
        async with hostile(saying(ACCEPTED + message)) as port:
            found: list[int] = []
            made = Connection(Address("127.0.0.1", port, False, None), Login(), "test", lambda it: found.append(len(it.payload)))
            await made.open()
            await soon(lambda: found)
            made.leave()
            return found[0]

    assert asyncio.run(scenario()) == careful_client.LARGEST_PACKET - 4


def test_messages_that_would_have_to_be_kept_end_the_connection() -> None:
    exactly_once = packet(0x34, b"\x00\x01a" + struct.pack("!H", 1) + b"\x00x")
    assert asyncio.run(lost(saying(ACCEPTED + exactly_once)))


def test_from_a_broker_that_takes_no_answers_nothing_more_is_read() -> None:
    """Each message of its flood wants an answer, which would have to be kept."""
    flood = b"".join(packet(0x32, b"\x00\x01a" + struct.pack("!H", number) + b"\x00" + bytes(50)) for number in range(1, 20_000))

    async def talk(reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        await reader.read(9999)
        writer.write(ACCEPTED + flood)
        await over.wait()  # and reads no more

    async def scenario() -> None:
        door = socket.create_server(("127.0.0.1", 0))
        door.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
        server = await asyncio.start_server(talk, sock=door, limit=1024)
        found: list[object] = []
        made = Connection(Address("127.0.0.1", door.getsockname()[1], False, None), Login(), "test", found.append)
        await made.open()
        made._socket.setsockopt(socket.SOL_SOCKET, socket.SO_SNDBUF, 4096)
        before = -1
        while before != len(found):
            before = len(found)
            await asyncio.sleep(0.3)
        assert 0 < len(found) < 15_000 and len(made._client._out_packet) < 100 and not made._lost.done()
        made.leave()
        over.set()
        server.close()

    over = asyncio.Event()
    asyncio.run(scenario())


def test_of_answers_that_the_broker_does_not_take_only_some_are_kept() -> None:
    async def scenario() -> None:
        async with hostile(saying(ACCEPTED)) as port:
            made = Connection(Address("127.0.0.1", port, False, None), Login(), "test", lambda message: None)
            await made.open()
            for _ in range(1000):
                made.post("usbdev/garden/response/a", b"{}", Properties(PacketTypes.PUBLISH))
            assert len(made._client._out_messages) == connection.MOST_NOT_TAKEN
            made.leave()

    asyncio.run(scenario())


def test_an_answer_while_the_connection_is_being_made_is_gone() -> None:
    """Who asks again gets it."""

    async def scenario() -> None:
        made = Connection(Address("127.0.0.1", 1, False, None), Login(), "test", lambda message: None)
        made.post("usbdev/garden/response/a", b"{}", Properties(PacketTypes.PUBLISH))
        assert not made._client._out_messages
        made.leave()

    asyncio.run(scenario())


@pytest.mark.parametrize("address", ["a..b", "x" * 70 + ".org", "no-such-machine.invalid"])
def test_an_address_that_is_none_is_a_lost_connection(address: str) -> None:
    async def scenario() -> None:
        made = Connection(Address(address, 1883, False, None), Login(), "test", lambda message: None)
        with pytest.raises(OSError):
            await made.open()
        made.leave()

    asyncio.run(scenario())


def test_a_broker_that_does_not_answer_is_given_up(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(connection, "ACCEPTANCE_SECONDS", 0.1)
    assert asyncio.run(lost(saying())) == "it does not answer"


def test_a_broker_that_takes_nothing_is_given_up(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(connection, "TAKING_SECONDS", 0.1)
    assert asyncio.run(lost(saying(ACCEPTED))) == "it does not take a message"


def test_a_broker_that_falls_silent_is_noticed(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(connection, "KEEP_ALIVE_SECONDS", 1)
    assert "keepalive" in asyncio.run(lost(saying(ACCEPTED)))


def test_a_message_that_the_broker_refuses_is_not_taken_for_sent() -> None:
    assert asyncio.run(lost(saying(ACCEPTED, packet(0x40, b"\x00\x01\x87")))) == "it does not take a message (reason 135)"


@pytest.fixture
def pauses(monkeypatch: pytest.MonkeyPatch) -> list[float]:
    """The pauses between connections, which are not waited for."""
    found: list[float] = []

    async def note(seconds: float) -> None:
        found.append(seconds)
        await asyncio.sleep(0)

    monkeypatch.setattr(keeping, "sleep", note)
    return found


def test_the_pauses_grow_are_random_and_have_a_bound(pauses: list[float]) -> None:
    async def scenario() -> None:
        address = Address("127.0.0.1", 1, False, None)  # nobody listens there
        task = asyncio.create_task(keeping.keep(lambda: Connection(address, Login(), "test", lambda _: None), _open_and_publish))
        await soon(lambda: len(pauses) >= 12)
        task.cancel()
        await asyncio.wait({task})

    asyncio.run(scenario())
    longest = [min(2.0**number, 120) for number in range(12)]
    assert all(most / 2 <= pause <= most for pause, most in zip(pauses, longest))
    assert len({pause / most for pause, most in zip(pauses, longest)}) == 12


def with_tls(folder: Path, ours: Certificates, more: str = "") -> Broker:
    tls = f"certfile {ours.server}\nkeyfile {ours.folder}/server.key\ncafile {ours.ca}\n{more}"
    return Broker(folder, tls).start()


async def attempt(broker: Broker, ca: str | None, login: Login, address: str = "127.0.0.1") -> str:
    """Connects, with TLS if there is an authority for it, and returns what came of it."""
    made = Connection(Address(address, broker.port, ca is not None, ca), login, "test", lambda message: None)
    try:
        await made.open()
        return "open"
    except OSError as problem:
        return str(problem)
    finally:
        made.leave()


def test_only_a_broker_with_a_trusted_certificate_of_its_name_is_used(tmp_path: Path, ours: Certificates, foreign: Certificates) -> None:
    broker = with_tls(tmp_path, ours)
    try:
        assert asyncio.run(attempt(broker, ours.ca, Login())) == "open"
        assert "certificate verify failed" in asyncio.run(attempt(broker, foreign.ca, Login()))
        assert "Hostname mismatch" in asyncio.run(attempt(broker, ours.ca, Login(), "localhost"))
    finally:
        broker.stop()


def test_a_certificate_can_open_the_broker(tmp_path: Path, ours: Certificates, foreign: Certificates) -> None:
    broker = with_tls(tmp_path, ours, "require_certificate true\nuse_identity_as_username true\n")
    try:
        for certificates, expected in ((ours, True), (foreign, False)):
            login = Login(certificate=certificates.client, key=f"{certificates.folder}/client.key")
            assert (asyncio.run(attempt(broker, ours.ca, login)) == "open") == expected
        assert asyncio.run(attempt(broker, ours.ca, Login())) != "open"
    finally:
        broker.stop()


def test_a_host_publishes_over_tls(tmp_path: Path, ours: Certificates, short_pauses: None, log: Path) -> None:
    broker = with_tls(tmp_path, ours)
    consumer = Consumer(broker, ca=ours.ca)
    given = replace(settings(broker.port), broker=Address("127.0.0.1", broker.port, True, ours.ca))

    async def scenario() -> None:
        async with publishing(given, tmp_path):
            await soon(lambda: consumer.newest.get("usbdev/garden/availability") == b"online")

    try:
        asyncio.run(scenario())
    finally:
        consumer.end()
        broker.stop()


def test_a_user_with_a_wrong_password_is_refused(tmp_path: Path) -> None:
    (tmp_path / "users").write_text("")
    subprocess.run(["mosquitto_passwd", "-b", tmp_path / "users", "garden", "secret"], check=True)
    broker = Broker(tmp_path, f"password_file {tmp_path}/users", users=True).start()

    try:
        assert asyncio.run(attempt(broker, None, Login("garden", "secret"))) == "open"
        for login in (Login("garden", "Secret"), Login()):
            assert asyncio.run(attempt(broker, None, login)) == "it refuses the connection: Not authorized"
    finally:
        broker.stop()
