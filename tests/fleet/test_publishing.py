# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a host publishes, as a consumer behind a real broker sees it."""

from __future__ import annotations

import asyncio
import json
from pathlib import Path

import pytest
from conftest import FLEET, VERSIONS, Broker, Consumer, made_up, publishing, settings, soon, until, write_events
from fleetlib import publisher
from fleetlib.backlog import Backlog
from fleetlib.keeping import keep
from jsonschema import Draft202012Validator

STATE, AVAILABILITY, EVENT = (f"usbdev/garden/{name}" for name in ("state", "availability", "event"))
DISCOVERY = "homeassistant/device/usbdev_garden/config"


def validate(document: object, name: str) -> None:
    schema = json.loads((FLEET / f"schema/{name}.json").read_text())
    Draft202012Validator.check_schema(schema)
    Draft202012Validator(schema).validate(document)


@pytest.fixture(autouse=True)
def quick(short_pauses: None, log: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(publisher, "BIRTH_SECONDS", 0.1)


def test_the_state_fits_its_schema_and_is_kept_by_the_broker(broker: Broker, tmp_path: Path) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port), tmp_path):
            before = Consumer(broker)
            await soon(lambda: AVAILABILITY in before.newest)
            after = Consumer(broker)
            await soon(lambda: len(after.newest) == 2)
            validate(after.json(STATE), "state-1")
            assert all(message.retain for message in after.all)
            for consumer in (before, after):
                consumer.end()

    asyncio.run(scenario())


def test_a_host_is_online_after_its_state_and_offline_after_its_end(broker: Broker, consumer: Consumer, tmp_path: Path) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port), tmp_path):
            await soon(lambda: consumer.newest.get(AVAILABILITY) == b"online")
            topics = [message.topic for message in consumer.all]
            assert topics.index(STATE) < topics.index(AVAILABILITY)

    asyncio.run(scenario())
    until(lambda: consumer.newest[AVAILABILITY] == b"offline")
    assert STATE in consumer.newest


def test_a_host_that_cannot_be_read_is_offline_and_keeps_its_last_state(broker: Broker, consumer: Consumer, tmp_path: Path) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port), tmp_path) as host:
            await soon(lambda: consumer.newest.get(AVAILABILITY) == b"online")
            host.note(None)
            await soon(lambda: consumer.newest[AVAILABILITY] == b"offline")
            host.note(made_up())
            await soon(lambda: consumer.newest[AVAILABILITY] == b"online")
            assert [message.topic for message in consumer.all].count(STATE) == 1

    asyncio.run(scenario())


def test_nothing_is_said_of_a_host_that_was_not_read_yet(broker: Broker, consumer: Consumer, tmp_path: Path) -> None:
    async def scenario() -> None:
        made = publisher.Publisher(settings(broker.port, discovery=True), VERSIONS, Backlog(tmp_path / "fleet.db"))
        task = asyncio.create_task(keep(made.connection, made.work))
        await soon(lambda: DISCOVERY in consumer.newest)
        made.note(made_up())
        await soon(lambda: AVAILABILITY in consumer.newest)
        task.cancel()
        await asyncio.wait({task})

    asyncio.run(scenario())
    assert [message.payload for message in consumer.all if message.topic == AVAILABILITY][0] == b"online"


def test_only_a_state_that_is_different_is_sent(broker: Broker, consumer: Consumer, tmp_path: Path) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port), tmp_path) as host:
            await soon(lambda: AVAILABILITY in consumer.newest)
            host.note(made_up())
            host.note(made_up(device="other"))
            await soon(lambda: consumer.json(STATE)["channels"][0]["device"] == "other")
            assert [message.topic for message in consumer.all].count(STATE) == 2

    asyncio.run(scenario())


def test_nothing_is_published_that_is_not_listed(broker: Broker, consumer: Consumer, tmp_path: Path, log: Path) -> None:
    secret = "39202766-2f4f6a31"
    state = made_up(password=secret, token=secret, page=f"/share?ssid={secret}", sound={
        "card": True, "on": True, "codec": "aac", "volume": 5, "link": secret})
    state["profiles"][0]["hash"] = state["host"]["name"] = secret

    async def scenario() -> None:
        async with publishing(settings(broker.port, discovery=True), tmp_path, state) as host:
            await soon(lambda: len(consumer.newest) == 3)
            write_events(log, 1)
            host.logged()
            await soon(consumer.events)

    asyncio.run(scenario())
    assert not [message for message in consumer.all if secret.encode() in message.payload]


def test_each_event_is_a_message_in_order_that_is_not_kept(broker: Broker, consumer: Consumer, tmp_path: Path, log: Path) -> None:
    async def scenario() -> None:
        write_events(log, 3)  # before the service was there for the first time
        async with publishing(settings(broker.port), tmp_path) as host:
            await soon(lambda: AVAILABILITY in consumer.newest)
            await asyncio.sleep(0.1)
            write_events(log, 50, "Modified Channel 1 channel name: \U0001f3a5 \"'\x1b")
            host.logged()
            await soon(lambda: len(consumer.events()) == 50)

    asyncio.run(scenario())
    assert consumer.events() == list(range(4, 54))
    validate(consumer.json(EVENT), "event-1")
    assert not [message for message in consumer.all if message.topic == EVENT and message.retain]


def test_one_message_has_the_whole_device_and_is_sent_again_at_each_birth(broker: Broker, consumer: Consumer, tmp_path: Path) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port, discovery=True), tmp_path):
            await soon(lambda: DISCOVERY in consumer.newest)
            for text in (b"offline", b"online", b"online", b"\xff" * 100):
                consumer.publish("homeassistant/status", text)
            await soon(lambda: [message.topic for message in consumer.all].count(DISCOVERY) > 1)

    asyncio.run(scenario())
    found = consumer.json(DISCOVERY)
    parts = found["components"].values()
    assert found["device"]["identifiers"] == ["usbdev_garden"] and found["origin"]["name"] == "usbdev"
    assert len({part["unique_id"] for part in parts}) == len(parts) == 14
    assert {part["platform"] for part in parts} == {"sensor", "binary_sensor"}
    assert (found["availability_topic"], found["state_topic"]) == (AVAILABILITY, STATE)


def test_many_birth_messages_are_answered_together(broker: Broker, consumer: Consumer, tmp_path: Path) -> None:
    async def scenario() -> None:
        async with publishing(settings(broker.port, discovery=True), tmp_path):
            await soon(lambda: DISCOVERY in consumer.newest)
            for _ in range(500):
                consumer.publish("homeassistant/status", b"online")
            await soon(lambda: [message.payload for message in consumer.all].count(b"online") == 501)  # one is the host's own
            await asyncio.sleep(0.3)

    asyncio.run(scenario())
    assert [message.topic for message in consumer.all].count(DISCOVERY) < 20


def test_without_discovery_its_message_is_removed(broker: Broker, consumer: Consumer, tmp_path: Path) -> None:
    async def scenario() -> None:
        for discovery in (True, False):
            async with publishing(settings(broker.port, discovery=discovery), tmp_path):
                await soon(lambda: (DISCOVERY in consumer.newest) == discovery)

    asyncio.run(scenario())
    late = Consumer(broker)
    until(lambda: STATE in late.newest)
    assert DISCOVERY not in late.newest
    late.end()
