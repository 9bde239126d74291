# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A simulated camera looks like a real one: compared line by line with what real tools printed of the same cameras at
the same places."""

from __future__ import annotations

import re
import subprocess
from dataclasses import dataclass, field
from pathlib import Path

import pytest
from conftest import REPOSITORY
from simlib.host import SimulatedHost

CAPTURES = Path(__file__).resolve().parent / "data/captures"

# Attributes that change from one second to the next: times, transfer counts and the state of power saving.
VOLATILE = (
    "power/active_duration",
    "power/connected_duration",
    "power/runtime_active_kids",
    "power/runtime_active_time",
    "power/runtime_status",
    "power/runtime_suspended_time",
    "urbnum",
)


@dataclass
class Scene:
    """What was plugged, and taken out again, before a capture was made; or was there when the machine started."""

    capture: str
    plugs: list[tuple[str, str]]
    nodes: list[int] = field(default_factory=lambda: [0])
    topology: str = "three-controllers"
    restarted: bool = False

    def play(self, host: SimulatedHost) -> None:
        for camera, port in self.plugs:
            if camera == "unplug":
                host.unplug(port)
            else:
                host.plug(camera, port)
        if self.restarted:
            host.reboot()


SCENES = [
    Scene("mjpg-yuyv", [("usb2-camera", "3-1")], [0, 1]),
    Scene("yuyv-only", [("pc-camera", "1-3")]),
    Scene("hd-mic", [("hd-pro-webcam", "3-2")]),
    Scene("superspeed", [("usb3-camera", "4-1")]),
    Scene("behind-hub", [("hd-usb-camera", "3-1.2")]),
    Scene("behind-pcie-switch", [("usb2-camera", "5-1")]),
    Scene("not-on-pci", [("usb2-camera", "7-1"), ("hd-pro-webcam", "7-4")], [0, 2], "platform"),
    Scene(
        "two-on-one-root-port",
        [("hd-usb-camera", "3-1.1"), ("hd-usb-camera", "3-1.2"), ("unplug", "3-1.1"), ("hd-usb-camera", "3-1.1")],
        [0, 2],
    ),
    Scene(
        "second-of-three-unplugged",
        [("usb2-camera", "3-1"), ("pc-camera", "1-2"), ("hd-usb-camera", "5-1"), ("unplug", "1-2")],
        [0, 4],
    ),
    Scene(
        "present-at-boot",
        [("hd-usb-camera", "1-4"), ("usb2-camera", "3-2"), ("pc-camera", "1-1")],
        [0, 2, 4],
        restarted=True,
    ),
]


@pytest.fixture(params=SCENES, ids=[scene.capture for scene in SCENES])
def scene(request, new_host) -> tuple[Scene, Path]:
    host, root = new_host(request.param.topology)
    request.param.play(host)
    return request.param, root


def stable(text: str) -> list[str]:
    volatile = "|".join(map(re.escape, VOLATILE))
    return [re.sub(rf'(ATTRS?{{({volatile})}}==").*"', r'\1..."', line) for line in text.splitlines()]


def test_the_walk_is_that_of_the_real_camera(scene):
    it, root = scene
    for node in it.nodes:
        real = (CAPTURES / it.capture / f"walk.video{node}.txt").read_text()
        simulated = (root / f"run/usbdev-sim/nodes/video{node}/walk").read_text()
        assert stable(simulated) == stable(real)


@pytest.mark.parametrize("driver", ["uvcvideo", "snd-usb-audio"])
def test_the_driver_folder_lists_what_the_real_one_listed(scene, driver):
    it, root = scene
    real = (CAPTURES / it.capture / f"ls-plain-{driver}.txt").read_text().splitlines()
    folder = root / "sys/bus/usb/drivers" / driver
    if "No such file" in real[0]:
        assert not folder.exists()
    else:
        assert sorted(path.name for path in folder.iterdir()) == sorted(real)


def test_the_nodes_have_the_paths_of_the_real_ones(scene):
    it, root = scene
    real = (CAPTURES / it.capture / "sysfs-paths.txt").read_text().splitlines()
    nodes = sorted((root / "sys/class/video4linux").iterdir())
    assert [f"/{node.resolve().relative_to(root)}" for node in nodes] == real


def test_the_nodes_of_an_interface_are_listed_below_it(scene):
    it, root = scene
    for path in (CAPTURES / it.capture / "sysfs-paths.txt").read_text().splitlines():
        interface, node = re.search(r"/([^/]+)/video4linux/(.*)", path).groups()
        assert (root / "sys/bus/usb/drivers/uvcvideo" / interface / "video4linux" / node / "name").is_file()


def test_the_nodes_have_the_names_of_the_real_ones(scene):
    it, root = scene
    real = (CAPTURES / it.capture / "names.txt").read_text().splitlines()
    files = sorted((root / "sys/class/video4linux").glob("*/name"))
    assert [f"/{file.relative_to(root)}: {file.read_text()}" for file in files] == [f"{line}\n" for line in real]


def test_the_sound_cards_have_the_names_of_the_real_ones(scene):
    it, root = scene
    listing = CAPTURES / it.capture / "cards.txt"
    real = re.findall(r"^ *(\d+) \[.*\]: USB-Audio - (.*)$", listing.read_text() if listing.exists() else "", re.M)
    cards = sorted((root / "run/usbdev-sim/cards").glob("card*"))
    assert [(card.name.removeprefix("card"), (card / "name").read_text().strip()) for card in cards] == real


def has_listings(it: Scene) -> bool:
    return (CAPTURES / it.capture / "formats.video0.txt").exists()


@pytest.mark.parametrize("scene", filter(has_listings, SCENES), ids=lambda it: it.capture, indirect=True)
def test_the_formats_are_those_of_the_real_camera(scene):
    it, root = scene
    for real in (CAPTURES / it.capture).glob("formats.video*.txt"):
        old_layout = subprocess.run(
            [REPOSITORY / "host/sim/bin/v4l2-old-layout", real], check=True, capture_output=True
        ).stdout
        node = real.name.split(".")[1]
        assert (root / "run/usbdev-sim/nodes" / node / "formats").read_bytes() == old_layout
