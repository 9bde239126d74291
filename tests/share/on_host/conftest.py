# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A share page and the host that it needs. These tests run on a sandboxed host, of which they are the only users."""

from __future__ import annotations

import json
import subprocess
import sys
from collections.abc import Callable, Iterator
from pathlib import Path
from xml.etree import ElementTree

import pytest
from encoder import Encoder
from host_service import Service
from viewer import Viewer, viewing

SHARE = Path(__file__).resolve().parents[3] / "host/share"
sys.path[:0] = [str(SHARE), str(SHARE.parent / "services")]
CONFIGURATION = Path("/etc/config/usbdev.conf")
APPLICATION = Path("/mnt/ext/opt/apps/Velmora2")
STREAM = APPLICATION / "hls/channel1"
ORIGIN = "http://127.0.0.1:8080"
SIZES = [(320, 568), (568, 320), (390, 844), (1280, 800), (2560, 1440)]
EVERYWHERE = [True] * len(SIZES)
# Whether anything of the page is outside the window, or can be scrolled out of it.
FITS = """[...document.querySelectorAll('header, main, #video, #message, form, input, select, button')].every((element) => {
  const box = element.getBoundingClientRect();
  return box.left >= 0 && box.top >= 0 && box.right <= innerWidth && box.bottom <= innerHeight
    && element.scrollWidth <= element.clientWidth + 2;
}) && document.documentElement.scrollHeight <= innerHeight"""


@pytest.fixture(scope="session")
def page(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Service]:
    """The share page's server, at ORIGIN."""
    share_page = Service("share-page", tmp_path_factory.mktemp("page"))
    share_page.start()
    yield share_page
    share_page.end()


@pytest.fixture(scope="session")
def viewer() -> Iterator[Viewer]:
    with viewing(ORIGIN) as somebody:
        yield somebody


@pytest.fixture
def in_every_window(viewer: Viewer) -> Iterator[Callable[[str], list[bool]]]:
    """Returns what an expression of the open page is in each of the windows."""

    def evaluate(expression: str) -> list[bool]:
        return [evaluate_in(window, expression) for window in SIZES]

    def evaluate_in(window: tuple[int, int], expression: str) -> bool:
        width, height = window
        metrics = {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": width < 1000}
        viewer.tell_browser("Emulation.setDeviceMetricsOverride", **metrics)
        viewer.wait(lambda: viewer.evaluate("[innerWidth, innerHeight]") == [width, height])
        return viewer.evaluate(expression)

    yield evaluate
    viewer.tell_browser("Emulation.clearDeviceMetricsOverride")


@pytest.fixture
def encoder() -> Iterator[Encoder]:
    """The live stream of profile 0."""
    running = Encoder(STREAM)
    running.start()
    yield running
    running.end()


def store(**keys: object) -> None:
    """Makes a host with one camera, in channel 0 with profile 0; the keys replace its own; a dot is a group."""
    stored: dict[str, object] = {"exists": 1, "profile": 0, "usbslot": "3-1", "video.vnode": 0, **keys}
    velmora = ElementTree.Element("velmora")
    channel = ElementTree.SubElement(velmora, "ch0")
    for key, value in stored.items():
        group, _, name = key.rpartition(".")
        parent = channel if not group else channel.find(group)
        if parent is None:
            parent = ElementTree.SubElement(channel, group)
        ElementTree.SubElement(parent, name).text = str(value)
    CONFIGURATION.write_bytes(ElementTree.tostring(velmora, encoding="utf-8"))


def share(*arguments: str, password: str = "") -> dict[str, str]:
    """Runs "usbdevctl share"; the link that it prints with --json."""
    command = ["usbdevctl", "share", *arguments]
    done = subprocess.run(command, input=password, check=True, stdout=subprocess.PIPE, text=True)
    return json.loads(done.stdout) if "--json" in arguments else {}


def shared(link: dict[str, str], **keys: object) -> None:
    """Makes the host with that link and one camera; the keys as for "store"."""
    stored = {"ssid": link["ssid"], "token": link["token"], "hash_string": link["hash"], "shrenable": 1}
    store(**{**{f"sharelink.{key}": value for key, value in stored.items()}, **keys})


@pytest.fixture
def link() -> dict[str, str]:
    """The share link of a camera."""
    store(profilename="Door")
    return share("on", "0", "--json")
