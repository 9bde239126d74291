# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A broker on the loopback address, what a consumer sees of it, and a made-up host that publishes to it."""

from __future__ import annotations

import asyncio
import json
import sqlite3
import subprocess
import sys
import threading
import time
from collections.abc import AsyncIterator, Callable, Iterator
from contextlib import asynccontextmanager, closing
from pathlib import Path
from socket import create_connection, create_server
from typing import Any

import pytest
from paho.mqtt.client import Client, MQTTMessage, MQTTMessageInfo, MQTTv5
from paho.mqtt.properties import PacketTypes, Properties

REPOSITORY = Path(__file__).resolve().parents[2]
FLEET = REPOSITORY / "host/fleet"
sys.path[:0] = [str(FLEET), str(REPOSITORY / "host/services"), str(REPOSITORY / "host/share")]

from fleetlib import keeping
from fleetlib.backlog import Backlog
from fleetlib.publisher import Publisher
from fleetlib.settings import Broker as Address
from fleetlib.settings import Login, Settings
from statelib import event_log

PATIENCE = 20
VERSIONS = {"usbdevctl": "7.8.9", "library": "7.8.9", "kernel": "6.1.0"}
Value = dict[str, Any]


def until(condition: Callable[[], object], seconds: float = PATIENCE) -> None:
    end = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < end, "waited too long"
        time.sleep(0.01)


async def soon(condition: Callable[[], object]) -> None:
    """The same, while the event loop runs."""
    end = asyncio.get_running_loop().time() + PATIENCE
    while not condition():
        assert asyncio.get_running_loop().time() < end, "waited too long"
        await asyncio.sleep(0.01)


def free_port() -> int:
    with create_server(("127.0.0.1", 0)) as server:
        return int(server.getsockname()[1])


class Broker:
    """mosquitto, with Debian's own settings but for those of the test."""

    def __init__(self, folder: Path, settings: str = "", users: bool = False) -> None:
        self.folder = folder
        self.port = free_port()
        anonymous = "" if users else "allow_anonymous true\n"
        self._settings = folder / "mosquitto.conf"
        # As root it would run as a user who cannot see the folder.
        self._settings.write_text(f"user root\nlistener {self.port} 127.0.0.1\n{anonymous}{settings}\n")

    def start(self) -> Broker:
        with (self.folder / "mosquitto.log").open("ab") as log:
            self._process = subprocess.Popen(["/usr/sbin/mosquitto", "-c", self._settings], stdout=log, stderr=log)
        until(self._answers)
        return self

    def _answers(self) -> bool:
        assert self._process.poll() is None, (self.folder / "mosquitto.log").read_text()
        try:
            create_connection(("127.0.0.1", self.port)).close()
        except OSError:
            return False
        return True

    def stop(self) -> None:
        self._process.terminate()
        self._process.wait()

    def kill(self) -> None:
        self._process.kill()
        self._process.wait()

    def send(self, signal: int) -> None:
        self._process.send_signal(signal)


class Consumer:
    """Somebody who looks at all hosts: the newest message of each topic, and all messages in order."""

    def __init__(self, broker: Broker, *topics: str, ca: str | None = None, user: str | None = None) -> None:
        self.newest: dict[str, bytes] = {}
        self.all: list[MQTTMessage] = []
        self._subscribed = threading.Event()
        self._topics = topics or ("#",)
        self.client = Client(protocol=MQTTv5)
        self.client.reconnect_delay_set(0.1, 0.1)
        self.client.on_message = self._received
        self.client.on_connect = lambda client, *_: client.subscribe([(topic, 1) for topic in self._topics])
        self.client.on_subscribe = lambda *_: self._subscribed.set()
        if ca is not None:
            self.client.tls_set(ca)
        if user is not None:
            self.client.username_pw_set(user, user)
        self.client.connect("127.0.0.1", broker.port, 20)
        self.client.loop_start()
        assert self._subscribed.wait(PATIENCE)

    def _received(self, client: Client, data: object, message: MQTTMessage) -> None:
        self.all.append(message)
        if message.payload:
            self.newest[message.topic] = message.payload
        else:
            self.newest.pop(message.topic, None)

    def publish(self, topic: str, text: bytes | str, retain: bool = False, **properties: Any) -> MQTTMessageInfo:
        given = Properties(PacketTypes.PUBLISH)
        for name, value in properties.items():
            setattr(given, name, value)
        return self.client.publish(topic, text, 1, retain, given)

    def json(self, topic: str) -> Any:
        return json.loads(self.newest[topic])

    def events(self, host: str = "garden") -> list[int]:
        return [json.loads(message.payload)["id"] for message in self.all if message.topic == f"usbdev/{host}/event"]

    def end(self) -> None:
        self.client.disconnect()
        self.client.loop_stop()

    def break_off(self) -> None:
        """Ends the connection without a word."""
        self.client.loop_stop()
        self.client.socket().close()


@pytest.fixture
def broker(tmp_path: Path) -> Iterator[Broker]:
    started = Broker(tmp_path).start()
    yield started
    started.stop()


@pytest.fixture
def consumer(broker: Broker) -> Iterator[Consumer]:
    made = Consumer(broker)
    yield made
    made.end()


@pytest.fixture
def short_pauses(monkeypatch: pytest.MonkeyPatch) -> None:
    """Connections that are lost are made again at once."""
    monkeypatch.setattr(keeping, "FIRST_SECONDS", 0.05)
    monkeypatch.setattr(keeping, "LONGEST_SECONDS", 0.2)


@pytest.fixture
def log(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    """An event log of its own."""
    monkeypatch.setattr(event_log, "FILE", tmp_path / "event.db")
    return tmp_path / "event.db"


def write_events(log: Path, count: int, text: str = "Modified Channel 1 FPS: 30.00") -> None:
    with closing(sqlite3.connect(log)) as database, database:
        database.execute("CREATE TABLE IF NOT EXISTS event(id INTEGER PRIMARY KEY AUTOINCREMENT, "
                         "time INTEGER NOT NULL, level INTEGER NOT NULL, text TEXT NOT NULL)")
        database.executemany("INSERT INTO event(time, level, text) VALUES(?, 0, ?)", [(1_800_000_000, text)] * count)


def channel(number: int, **members: Any) -> Value:
    """A channel with a camera that streams, as the reader of the state has it."""
    reason = {"reason": "switched_off", "cause": "switched_off", "values": {"channel": str(number)}, "text": "Its port is switched off.",
              "cure": "'usbdevctl slot on 0' switches it on.", "hinders": True, "other_channel": None, "collision": None}  # fmt: skip
    return {
        "channel": number, "state": "plugged", "port": f"3-{number}", "device": "HD Pro Webcam", "node": number, "profile": 0,
        "profile_name": "Door", "switched_on": True, "waits_for": None, "supported": True, "streams": True, "shared": True,
        "codec": "mjpeg", "width": 640, "height": 480, "rate": 30.0, "flip": False, "mirror": False, "overlay": False,
        "sound": {"card": False, "on": False, "codec": "aac", "volume": 50}, "created": "2026-11-22 11:58:48", "reasons": [reason],
        **members,
    }  # fmt: skip


def made_up(**members: Any) -> Value:
    profiles = [{"profile": number, "channel": number or None, "name": f"Channel {number + 1}", "streams": False} for number in range(4)]
    return {"host": {"name": "x"}, "channels": [channel(number, **members) for number in range(10)], "profiles": profiles,
            "usb": {"buses": [{"bus": 3, "speed": 480.0, "reserved": 120.0}]}, "events": []}  # fmt: skip


def settings(port: int, host: str = "garden", **others: Any) -> Settings:
    given = {"broker": Address("127.0.0.1", port, False, None), "login": Login(), "discovery": False, "prefix": "homeassistant",
             "commands": None, **others}  # fmt: skip
    return Settings(host=host, **given)


@asynccontextmanager
async def publishing(given: Settings, folder: Path, state: Value | None = None) -> AsyncIterator[Publisher]:
    """A host that publishes, until the end of the block."""
    publisher = Publisher(given, VERSIONS, Backlog(folder / f"{given.host}.db"))
    publisher.note(state or made_up())
    task = asyncio.create_task(keeping.keep(publisher.connection, publisher.work))
    try:
        yield publisher
    finally:
        task.cancel()
        await asyncio.wait({task})
        if not task.cancelled():
            task.result()


class Certificates:
    """An authority, with certificates of a server and of a client."""

    def __init__(self, folder: Path, name: str) -> None:
        self.folder = folder / name
        self.folder.mkdir()
        self.ca = self._make("ca", "-subj", "/CN=authority")
        signed = ("-CA", f"{self.folder}/ca.pem", "-CAkey", f"{self.folder}/ca.key")
        self.server = self._make("server", "-subj", "/CN=broker", "-addext", "subjectAltName=IP:127.0.0.1", *signed)
        self.server_key = f"{self.folder}/server.key"
        self.client = self._make("client", "-subj", "/CN=garden", *signed)

    def _make(self, name: str, *options: str) -> str:
        command = ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2",
                   "-keyout", f"{self.folder}/{name}.key", "-out", f"{self.folder}/{name}.pem"]  # fmt: skip
        subprocess.run([*command, *options], check=True, capture_output=True)
        return f"{self.folder}/{name}.pem"


@pytest.fixture(scope="session")
def ours(tmp_path_factory: pytest.TempPathFactory) -> Certificates:
    return Certificates(tmp_path_factory.mktemp("certificates"), "ours")


@pytest.fixture(scope="session")
def foreign(tmp_path_factory: pytest.TempPathFactory) -> Certificates:
    return Certificates(tmp_path_factory.mktemp("certificates"), "foreign")
