# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a subscriber of 1,000 hosts gets of what the broker keeps, with mosquitto's own settings and with those of docs/fleet.md."""

from __future__ import annotations

from collections.abc import Iterator
from pathlib import Path

import pytest
from conftest import VERSIONS, Broker, Consumer, made_up, until
from fleetlib import discovery, documents
from fleetlib.topics import Topics
from paho.mqtt.client import Client, MQTTv5

HOSTS = 1000
STATES, AVAILABILITY, DISCOVERY = "usbdev/+/state", "usbdev/+/availability", "homeassistant/device/+/config"


def fill(broker: Broker, hosts: int = HOSTS) -> None:
    """Leaves what so many hosts publish at the broker."""
    client = Client(protocol=MQTTv5)
    client.connect("127.0.0.1", broker.port)
    client.loop_start()
    for host in (f"host{number}" for number in range(hosts)):
        topics = Topics(host, "homeassistant")
        state = documents.with_time(documents.state(host, VERSIONS, made_up(), 0))
        for topic, text in ((topics.state, state), (topics.availability, b"online"),
                            (topics.discovery, documents.text(discovery.message(host, topics, "7.8.9")))):  # fmt: skip
            last = client.publish(topic, text, qos=1, retain=True)
    last.wait_for_publish()
    until(lambda: not client._out_messages)
    client.disconnect()
    client.loop_stop()


@pytest.fixture(scope="module")
def full(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Broker]:
    """A broker with mosquitto's own settings."""
    broker = Broker(tmp_path_factory.mktemp("broker")).start()
    fill(broker)
    yield broker
    broker.stop()


def received(broker: Broker, *topics: str) -> Consumer:
    """A consumer that has all it gets."""
    consumer = Consumer(broker, *topics, "marker")
    consumer.publish("marker", b"the last one")
    until(lambda: "marker" in consumer.newest)
    consumer.newest.pop("marker")
    return consumer


def test_a_subscriber_of_the_states_sees_all_hosts(full: Broker) -> None:
    consumer = received(full, STATES)
    assert len(consumer.newest) == HOSTS
    consumer.end()


def test_who_subscribes_to_the_rest_when_the_states_have_arrived_sees_everything(full: Broker) -> None:
    consumer = received(full, STATES)
    for number, topic in enumerate((AVAILABILITY, DISCOVERY)):
        consumer.client.subscribe(topic, 1)
        until(lambda: len(consumer.newest) == (2 + number) * HOSTS)
    consumer.end()


def test_of_more_at_once_the_broker_drops_what_its_settings_do_not_let_wait(full: Broker) -> None:
    consumer = Consumer(full, "usbdev/#", "homeassistant/#")
    until(lambda: len(consumer.newest) >= 1020)
    consumer.publish("usbdev/marker", b"the last one")
    until(lambda: "usbdev/marker" in consumer.newest)
    assert len(consumer.newest) == 1020 + 1
    consumer.end()


def test_with_the_setting_of_the_document_everything_arrives_at_once(tmp_path: Path) -> None:
    broker = Broker(tmp_path, f"max_queued_messages {3 * HOSTS}").start()
    try:
        fill(broker)
        consumer = Consumer(broker, "usbdev/#", "homeassistant/#")
        until(lambda: len(consumer.newest) == 3 * HOSTS)
        consumer.end()
    finally:
        broker.stop()
