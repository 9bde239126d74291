# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the device manager reads from udev."""

from __future__ import annotations

import errno
import select

import pytest
from devicelib.udev import Udev
from devicelib.world import Card, Node, UsbDevice
from mocked_udev import MockedUdev


@pytest.fixture
def mocked() -> MockedUdev:
    return MockedUdev()


@pytest.fixture
def udev(mocked: MockedUdev) -> Udev:
    return Udev(str.strip)


def has_event(udev: Udev) -> bool:
    return bool(select.select([udev.fileno()], [], [], 0)[0])


class TestALook:
    def test_shows_a_camera_with_its_nodes_and_its_card_in_its_port(self, mocked: MockedUdev, udev: Udev) -> None:
        camera = mocked.plug("3-1.2")
        mocked.node(camera, 0, interface=10)
        mocked.node(camera, 1, interface=10, capabilities=":")
        mocked.card(camera, 3)
        name = "HD Webcam: HD Webcam"
        assert udev.look() == {
            "3-1.2": UsbDevice((Node(0, 10, name, 1), Node(1, 10, name, 2, captures=False)), (Card(3, "HD Webcam", 3),))}

    def test_shows_that_udev_is_not_ready_with_a_node(self, mocked: MockedUdev, udev: Udev) -> None:
        camera = mocked.plug("3-1")
        node = mocked.node(camera, 0, ready=False)
        assert udev.look() == {"3-1": UsbDevice((), is_settled=False)}
        mocked.get_ready(node)
        assert udev.look()["3-1"].is_settled

    def test_shows_no_card_before_its_own_nodes_are_there(self, mocked: MockedUdev, udev: Udev) -> None:
        mocked.card(mocked.plug("3-1"), 1, complete=False)
        mocked.card(mocked.plug("3-2"), 2, ready=False)
        assert [device.cards for device in udev.look().values()] == [(), ()]

    def test_tells_a_headset_from_a_microphone_whose_camera_is_yet_to_come(self, mocked: MockedUdev, udev: Udev) -> None:
        mocked.card(mocked.plug("1-1", ":010100:010200:", product=None), 1)
        mocked.card(mocked.plug("1-2"), 2)
        assert udev.look() == {
            "1-1": UsbDevice((), (Card(1, "", 1),), has_video=False), "1-2": UsbDevice((), (Card(2, "HD Webcam", 2),))}

    def test_leaves_out_devices_of_other_drivers_and_those_that_are_not_on_usb(self, mocked: MockedUdev, udev: Udev) -> None:
        grabber = mocked.plug("3-1")
        mocked.node(grabber, 0, driver="em28xx")
        mocked.card(grabber, 1, driver="em28xx")
        mocked.node(None, 7)
        assert udev.look() == {"3-1": UsbDevice()}

    def test_leaves_out_other_nodes_of_the_same_subsystems(self, mocked: MockedUdev, udev: Udev) -> None:
        camera = mocked.plug("3-1")
        mocked.appear(camera, "v4l-subdev0", [], [])
        mocked.appear(camera, "controlC1", [], [])
        assert udev.look() == {"3-1": UsbDevice()}

    def test_shows_cameras_without_a_node_and_no_other_devices(self, mocked: MockedUdev, udev: Udev) -> None:
        mocked.plug("3-1")
        mocked.plug("3-2", ":030101:")
        mocked.plug("3-3", driver="usbip-host")
        assert udev.look() == {"3-1": UsbDevice()}

    @pytest.mark.parametrize("name", ["Kamera f\u00fcr B\u00e4r", "\u30ab\u30e1\u30e9"])
    def test_keeps_a_name_in_any_script(self, mocked: MockedUdev, udev: Udev, name: str) -> None:
        mocked.node(mocked.plug("3-1"), 0, name=name)
        assert [node.name for node in udev.look()["3-1"].nodes] == [name]

    def test_trims_a_name_as_the_library_does(self, mocked: MockedUdev, udev: Udev) -> None:
        mocked.node(mocked.plug("3-1"), 0, name=" Camera ")
        assert [node.name for node in udev.look()["3-1"].nodes] == ["Camera"]

    def test_shows_another_device_when_one_comes_back_with_the_same_number(self, mocked: MockedUdev, udev: Udev) -> None:
        camera = mocked.plug("3-1")
        node = mocked.node(camera, 0)
        before = udev.look()
        mocked.remove(node)
        mocked.node(camera, 0)
        assert udev.look() != before


class TestAnEvent:
    def test_comes_with_a_node_and_with_its_removal_and_is_taken(self, mocked: MockedUdev, udev: Udev) -> None:
        camera = mocked.plug("3-1")
        udev.take_events()
        assert not has_event(udev)
        node = mocked.node(camera, 0)
        assert has_event(udev)
        udev.take_events()
        assert not has_event(udev)
        mocked.remove(node)
        assert has_event(udev)
        udev.take_events()
        assert udev.look() == {"3-1": UsbDevice()}

    def test_comes_with_a_camera_that_has_no_node(self, mocked: MockedUdev, udev: Udev) -> None:
        camera = mocked.plug("3-1")
        assert has_event(udev)
        mocked.get_ready(camera)
        assert udev.look() == {"3-1": UsbDevice(born=1)}

    def test_may_be_lost_when_there_are_too_many(self, udev: Udev, monkeypatch: pytest.MonkeyPatch) -> None:
        def overflow(**_: object) -> None:
            raise OSError(errno.ENOBUFS, "No buffer space available")

        monkeypatch.setattr(udev._monitor, "poll", overflow)
        udev.take_events()
