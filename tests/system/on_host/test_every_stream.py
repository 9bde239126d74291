# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Every camera of the collection set to every size it has, at rates below, at, between and above those it lists in turn."""

from __future__ import annotations

import xml.etree.ElementTree as ElementTree
from dataclasses import replace

import pytest
import usbdevlib
from host import CONFIGURATION, Host
from listing import ListedSize, offered_sizes, single
from manager import Manager
from simlib.catalogue import camera_names, load_camera
from usbdev import StreamInfo, profiles

PORT = "3-1"
CHANGED = 4

Stored = tuple[int, int, int, str]


def sizes_of(camera: str) -> list[ListedSize]:
    return offered_sizes(load_camera(camera).listing("formats.txt").decode())


# The camera with the long name has the formats of another one; of the one with two functions the second has the channel.
STREAMING = [name for name in camera_names() if sizes_of(name) and name not in ("long-name-camera", "colour-and-infrared")]


def requests(rates: list[float]) -> list[float]:
    """Below all rates, at one of them, between two, and above all."""
    ordered = sorted(rates)
    between = [(low + high) / 2 for low, high in zip(ordered, ordered[1:])]
    return [ordered[0] / 2, ordered[len(ordered) // 2], *between[len(between) // 2 :][:1], ordered[-1] + 5]


def changes_of(camera: str) -> list[tuple[ListedSize, float]]:
    """Of its first size every request, of each other one the next kind of them."""
    first, *others = sizes_of(camera)
    return [
        *((first, rate) for rate in requests(first.rates)),
        *((size, (asked := requests(size.rates))[number % len(asked)]) for number, size in enumerate(others)),
    ]


def stored() -> Stored:
    root, keys = ElementTree.parse(CONFIGURATION).getroot(), ("vcodec", "width", "height", "framerate")
    vcodec, width, height, rate = (root.findtext(f"ch0/video/{key}", "") for key in keys)
    return int(vcodec), int(width), int(height), rate


def set_stream(size: ListedSize, rate: float) -> int:
    before = profiles.stream_info(0)
    wanted = replace(before, vcodec=size.codec, width=size.width, height=size.height, framerate=rate)
    return usbdevlib.set_stream(wanted, before, CHANGED)


def is_change(before: Stored, size: ListedSize, rate: float) -> bool:
    """The rate is compared with the stored text, which has two decimals: one with three is always another."""
    return (*before[:3], single(float(before[3]))) != (size.codec, size.width, size.height, size.chosen(rate))


@pytest.fixture
def bound(host: Host, request: pytest.FixtureRequest, without_process_list: None) -> str:
    """The camera, with profile 0."""
    host.plug(request.param, PORT)
    assert usbdevlib.assign(PORT, 0) == 0
    return request.param


@pytest.mark.parametrize("bound", STREAMING, indirect=True)
def test_a_stream_is_stored_with_the_first_listed_rate_that_is_not_above_the_request(bound):
    with Manager() as manager:
        for size, rate in changes_of(bound):
            before = stored()
            assert set_stream(size, rate) == 0
            expected = (size.codec, size.width, size.height, f"{size.chosen(rate):3.2f}")
            assert stored() == expected, f"asked for {rate} at {size}"
            told = [(it.event, it.profile, it.flag) for it in manager.received()]
            assert told == ([(CHANGED, 0, int(size.codec == 0))] if is_change(before, size, rate) else [])


@pytest.mark.parametrize("bound", ["h264-camera"], indirect=True)
def test_sizes_listed_after_a_repeated_rate_are_not_offered(bound):
    before = stored()
    assert set_stream(ListedSize(codec=1, width=320, height=240), 30.0) == -1
    assert stored() == before


def test_there_are_twelve_cameras_at_least():
    assert len(STREAMING) >= 12


def test_a_camera_without_a_usable_format_cannot_be_set(host):
    host.plug("infrared-camera", PORT)
    assert usbdevlib.assign(PORT, 0) == 0
    assert usbdevlib.set_stream(StreamInfo(), StreamInfo(), 5) == -1
