# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Requests over a real broker: who is answered, what is refused, and that nothing is carried out twice."""

from __future__ import annotations

import asyncio
import json
from collections.abc import AsyncIterator
from contextlib import asynccontextmanager
from pathlib import Path
from typing import Any

import pytest
from conftest import FLEET, PATIENCE, Broker, Consumer, settings, soon
from fleetlib import commands, keeping
from fleetlib.commands import Commands, carry_out
from fleetlib.requests import Requests
from fleetlib.settings import Login
from jsonschema import Draft202012Validator
from statelib.problems import Problem

ANSWERS = "usbdev/garden/response/ann"
SWITCH = "usbdev/garden/request/switch"
ON = b'{"channel":1,"on":true}'


class Host:
    """Notes what it is asked for, and does it when it may."""

    def __init__(self) -> None:
        self.asked: list[tuple[str, bytes]] = []
        self.may_go_on = asyncio.Event()
        self.may_go_on.set()
        self.problem: Problem | None = None

    async def perform(self, request: str, body: bytes) -> dict[str, Any]:
        self.asked.append((request, body))
        await self.may_go_on.wait()
        if self.problem is not None:
            raise self.problem
        return {"switched_on": True, "waits_for": None}


@asynccontextmanager
async def taking_requests(port: int, folder: Path, host: Host) -> AsyncIterator[Commands]:
    made = Commands(settings(port), Login("robot"), Requests(folder / "fleet.db"), host.perform)
    tasks = [asyncio.create_task(it) for it in (made.follow(), keeping.keep(made.connection, made.work))]
    await asyncio.sleep(0.3)  # nobody is told when the broker knows the subscription
    try:
        yield made
    finally:
        for task in tasks:
            task.cancel()
        await asyncio.wait(tasks)


class Requester(Consumer):
    def __init__(self, broker: Broker) -> None:
        super().__init__(broker, "usbdev/+/response/#")

    def ask(self, transaction: bytes, body: bytes = ON, topic: str = SWITCH, to: str = ANSWERS, **others: Any) -> None:
        self.publish(topic, body, ResponseTopic=to, CorrelationData=transaction, **others)

    def answers(self) -> list[tuple[bytes, Any]]:
        return [(message.properties.CorrelationData, json.loads(message.payload)) for message in self.all]

    async def answer(self, transaction: bytes, body: bytes = ON, **others: Any) -> Any:
        """Asks, and returns the answer."""
        count = len(self.all)
        self.ask(transaction, body, **others)
        await soon(lambda: len(self.all) > count)
        given, answer = self.answers()[-1]
        assert given == transaction
        Draft202012Validator(json.loads((FLEET / "schema/answer-1.json").read_text())).validate(answer)
        return answer


@pytest.fixture
def ann(broker: Broker, short_pauses: None) -> Any:
    made = Requester(broker)
    yield made
    made.end()


def test_a_request_is_carried_out_and_answered_with_its_transaction(broker: Broker, ann: Requester, tmp_path: Path) -> None:
    async def scenario() -> None:
        host = Host()
        async with taking_requests(broker.port, tmp_path, host):
            assert await ann.answer(b"\x00\xff1") == {"schema": 1, "result": {"switched_on": True, "waits_for": None}}
        assert host.asked == [("switch", ON)]

    asyncio.run(scenario())


def test_one_that_is_delivered_again_is_not_carried_out_again_also_after_a_restart(
    broker: Broker, ann: Requester, tmp_path: Path
) -> None:
    async def scenario() -> None:
        host = Host()
        async with taking_requests(broker.port, tmp_path, host):
            first = await ann.answer(b"1")
            assert await ann.answer(b"1") == first
        async with taking_requests(broker.port, tmp_path, host):
            assert await ann.answer(b"1") == first
            assert len(host.asked) == 1
            await ann.answer(b"1", to=ANSWERS + "2")  # the same number of another requester
            await ann.answer(b"2")
        assert len(host.asked) == 3

    asyncio.run(scenario())


def test_one_that_a_restart_interrupted_is_not_begun_again(broker: Broker, ann: Requester, tmp_path: Path) -> None:
    async def scenario() -> None:
        host = Host()
        host.may_go_on.clear()
        async with taking_requests(broker.port, tmp_path, host):
            ann.ask(b"1")
            await soon(lambda: host.asked)
        async with taking_requests(broker.port, tmp_path, host):
            assert (await ann.answer(b"1"))["error"] == "host_away"
        assert len(host.asked) == 1

    asyncio.run(scenario())


def test_a_problem_has_the_name_that_it_has_for_the_pages(broker: Broker, ann: Requester, tmp_path: Path) -> None:
    async def scenario() -> None:
        host = Host()
        host.problem = Problem(409, "refused", "It waits.", "Unplug the other one.", reason="collision", why="it waits", advice=None)
        async with taking_requests(broker.port, tmp_path, host):
            refused = await ann.answer(b"1")
            assert (refused["error"], refused["reason"]) == ("refused", "collision")
            assert (await ann.answer(b"2", topic="usbdev/garden/request/format-disk"))["error"] == "not_found"
            assert (await ann.answer(b"3", b" " * 4097))["error"] == "too_large"
        assert len(host.asked) == 1

    asyncio.run(scenario())


@pytest.mark.parametrize(("request_name", "body"), [
    ("switch", b""), ("switch", b"[]"), ("switch", b"{"), ("switch", b"\xff"), ("switch", b"[" * 4000), ("switch", b'{"channel":1}'),
    ("switch", b'{"channel":10,"on":true}'), ("switch", b'{"channel":-1,"on":true}'), ("switch", b'{"channel":true,"on":true}'),
    ("switch", b'{"channel":1,"on":1}'), ("switch", b'{"channel":1,"on":true,"x":1}'), ("switch", b'{"channel":1.0,"on":true}'),
    ("share", b'{"profile":0,"action":"show"}'), ("share", b'{"profile":4,"action":"on"}'), ("share", b'{"profile":0,"action":"on","password":"x"}'),
    ("stream", b'{"profile":0}'), ("stream", b'{"profile":0,"width":640}'), ("stream", b'{"profile":0,"rate":NaN}'),
    ("stream", b'{"profile":0,"codec":"--help"}'), ("stream", b'{"profile":"0","volume":1}'), ("stream", b'{"volume":1}'),
])  # fmt: skip
def test_what_is_no_proper_request_is_not_given_to_the_host(request_name: str, body: bytes) -> None:
    with pytest.raises(Problem) as raised:
        asyncio.run(carry_out(request_name, body))
    assert raised.value.answer["error"] == "invalid"


def test_only_a_topic_for_answers_is_answered(broker: Broker, ann: Requester, tmp_path: Path) -> None:
    async def scenario() -> None:
        host = Host()
        everything = Consumer(broker)
        async with taking_requests(broker.port, tmp_path, host):
            for topic in ("homeassistant/device/x/config", "usbdev/garden/state", "usbdev/shed/response/a", ANSWERS + "/\u00e9", ANSWERS + "a" * 256):
                ann.ask(b"1", to=topic)
            ann.publish(SWITCH, ON)
            ann.publish(SWITCH, ON, ResponseTopic=ANSWERS)
            ann.ask(b"x" * 65)
            await ann.answer(b"2")
        assert len(host.asked) == 1
        assert {message.topic for message in everything.all} <= {SWITCH, ANSWERS}
        everything.end()

    asyncio.run(scenario())


def test_many_that_are_ignored_are_printed_once(broker: Broker, ann: Requester, tmp_path: Path, capfd: pytest.CaptureFixture[str]) -> None:
    async def scenario() -> None:
        async with taking_requests(broker.port, tmp_path, Host()):
            for _ in range(50):
                ann.publish(SWITCH, ON)
            await ann.answer(b"1")

    asyncio.run(scenario())
    assert capfd.readouterr().err.count("ignored a request") == 1


def test_a_request_that_the_broker_kept_is_ignored(broker: Broker, ann: Requester, tmp_path: Path) -> None:
    async def scenario() -> None:
        host = Host()
        ann.publish(SWITCH, ON, retain=True, ResponseTopic=ANSWERS, CorrelationData=b"1").wait_for_publish(PATIENCE)
        async with taking_requests(broker.port, tmp_path, host):
            await ann.answer(b"2")
        assert len(host.asked) == 1

    asyncio.run(scenario())


def test_more_than_can_wait_are_refused_at_once(broker: Broker, ann: Requester, tmp_path: Path) -> None:
    async def scenario() -> None:
        host = Host()
        host.may_go_on.clear()
        async with taking_requests(broker.port, tmp_path, host):
            for number in range(commands.MOST_WAITING + 5):
                ann.ask(b"%d" % number)
            await soon(lambda: len(ann.all) >= 4)
            assert {answer["error"] for _, answer in ann.answers()} == {"too_many"}
            host.may_go_on.set()
            await soon(lambda: len(ann.all) == commands.MOST_WAITING + 5)
        assert len(host.asked) in (commands.MOST_WAITING, commands.MOST_WAITING + 1)

    asyncio.run(scenario())


def test_there_is_a_largest_number_in_a_minute(broker: Broker, ann: Requester, tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(commands, "MOST_PER_MINUTE", 3)

    async def scenario() -> None:
        host = Host()
        async with taking_requests(broker.port, tmp_path, host) as taking:
            now = [1000.0]
            taking._clock = lambda: now[0]
            for number in range(3):
                assert "result" in await ann.answer(b"%d" % number)
            refused = await ann.answer(b"3")
            assert refused["error"] == "too_many" and 0 < refused["seconds"] <= 61
            now[0] += 60
            assert "result" in await ann.answer(b"4")

    asyncio.run(scenario())


def test_one_goes_on_when_the_connection_is_lost_and_is_answered_when_it_is_asked_again(
    broker: Broker, ann: Requester, tmp_path: Path
) -> None:
    async def scenario() -> None:
        host = Host()
        host.may_go_on.clear()
        async with taking_requests(broker.port, tmp_path, host) as taking:
            ann.ask(b"1")
            await soon(lambda: host.asked)
            assert taking._connection is not None
            lost = taking._connection
            lost.leave()
            await soon(lambda: taking._connection is not lost)
            host.may_go_on.set()
            await asyncio.sleep(0.3)
            assert "result" in await ann.answer(b"1")
        assert len(host.asked) == 1

    asyncio.run(scenario())


def test_only_the_latest_requests_are_remembered(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr("fleetlib.requests.MOST", 3)
    requests = Requests(tmp_path / "fleet.db")
    for number in range(5):
        assert requests.begin(f"{number}") is None
        requests.end(f"{number}", b"%d" % number)
    assert [requests.begin(f"{number}") for number in (2, 4, 0)] == [b"2", b"4", None]
