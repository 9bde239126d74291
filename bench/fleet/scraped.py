# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Hosts that live a recorded life, see live.py, and serve the metrics that the fleet service would, each at an address of its
own in 127.20.0.0/16."""

from __future__ import annotations

import asyncio
import json
from bisect import bisect_left
from collections import Counter
from functools import cache
from pathlib import Path
from random import Random

from fleetlib.counted import SERVICES, Counted, Name, Times
from fleetlib.metrics import Host
from played import VERSIONS, Value
from prometheus_client.core import CollectorRegistry
from prometheus_client.openmetrics.exposition import CONTENT_TYPE_LATEST, generate_latest
from servicelib.counts import BOUNDS
from tornado.web import Application, RequestHandler

PORT = 10172


def address(number: int) -> str:
    return f"127.20.{number // 250}.{number % 250 + 1}"


@cache
def text(life: Path, step: int) -> bytes:
    """Returns the metrics after so many changes; hosts with the same life share it, so that making it does not compete with what
    is measured."""
    lines = [json.loads(line) for line in life.read_text(encoding="utf-8").splitlines()[: step + 1]]
    host = Host(VERSIONS, lambda: _counted(lines))
    host.note(lines[-1]["state"])
    registry = CollectorRegistry()
    registry.register(host)
    return bytes(generate_latest(registry))


def _counted(lines: list[Value]) -> dict[str, Counted]:
    """Returns what the services have counted: each change is read once, and each plug is a call of the library."""
    actions = Counter({"plug": "plugged", "unplug": "removed"}.get(line["after"].split()[0]) for line in lines)
    numbers: dict[Name, int] = {("plug_events", "camera", action): actions[action] for action in ("plugged", "removed")}
    reading, changing = (_times([line[kind] for line in lines]) for kind in ("reading", "changing"))
    found = {service: Counted(is_running=True) for service in SERVICES}
    found["devices"].numbers = numbers
    found["devices"].times = {("library_calls", "handle_event"): changing, ("library_calls", "start_up"): _times([0.1])}
    found["streams"].times = {("library_calls", name): reading for name in ("stream_info", "set_stream_available", "apply_volume")}
    for service in ("pages", "fleet"):
        found[service].times = {("commands", "explain"): reading, ("library_calls", "profiles"): reading}
    found["fleet"].times |= {("commands", "version"): _times([0.01]), ("lock_waits",): _times([0.0] * len(lines))}
    return found


def _times(seconds: list[float]) -> Times:
    places = Counter(bisect_left(BOUNDS, value) for value in seconds)
    return Times(sum(seconds), [places[place] for place in range(len(BOUNDS) + 1)])


class Page(RequestHandler):
    def initialize(self, steps: dict[str, tuple[Path, int]]) -> None:
        self._steps = steps

    def get(self) -> None:
        self.set_header("Content-Type", CONTENT_TYPE_LATEST)
        self.finish(text(*self._steps[self.request.host_name]))


async def serve(numbers: range, lives: list[Path], changes: int, per_minute: float) -> None:
    """Serves these hosts until cancelled. Each changes so often, at random moments; one that has lived its life of so many changes
    begins again."""
    steps = {address(number): (lives[number % len(lives)], number % changes) for number in numbers}
    application = Application([("/metrics", Page, {"steps": steps})], log_function=lambda _: None)
    for host in steps:
        application.listen(PORT, host)
    chance = Random(numbers.start)
    while True:
        await asyncio.sleep(chance.expovariate(len(steps) * per_minute / 60))
        host = chance.choice(list(steps))
        life, step = steps[host]
        steps[host] = life, (step + 1) % (changes + 1)
