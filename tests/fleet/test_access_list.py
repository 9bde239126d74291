# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The access list of the examples: with it everybody can do what they have to, and no more."""

from __future__ import annotations

import asyncio
import subprocess
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest
from conftest import PATIENCE, REPOSITORY, Broker, Consumer, publishing, settings, soon, until
from fleetlib.commands import Commands
from fleetlib.keeping import keep
from fleetlib.requests import Requests
from fleetlib.settings import Login

USERS = ("viewer", "home", "operator", "garden", "garden-commands")
STATE = "usbdev/garden/state"
SWITCH, ANSWERS = "usbdev/garden/request/switch", "usbdev/garden/response/ann"


@pytest.fixture
def strict(tmp_path: Path) -> Iterator[Broker]:
    users = tmp_path / "users"
    users.write_text("")
    for user in USERS:
        subprocess.run(["mosquitto_passwd", "-b", users, user, user], check=True)
    lists = f"password_file {users}\nacl_file {REPOSITORY}/examples/mosquitto/fleet.acl\n"
    broker = Broker(tmp_path, lists, users=True).start()
    yield broker
    broker.stop()


def test_the_host_publishes_and_only_the_operator_is_obeyed(strict: Broker, tmp_path: Path, log: Path, short_pauses: None) -> None:
    done: list[bytes] = []

    async def perform(request: str, body: bytes) -> dict[str, Any]:
        done.append(body)
        return {}

    async def scenario() -> None:
        viewer, home, operator = (Consumer(strict, user=user) for user in ("viewer", "home", "operator"))
        given = settings(strict.port, login=Login("garden", "garden"), discovery=True)
        commands = Commands(given, Login("garden-commands", "garden-commands"), Requests(tmp_path / "fleet.db"), perform)
        tasks = [asyncio.create_task(it) for it in (commands.follow(), keep(commands.connection, commands.work))]
        async with publishing(given, tmp_path):
            await soon(lambda: STATE in viewer.newest and STATE in operator.newest)
            await soon(lambda: "homeassistant/device/usbdev_garden/config" in home.newest)
            viewer.publish(SWITCH, b"viewer", ResponseTopic=ANSWERS, CorrelationData=b"1")
            home.publish(SWITCH, b"home", ResponseTopic=ANSWERS, CorrelationData=b"2")
            await asyncio.sleep(0.2)
            operator.publish(SWITCH, b"operator", ResponseTopic=ANSWERS, CorrelationData=b"3")
            await soon(lambda: ANSWERS in operator.newest)
        assert done == [b"operator"]
        for task in tasks:
            task.cancel()
        await asyncio.wait(tasks)
        for consumer in (viewer, home, operator):
            consumer.end()

    asyncio.run(scenario())


@pytest.mark.parametrize(("user", "topic"), [
    ("garden", "usbdev/shed/state"), ("garden-commands", STATE), ("operator", STATE), ("viewer", STATE),
    ("home", "homeassistant/device/x/config"),
])  # fmt: skip
def test_nobody_speaks_for_somebody_else(strict: Broker, user: str, topic: str) -> None:
    viewer, other = Consumer(strict, user="home"), Consumer(strict, user=user)
    other.publish(topic, b"forged", retain=True).wait_for_publish(PATIENCE)
    viewer.publish("homeassistant/status", b"a mark").wait_for_publish(PATIENCE)
    until(lambda: "homeassistant/status" in viewer.newest)
    assert topic not in viewer.newest
    for consumer in (viewer, other):
        consumer.end()
