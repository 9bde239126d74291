# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The simulation with which many hosts are measured (bench/fleet) tells the truth: what a subscriber sees of each host is what
its simulated machine is like."""

from __future__ import annotations

import copy
import json
import os
import sys
from pathlib import Path

import pytest
from conftest import REPOSITORY, Broker, Consumer, until

sys.path.append(str(REPOSITORY / "bench/fleet"))
from played import Value, contradiction, record
from players import Players, without_time
from prometheus_client.openmetrics.parser import text_string_to_metric_families
from scraped import text

HOSTS, LIVES, CHANGES = 5, 2, 18


@pytest.fixture(scope="module")
def lives(tmp_path_factory: pytest.TempPathFactory) -> list[Path]:
    folder = tmp_path_factory.mktemp("lives")
    record(Path(os.environ["USBDEV_BUILD_DIR"]), range(LIVES), CHANGES, folder)
    return [folder / f"{life}.jsonl" for life in range(LIVES)]


def lines(lives: list[Path]) -> list[Value]:
    return [json.loads(line) for life in lives for line in life.read_text().splitlines()]


def test_a_subscriber_sees_what_the_machine_of_each_host_is_like(lives: list[Path], broker: Broker) -> None:
    players, consumer = Players(HOSTS, broker.port, lives), Consumer(broker, "usbdev/+/state")
    players.all("connect")
    players.all("storm", CHANGES)
    truth = {f"usbdev/{host}/state": document for part in players.all("truth") for host, document in part.items()}
    assert len(truth) == HOSTS
    until(lambda: {topic: without_time(text) for topic, text in consumer.newest.items()} == truth)
    players.end()
    consumer.end()


def test_the_state_agrees_with_the_machine_after_each_change(lives: list[Path]) -> None:
    assert [line["after"] for line in lines(lives) if contradiction(line["machine"], line["state"])] == []


def test_a_camera_that_is_elsewhere_is_a_contradiction(lives: list[Path]) -> None:
    line = lines(lives)[-1]
    moved = copy.deepcopy(line["state"])
    next(channel for channel in moved["channels"] if channel["state"] == "plugged")["port"] = "4-8"
    assert contradiction(line["machine"], moved)


def test_a_camera_that_is_not_seen_is_a_contradiction_if_the_library_took_it(lives: list[Path]) -> None:
    line = lines(lives)[-1]
    machine, more = line["machine"], {"4-8": "another camera"}
    assert contradiction({**machine, "channels": machine["channels"] | more}, line["state"])
    assert not contradiction({**machine, "refused": machine["refused"] | more}, line["state"])


def test_cameras_stream_wait_for_one_another_and_are_unplugged(lives: list[Path]) -> None:
    channels = [channel for line in lines(lives) for channel in line["state"]["channels"]]
    assert any(channel["streams"] for channel in channels)
    assert any(channel["waits_for"] is not None for channel in channels)
    assert any(channel["state"] == "unplugged" for channel in channels)


def test_the_metrics_count_the_cameras_of_the_machine_after_each_change(lives: list[Path]) -> None:
    for life in lives:
        for step, line in enumerate(lines([life])):
            counted, machine = plugged(text(life, step)), line["machine"]
            assert len(machine["channels"]) <= counted <= len(machine["channels"]) + len(machine["refused"])


def plugged(metrics: bytes) -> float:
    samples = [sample for family in text_string_to_metric_families(metrics.decode()) for sample in family.samples]
    return sum(one.value for one in samples if one.name == "usbdev_channels" and one.labels["state"] == "plugged")


def test_all_hosts_begin_without_a_camera_and_soon_have_ten(lives: list[Path]) -> None:
    for life in lives:
        assert [len(line["machine"]["channels"]) for line in lines([life])[:11]] == list(range(11))
