# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The service on a sandboxed host, with a broker beside it: it publishes what the host knows, and requests do what the pages
would do. These tests run on a sandboxed host, of which they are the only users, one after the other."""

from __future__ import annotations

import json
import subprocess
import sys
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest
from conftest import FLEET, REPOSITORY, Broker, Consumer, until
from jsonschema import Draft202012Validator

sys.path.append(str(REPOSITORY / "tests/share/on_host"))
from host_service import Service

STATE, AVAILABILITY, EVENT = (f"usbdev/garden/{name}" for name in ("state", "availability", "event"))
ANSWERS = "usbdev/garden/response/ann"
SETTINGS = Path("/etc/usbdev-host/fleet.ini")
TEXT = """
[broker]
address = 127.0.0.1
tls = no
port = {port}
[host]
name = garden
[discovery]
on = yes
[commands]
on = yes
user = commands
"""


def run(command: str) -> str:
    """Runs a command on the host; what it prints."""
    return subprocess.run(["sh", "-ec", command], check=True, stdout=subprocess.PIPE, text=True).stdout


@pytest.fixture(scope="module")
def broker(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Broker]:
    started = Broker(tmp_path_factory.mktemp("broker")).start()
    yield started
    started.stop()


@pytest.fixture(scope="module")
def service(tmp_path_factory: pytest.TempPathFactory, broker: Broker) -> Iterator[Service]:
    """Runs on a host with a camera that has a shared profile."""
    run("sim plug usb2-camera 3-1; usbdevctl assign 3-1 0; usbdevctl rename 0 Door; usbdevctl share on 0; "
        "usbdevctl stream set 0 --size 640x480")  # fmt: skip
    SETTINGS.parent.mkdir()
    SETTINGS.write_text(TEXT.format(port=broker.port))
    started = Service("fleet-service", tmp_path_factory.mktemp("service"))
    started.start()
    yield started
    started.end()


@pytest.fixture(scope="module")
def ann(broker: Broker, service: Service) -> Iterator[Consumer]:
    made = Consumer(broker)
    until(lambda: made.newest.get(AVAILABILITY) == b"online")
    yield made
    made.end()


def channel(ann: Consumer) -> Any:
    return ann.json(STATE)["channels"][0]


def ask(ann: Consumer, request: str, **body: Any) -> Any:
    """Sends a request, and returns the answer."""
    transaction = b"%d" % len(ann.all)
    ann.newest.pop(ANSWERS, None)
    ann.publish(f"usbdev/garden/request/{request}", json.dumps(body), ResponseTopic=ANSWERS, CorrelationData=transaction)
    until(lambda: ANSWERS in ann.newest)
    answer = ann.json(ANSWERS)
    Draft202012Validator(json.loads((FLEET / "schema/answer-1.json").read_text())).validate(answer)
    return answer


def test_the_state_is_what_the_host_knows(ann: Consumer) -> None:
    state = ann.json(STATE)
    Draft202012Validator(json.loads((FLEET / "schema/state-1.json").read_text())).validate(state)
    found = state["channels"][0]
    assert (found["state"], found["port"], found["profile_name"], found["shared"], found["width"]) == ("plugged", "3-1", "Door", True, 640)
    assert state["versions"]["library"] in run("usbdevctl --version")
    assert "homeassistant/device/usbdev_garden/config" in ann.newest


def test_what_changes_on_the_host_is_published(ann: Consumer) -> None:
    run("sim unplug 3-1")
    until(lambda: channel(ann)["state"] == "unplugged")
    assert channel(ann)["reasons"][0]["reason"] == "unplugged"
    run("sim plug usb2-camera 3-1")
    until(lambda: channel(ann)["state"] == "plugged")


def test_an_event_of_the_log_is_published(ann: Consumer) -> None:
    run("usbdevctl rename 0 Garten; usbdevctl rename 0 Door")
    until(lambda: EVENT in ann.newest and ann.json(EVENT)["text"].endswith("Door"))
    Draft202012Validator(json.loads((FLEET / "schema/event-1.json").read_text())).validate(ann.json(EVENT))


def test_a_request_switches_a_slot(ann: Consumer) -> None:
    for on in (False, True):
        assert ask(ann, "switch", channel=0, on=on) == {"schema": 1, "result": {"switched_on": on, "waits_for": None}}
        until(lambda: channel(ann)["switched_on"] == on)


def test_a_request_sets_a_stream_and_tells_what_was_taken(ann: Consumer) -> None:
    answer = ask(ann, "stream", profile=0, width=320, height=240, overlay=True)["result"]
    assert answer["asked"] == {"width": 320, "height": 240, "overlay": True}
    assert (answer["taken"]["width"], answer["taken"]["height"]) == (320, 240)
    until(lambda: channel(ann)["width"] == 320)


def test_a_request_shares_and_gets_no_link(ann: Consumer) -> None:
    before = run("usbdevctl share show 0")
    assert ask(ann, "share", profile=0, action="renew")["result"] == {"on": True, "password": False}
    assert run("usbdevctl share show 0") != before
    for action, on in (("off", False), ("on", True)):
        assert ask(ann, "share", profile=0, action=action)["result"] == {"on": on, "password": False}
        until(lambda: channel(ann)["shared"] == on)


def test_what_the_host_refuses_has_the_name_that_the_pages_have_for_it(ann: Consumer) -> None:
    assert ask(ann, "switch", channel=7, on=True)["error"] == "not_found"
    refused = ask(ann, "stream", profile=0, width=1, height=1)
    assert refused["error"] == "refused" and refused["text"]


def test_no_secret_of_the_host_is_published_or_printed(ann: Consumer, service: Service) -> None:
    """Last of those that change something."""
    run("echo 'blue horse' | usbdevctl share on 0 --password-stdin")
    links = json.loads(run("usbdevctl share show 0 --json"))
    until(lambda: EVENT in ann.newest)
    ask(ann, "share", profile=0, action="on")
    secrets = ["blue horse", *[str(value) for name, value in links.items() if name in ("ssid", "token", "hash", "page", "link")]]
    assert len(secrets) >= 3
    told = service.log.read_bytes() + b"".join(message.payload + message.topic.encode() for message in ann.all)
    assert [secret for secret in secrets if secret.encode() in told] == []


def test_a_host_is_removed_with_everything_that_the_broker_keeps_of_it(broker: Broker, service: Service, ann: Consumer) -> None:
    service.end()
    until(lambda: ann.newest[AVAILABILITY] == b"offline")
    subprocess.run(["fleet-service", "--remove"], check=True)
    late = Consumer(broker)
    marker = "usbdev/marker"
    late.publish(marker, b"x")
    until(lambda: marker in late.newest)
    assert set(late.newest) == {marker}
    late.end()
    service.start()
