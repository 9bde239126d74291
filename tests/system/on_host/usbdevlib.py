# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the tests on the host do with the library, with results in numbers: 0 or a channel, or what failed."""

from __future__ import annotations

from collections.abc import Callable
from typing import ParamSpec

from usbdev import Device, StreamInfo, UsbdevError, profiles
from usbdev import hotplug as events

P = ParamSpec("P")


def result_of(function: Callable[P, object], *arguments: P.args, **named: P.kwargs) -> int:
    try:
        function(*arguments, **named)
    except UsbdevError as problem:
        return problem.result
    return 0


def hotplug(devtype: int, node: int, slot: str, plugged: int, name: str) -> int:
    whole = name.encode()[:255].decode("utf-8", "surrogateescape")
    try:
        return events.handle_event(Device(devtype, node, slot, plugged, whole)).channel
    except UsbdevError as problem:
        return problem.result


def start_up() -> None:
    events.start_up()


def assign(slot: str, profile: int) -> int:
    return result_of(profiles.assign, slot, profile)


def clear(profile: int, event: int = 0) -> int:
    return result_of(profiles.clear, profile, event_code=event)


def set_stream(wanted: StreamInfo, before: StreamInfo, event: int) -> int:
    return result_of(profiles.set_stream, 0, wanted, before, event)
