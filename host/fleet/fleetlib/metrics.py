# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The metrics of a host, made at each scrape. What can be in a label is listed here, so that no name of a camera, no serial
number and no other text gets out, and a kind that nobody has is 0."""

from __future__ import annotations

from collections import Counter
from collections.abc import Callable, Iterable, Iterator, Mapping, Sequence
from itertools import accumulate, product
from typing import Any

from prometheus_client.core import CounterMetricFamily, GaugeMetricFamily, HistogramMetricFamily, InfoMetricFamily
from prometheus_client.metrics_core import Metric
from prometheus_client.registry import Collector
from servicelib.counts import BOUNDS
from usbdev.records import CHANNELS, PROFILES

from fleetlib import counted, udp_drops, units
from fleetlib.counted import Counted, Times

# Why a camera that is plugged in does not stream, in the words of "usbdevctl explain".
NONE, OTHER = "none", "other"
REASONS = (NONE, "waits", "switched_off", "unbound", "unsupported", "encoding", "gone", "port_disabled", "over_current",
           "unauthorized", "no_capture_node", "no_permission", "busy", "bandwidth", "disk_full", "suspended", "failing",
           OTHER)  # fmt: skip
PLUGGED = "plugged"
STATES_AND_REASONS = [("free", NONE), ("unplugged", "unplugged"), ("displaced", "displaced"), *product((PLUGGED,), REASONS)]
PROFILE_NUMBERS = [str(number) for number in range(PROFILES)]
# What the services count: its name, its labels with their values, and what it is.
NUMBERS: tuple[tuple[str, Mapping[str, Sequence[str]], str], ...] = (
    ("plug_events", {"device": ("camera", "sound_card"), "action": ("plugged", "removed")},
     "Cameras and sound cards that came and went, as reported to the library"),
    ("stream_failures", {"profile": PROFILE_NUMBERS, "cause": ("ended", "stuck", "camera_gone", "not_started")},
     "Streams that failed"),
    ("stream_restarts", {"profile": PROFILE_NUMBERS}, "Streams that were started again after a failure"),
    ("notifications", {"outcome": ("received", "refused")}, "Notifications of the library that came to the manager"),
)  # fmt: skip
TIMES = {
    "commands": ("command_duration", "command", "Time that usbdevctl took for a service, by its first word"),
    "library_calls": ("library_call_duration", "call", "Time that a call of the library took in a service"),
}
LOCK_WAITS = ("lock_waits",)
LOGIN = "usbdev-login.service"

State = dict[str, Any]


class Host(Collector):
    """Of the state it takes what it is given, which follows each change, so that a scrape asks no camera anything."""

    def __init__(self, versions: dict[str, Any], count: Callable[[], dict[str, Counted]] = counted.read) -> None:
        self._versions = {name: value or "" for name, value in versions.items()}
        self._count = count
        self._state: State | None = None

    def note(self, state: State | None) -> None:
        """Notes the newest state, or that the host cannot be read."""
        self._state = state

    def collect(self) -> Iterator[Metric]:
        yield _gauges("up", "Whether the host's configuration can be read", [], {(): self._state is not None})
        yield InfoMetricFamily("usbdev", "Versions of what runs on the host", self._versions)
        if self._state is not None:
            yield from _of_state(self._state)
        services = self._count()
        running = {(service,): found.is_running for service, found in services.items()}
        if (login := units.runs(LOGIN)) is not None:
            running["login",] = login
        yield _gauges("service_up", "Whether a service of the host runs", ["service"], running)
        yield from _numbers(services.values())
        yield CounterMetricFamily("usbdev_notifications_lost", "Notifications that came faster than the manager took them",
                                  value=udp_drops.of_manager())  # fmt: skip
        yield from _times(services)


def _of_state(state: State) -> Iterator[Metric]:
    channels = {(str(channel["channel"]),): channel for channel in state["channels"][:CHANNELS]}
    found = Counter(map(_state_and_reason, channels.values()))
    numbers = {kind: found[kind] for kind in STATES_AND_REASONS}
    yield _gauges("channels", "Channels, by what they have and why that does not stream", ["state", "reason"], numbers)
    wanted = {number: _is_wanted(channel) for number, channel in channels.items()}
    yield _gauges("stream_wanted", "Whether the channel has a profile and is switched on", ["channel"], wanted)
    up = {number: channel["streams"] for number, channel in channels.items()}
    yield _gauges("stream_up", "Whether the channel streams", ["channel"], up)
    buses = {(str(bus["bus"]),): _share(bus) for bus in state["usb"].get("buses", [])}
    yield _gauges("bus_reserved_ratio", "How much of the bandwidth of a USB bus is reserved", ["bus"], buses)


def _state_and_reason(channel: State) -> tuple[str, str]:
    """Returns the first reason of those that hinder; without a camera it is the state itself."""
    if channel["state"] != PLUGGED:
        return str(channel["state"]), NONE if channel["state"] == "free" else str(channel["state"])
    reason = next((reason["reason"] for reason in channel["reasons"] if reason["hinders"]), NONE)
    return PLUGGED, reason if reason in REASONS else OTHER


def _is_wanted(channel: State) -> bool:
    return channel["profile"] is not None and channel["switched_on"] is not False


def _share(bus: State) -> float:
    return float(bus["reserved"] / bus["speed"]) if bus["speed"] else 0.0


def _numbers(services: Iterable[Counted]) -> Iterator[Metric]:
    found = Counter[tuple[str, ...]]()
    for service in services:
        found.update(service.numbers)
    for name, labels, text in NUMBERS:
        family = CounterMetricFamily(f"usbdev_{name}", text, labels=list(labels))
        for kind in product(*labels.values()):
            family.add_metric(kind, found[name, *kind])
        yield family


def _times(services: dict[str, Counted]) -> Iterator[Metric]:
    for kind, (name, label, text) in TIMES.items():
        family = HistogramMetricFamily(f"usbdev_{name}_seconds", text, labels=["service", label])
        for service, found in services.items():
            for words, times in found.times.items():
                if len(words) == 2 and words[0] == kind:
                    family.add_metric([service, words[1]], *_buckets(times))
        yield family
    waits = services["fleet"].times.get(LOCK_WAITS, Times(0.0, [0] * (len(BOUNDS) + 1)))
    family = HistogramMetricFamily("usbdev_configuration_lock_wait_seconds",
                                   "Wait for the lock of the configuration, tried once for each scrape")  # fmt: skip
    family.add_metric([], *_buckets(waits))
    yield family


def _buckets(times: Times) -> tuple[list[tuple[str, float]], float]:
    bounds = [*map(str, BOUNDS), "+Inf"]
    return list(zip(bounds, map(float, accumulate(times.numbers)))), times.sum


def _gauges(name: str, text: str, labels: list[str], values: Mapping[Any, float]) -> Metric:
    family = GaugeMetricFamily(f"usbdev_{name}", text, labels=labels)
    for words, value in values.items():
        family.add_metric(words, value)
    return family
