# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The rules of plugging simulated cameras in and out: numbers, names and files."""

from __future__ import annotations

import pytest
from conftest import files_below
from simlib.attributes import AttributeList
from simlib.catalogue import camera_names, load_camera
from simlib.errors import SimError
from simlib.machine import Machine
from simlib.ports import parse_port
from simlib.topology import Topology


def test_nodes_get_the_lowest_free_numbers(pc):
    host, _ = pc
    host.plug("usb2-camera", "3-1")
    host.plug("pc-camera", "3-2")
    host.unplug("3-1")
    assert host.plug("h264-camera", "1-1").nodes == [0, 1, 4, 5]


def test_sound_cards_get_the_lowest_free_number(pc):
    host, _ = pc
    host.plug("hd-pro-webcam", "3-1")
    assert host.plug("hdmi-grabber", "3-2").card == 1
    host.unplug("3-1")
    assert host.plug("nameless-webcam", "3-3").card == 0


def test_usb_addresses_are_not_given_out_again_at_once(pc):
    host, _ = pc
    assert host.plug("usb2-camera", "3-1").address == 2
    host.unplug("3-1")
    assert host.plug("usb2-camera", "3-1").address == 3


def test_usb_addresses_start_again_after_the_last():
    machine = Machine(Topology("three-controllers"))
    camera, port = load_camera("usb2-camera"), parse_port("3-1")
    for _ in range(126):
        machine.plug(camera, port)
        machine.unplug(port)
    assert machine.plug(camera, port).address == 2


def test_the_name_file_ends_with_a_line_feed(pc):
    host, root = pc
    host.plug("pc-camera", "3-1")
    assert (root / "sys/class/video4linux/video0/name").read_bytes() == b"USB2.0 PC CAMERA\n"


def test_a_name_is_cut_at_31_bytes(pc):
    host, root = pc
    host.plug("infrared-camera", "3-1")
    assert (root / "sys/class/video4linux/video0/name").read_text() == "Integrated_Webcam_FHD: Integrat\n"


def test_a_name_of_another_driver_may_be_300_bytes_long(pc):
    host, root = pc
    host.plug("long-name-camera", "3-1")
    assert len((root / "sys/class/video4linux/video0/name").read_bytes()) == 300 + len("\n")


def test_some_cameras_have_no_node_for_metadata(pc):
    host, _ = pc
    assert host.plug("8mp-camera", "3-1").nodes == [0]
    assert host.plug("usb2-camera", "3-2").nodes == [1, 2]


def test_a_camera_without_a_product_text_is_named_after_its_ids(pc):
    host, root = pc
    host.plug("nameless-webcam", "3-1")
    assert (root / "sys/class/video4linux/video0/name").read_text() == "UVC Camera (046d:0825)\n"


def test_only_the_first_video_interface_has_nodes(pc):
    host, root = pc
    host.plug("usb2-camera", "3-1")
    driver = root / "sys/bus/usb/drivers/uvcvideo"
    assert sorted(path.name for path in (driver / "3-1:1.0/video4linux").iterdir()) == ["video0", "video1"]
    assert not (driver / "3-1:1.1/video4linux").exists()


def test_a_camera_with_its_microphone_first_has_the_picture_at_interface_2(pc):
    host, root = pc
    host.plug("microphone-first", "3-1")
    assert (root / "sys/bus/usb/drivers/uvcvideo/3-1:1.2/video4linux/video0").is_dir()
    assert (root / "sys/bus/usb/drivers/snd-usb-audio/3-1:1.0/sound/card0").is_dir()
    assert 'ATTRS{bInterfaceNumber}=="02"' in (root / "run/usbdev-sim/nodes/video0/walk").read_text()


def test_a_camera_with_two_functions_has_nodes_below_both_interfaces(pc):
    host, root = pc
    host.plug("pc-camera", "1-1")
    host.plug("colour-and-infrared", "3-1")
    driver = root / "sys/bus/usb/drivers/uvcvideo"
    found = {path.parent.parent.name: path.name for path in sorted(driver.glob("3-1:*/video4linux/*"), reverse=True)}
    assert found == {"3-1:1.0": "video2", "3-1:1.2": "video4"}
    assert {path.name for path in driver.glob("3-1:*")} == {"3-1:1.0", "3-1:1.1", "3-1:1.2", "3-1:1.3"}


def test_each_function_has_a_name_an_index_and_formats_of_its_own(pc):
    host, root = pc
    host.plug("colour-and-infrared", "3-1")
    nodes = [root / f"sys/class/video4linux/video{number}" for number in range(4)]
    assert [(node / "name").read_text() for node in nodes] == [
        *["Integrated Camera: Integrated C\n"] * 2,
        *["Integrated Camera: Integrated I\n"] * 2,
    ]
    assert [(node / "index").read_text() for node in nodes] == ["0\n", "1\n"] * 2
    answers = root / "run/usbdev-sim/nodes"
    assert "'MJPG'" in (answers / "video0/formats").read_text()
    assert "'GREY'" in (answers / "video2/formats").read_text()


def test_the_walk_of_the_second_function_passes_its_own_interface(pc):
    host, root = pc
    host.plug("colour-and-infrared", "3-1")
    node, interface, camera = (root / "run/usbdev-sim/nodes/video2/walk").read_text().split("looking at ")[1:4]
    assert 'ATTR{name}=="Integrated Camera: Integrated I"' in node and 'ATTR{index}=="0"' in node
    assert 'KERNELS=="3-1:1.2"' in interface and 'ATTRS{bInterfaceNumber}=="02"' in interface
    assert 'ATTRS{interface}=="Integrated I"' in interface and 'KERNELS=="3-1"' in camera


def test_a_microphone_is_described_for_the_audio_library(pc):
    host, root = pc
    host.plug("hd-pro-webcam", "3-1")
    folder = root / "run/usbdev-sim/cards/card0"
    facts = {path.name: path.read_text() for path in folder.iterdir()}
    assert facts == {
        "name": "HD Pro Webcam C920\n",
        "entry_count": "1\n",
        "channel_mode": "2\n",
        "channel_count": "2\n",
        "volume": "0\n",
    }


def test_the_metadata_node_lists_no_format(pc):
    host, root = pc
    host.plug("usb2-camera", "3-1")
    assert (root / "run/usbdev-sim/nodes/video1/formats").read_text() == "ioctl: VIDIOC_ENUM_FMT\n"


@pytest.mark.parametrize("camera", ["usb2-camera", "hd-pro-webcam", "h264-camera", "colour-and-infrared"])
def test_after_unplugging_only_the_loaded_drivers_remain(pc, camera):
    host, root = pc
    host.plug("hd-pro-webcam", "5-1")
    before = files_below(root)
    host.plug(camera, "3-1.2")
    host.unplug("3-1")
    assert files_below(root) == before


def test_unplugging_a_hub_unplugs_everything_on_it(pc):
    host, _ = pc
    host.plug("hd-usb-camera", "3-1.1")
    host.plug("hd-usb-camera", "3-1.2.3")
    host.plug("hd-usb-camera", "3-2")
    assert [plugged.port.slot for plugged in host.unplug("3-1")] == ["3-1.1", "3-1.2.3"]
    assert list(host.machine().cameras) == ["3-2"]


def test_a_hub_stays_when_its_cameras_go(pc):
    host, _ = pc
    host.plug("hd-usb-camera", "3-1.1")
    host.unplug("3-1.1")
    assert list(host.machine().hubs) == ["3-1"]


def test_the_walk_passes_every_hub_on_the_way(pc):
    host, root = pc
    host.plug("hd-usb-camera", "3-1.2.4")
    lines = (root / "run/usbdev-sim/nodes/video0/walk").read_text().splitlines()
    names = [line.split('"')[1] for line in lines if line.startswith("    KERNELS==")]
    assert names[:5] == ["3-1.2.4:1.0", "3-1.2.4", "3-1.2", "3-1", "usb3"]


def test_a_superspeed_camera_runs_slower_on_a_slower_bus(pc):
    host, root = pc
    host.plug("usb3-camera", "3-1")
    walk = (root / "run/usbdev-sim/nodes/video0/walk").read_text()
    block = walk.split("looking at parent device")[2]
    assert 'ATTRS{speed}=="480"' in block and 'ATTRS{version}==" 2.10"' in block


def test_the_walk_leaves_out_what_is_not_plain_ascii(tmp_path):
    file = tmp_path / "attributes.txt"
    file.write_text("SUBSYSTEMS=usb\nproduct=$product\nserial=$serial\n")
    block = AttributeList(file).block("/devices/3-1", {"product": "Caméra", "serial": 'a "quoted": one '})
    assert block.splitlines()[2:] == ['    SUBSYSTEMS=="usb"', '    ATTRS{serial}=="a "quoted": one "']


@pytest.mark.parametrize(
    ("camera", "port", "reason"),
    [
        ("no-such-camera", "3-1", "there is no camera"),
        ("../sim", "3-1", "there is no camera"),
        ("usb2-camera", "3", "is not a USB port"),
        ("usb2-camera", "3-0", "is not a USB port"),
        ("usb2-camera", "3-1:1.0", "is not a USB port"),
        ("usb2-camera", "3-1.1.1.1.1.1.1", "deeper than USB allows"),
        ("usb2-camera", "9-1", "no USB bus 9"),
        ("usb2-camera", "5-5", "has only 4 ports"),
        ("usb2-camera", "3-2.9", "a hub has only 8 ports"),
        ("usb2-camera", "4-1", "for superspeed devices"),
        ("usb3-camera", "4-1.1", "for superspeed devices"),
        ("usb2-camera", "1-1", "has the camera pc-camera"),
        ("usb2-camera", "1-1.1", "has the camera pc-camera"),
        ("usb2-camera", "1-2", "has a hub"),
    ],
)
def test_an_impossible_plug_is_refused_and_changes_nothing(pc, camera, port, reason):
    host, root = pc
    host.plug("pc-camera", "1-1")
    host.plug("pc-camera", "1-2.1")
    before = files_below(root)
    with pytest.raises(SimError, match=reason):
        host.plug(camera, port)
    assert files_below(root) == before and list(host.machine().cameras) == ["1-1", "1-2.1"]


def test_an_empty_port_cannot_be_unplugged(pc):
    host, _ = pc
    with pytest.raises(SimError, match="nothing is plugged in at 3-1"):
        host.unplug("3-1")


@pytest.mark.parametrize("name", camera_names())
def test_every_camera_of_the_collection_can_be_plugged(pc, name):
    host, root = pc
    camera = load_camera(name)
    host.plug(name, "4-1" if camera.speed == 5000 else "3-1")
    assert (root / "run/usbdev-sim/nodes/video0/formats").read_text().startswith("ioctl: VIDIOC_ENUM_FMT\n\tIndex ")
    assert f'"{camera.vendor_id}"' in (root / "run/usbdev-sim/nodes/video0/walk").read_text()
