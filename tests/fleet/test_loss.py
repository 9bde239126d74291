# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A broker that is away, slow or has lost everything: what matters arrives all the same, in order."""

from __future__ import annotations

import asyncio
import json
import os
import random
import signal
from pathlib import Path

import pytest
from conftest import Broker, Consumer, made_up, publishing, settings, soon, write_events
from fleetlib import backlog
from fleetlib.backlog import Backlog
from statelib import event_log

STATE, AVAILABILITY = "usbdev/garden/state", "usbdev/garden/availability"

pytestmark = pytest.mark.usefixtures("short_pauses")


def device(consumer: Consumer) -> object:
    return consumer.json(STATE)["channels"][0]["device"] if STATE in consumer.newest else None


def test_of_the_states_while_the_broker_was_away_only_the_newest_is_sent(broker: Broker, tmp_path: Path, log: Path) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port), tmp_path) as host:
            before = Consumer(broker)
            await soon(lambda: AVAILABILITY in before.newest)
            before.end()
            broker.kill()
            for number in range(50):
                host.note(made_up(device=f"camera {number}"))
                await asyncio.sleep(0)
            broker.start()
            after = Consumer(broker)
            await soon(lambda: device(after) == "camera 49" and after.newest.get(AVAILABILITY) == b"online")
            assert [message.topic for message in after.all].count(STATE) == 1
            after.end()

    asyncio.run(scenario())


def test_of_the_states_while_the_broker_was_slow_only_the_newest_is_sent(
    broker: Broker, consumer: Consumer, tmp_path: Path, log: Path
) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port), tmp_path) as host:
            await soon(lambda: AVAILABILITY in consumer.newest)
            broker.send(signal.SIGSTOP)
            for number in range(50):
                host.note(made_up(device=f"camera {number}"))
                await asyncio.sleep(0.001)
            broker.send(signal.SIGCONT)
            await soon(lambda: device(consumer) == "camera 49")
            assert [message.topic for message in consumer.all].count(STATE) <= 3

    asyncio.run(scenario())


def test_events_wait_for_the_broker_and_for_the_service(broker: Broker, tmp_path: Path, log: Path) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port), tmp_path) as host:
            first = Consumer(broker)
            await soon(lambda: AVAILABILITY in first.newest)
            broker.kill()
            first.end()
            write_events(log, 30)
            host.logged()
            await asyncio.sleep(0.1)
        write_events(log, 30)  # nobody is there to see that
        broker.start()
        second = Consumer(broker)
        async with publishing(settings(broker.port), tmp_path):
            await soon(lambda: len(second.events()) == 60)
        assert second.events() == list(range(1, 61))
        second.end()

    asyncio.run(scenario())


class Unreliable:
    """A broker that ends connections at random, also before it has answered a message that it took."""

    def __init__(self) -> None:
        self.taken: list[int] = []
        self._random = random.Random(int(os.environ.get("USBDEV_SEED", "1")))

    async def talk(self, reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        while True:
            try:
                kind, content = await self._packet(reader)
            except asyncio.IncompleteReadError:
                break
            if kind == 0x10:
                writer.write(b"\x20\x03\x00\x00\x00")
            elif kind & 0xF0 == 0x30 and not self._take(content, writer):
                break
        writer.close()

    def _take(self, content: bytes, writer: asyncio.StreamWriter) -> bool:
        end = 2 + int.from_bytes(content[:2], "big")
        if content[2:end].endswith(b"/event"):
            self.taken.append(json.loads(content[end + 3 :])["id"])
        if self._random.random() < 0.05:
            return False
        writer.write(b"\x40\x02" + content[end : end + 2])
        return True

    async def _packet(self, reader: asyncio.StreamReader) -> tuple[int, bytes]:
        kind, length, shift = (await reader.readexactly(1))[0], 0, 0
        while True:
            digit = (await reader.readexactly(1))[0]
            length, shift = length | (digit & 0x7F) << shift, shift + 7
            if digit < 0x80:
                return kind, await reader.readexactly(length)


def test_events_arrive_at_a_broker_that_fails_again_and_again_all_and_in_order(tmp_path: Path, log: Path) -> None:
    """Some arrive twice, because nobody knows what the broker had taken."""

    async def scenario() -> None:
        unreliable = Unreliable()
        server = await asyncio.start_server(unreliable.talk, "127.0.0.1", 0)
        async with publishing(settings(server.sockets[0].getsockname()[1]), tmp_path) as host:
            for _ in range(4):
                await asyncio.sleep(0.1)
                write_events(log, 50)
                host.logged()
            await soon(lambda: 200 in unreliable.taken)
        server.close()
        first_times = list(dict.fromkeys(unreliable.taken))
        assert first_times == list(range(first_times[0], 201))
        assert first_times[0] in (1, 51)  # the first ones may have come before the service
        assert len(unreliable.taken) > len(first_times)

    asyncio.run(scenario())


def test_of_too_many_events_the_oldest_are_dropped_and_counted(
    broker: Broker, consumer: Consumer, tmp_path: Path, log: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setattr(backlog, "MOST_WAITING", 25)

    async def scenario() -> None:
        write_events(log, 1)
        async with publishing(settings(broker.port), tmp_path):
            await soon(lambda: AVAILABILITY in consumer.newest)
            await asyncio.sleep(0.1)
        write_events(log, 100)
        async with publishing(settings(broker.port), tmp_path):
            await soon(lambda: len(consumer.events()) == 25)
            await soon(lambda: consumer.json(STATE)["dropped_events"] == 75)
        assert consumer.events() == list(range(77, 102))
        async with publishing(settings(broker.port), tmp_path) as host:
            write_events(log, 1)
            host.logged()
            await soon(lambda: 102 in consumer.events())
        assert Backlog(tmp_path / "garden.db").dropped == 75

    asyncio.run(scenario())


def test_an_event_log_that_begins_again_is_sent_from_its_begin(tmp_path: Path, log: Path) -> None:
    kept = Backlog(tmp_path / "fleet.db")
    write_events(log, 5)
    assert kept.next(9) == []
    log.unlink()
    write_events(log, 3)
    assert [event["id"] for event in kept.next(9)] == [1, 2, 3]


def test_an_event_log_that_cannot_be_read_now_is_not_taken_for_an_empty_one(tmp_path: Path, log: Path) -> None:
    kept = Backlog(tmp_path / "fleet.db")
    write_events(log, 5)
    assert kept.next(9) == []
    whole = log.read_bytes()
    log.write_bytes(b"")
    assert event_log.newest_id() is None and kept.next(9) == []
    log.write_bytes(whole)
    write_events(log, 1)
    assert [event["id"] for event in kept.next(9)] == [6]


def test_a_place_that_cannot_be_stored_does_not_stop_the_events(tmp_path: Path, log: Path, capfd: pytest.CaptureFixture[str]) -> None:
    (tmp_path / "fleet.db").mkdir()
    kept = Backlog(tmp_path / "fleet.db")
    assert kept.next(9) == []
    write_events(log, 2)
    assert [event["id"] for event in kept.next(9)] == [1, 2]
    assert "is not stored" in capfd.readouterr().err
