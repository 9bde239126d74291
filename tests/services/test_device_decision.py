# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The rules of the device manager, with made-up devices: what it reports to the library, and in which order."""

from __future__ import annotations

import random
from dataclasses import replace
from itertools import count

import pytest
from conftest import seed
from devicelib import decision
from devicelib.world import Card, Node, UsbDevice, World

CAMERA = Node(0, 0, "HD Webcam", born=10)
METADATA = Node(1, 0, "HD Webcam", born=11, captures=False)
MICROPHONE = Card(1, "HD Webcam", born=12)
WEBCAM = UsbDevice((CAMERA, METADATA), (MICROPHONE,))
INFRARED = Node(2, 2, "IR Camera", born=13)
TWO_FUNCTIONS = UsbDevice((INFRARED, CAMERA, METADATA))
HEADSET = UsbDevice((), (Card(2, "Headset", born=5),), has_video=False)


class Library:
    """What the library is told by a device manager that looks at one world after the other."""

    def __init__(self, world: World = {}) -> None:
        self.history = decision.all_of(world)

    def sees(self, world: World) -> list[str]:
        """Returns the calls until the library knows this world."""
        calls = []
        while call := decision.next_call(self.history, world):
            calls.append(shown(call))
            assert len(calls) < 100
            self.history = decision.after(self.history, call)
        return calls


def shown(call: decision.Call) -> str:
    return f"{'plug' if call.plugged else 'unplug'} {call.slot} {call.kind.value} {call.device.number}"


def reborn(device: UsbDevice, born: int) -> UsbDevice:
    """The same device, back in a port with the same numbers."""
    nodes = tuple(replace(node, born=born) for node in device.nodes)
    return replace(device, nodes=nodes, cards=tuple(replace(card, born=born) for card in device.cards))


class TestACameraThatIsPluggedIn:
    def test_is_reported_once_with_its_capture_node_and_before_its_card(self) -> None:
        library = Library()
        assert library.sees({"3-1": WEBCAM}) == ["plug 3-1 camera 0", "plug 3-1 card 1"]
        assert library.sees({"3-1": WEBCAM}) == []

    def test_waits_until_udev_is_ready_with_all_its_nodes(self) -> None:
        library = Library()
        assert library.sees({"3-1": UsbDevice((INFRARED,), is_settled=False)}) == []
        assert library.sees({"3-1": TWO_FUNCTIONS}) == ["plug 3-1 camera 0"]

    def test_is_not_reported_if_it_has_metadata_only(self) -> None:
        assert Library().sees({"3-1": UsbDevice((METADATA,))}) == []

    def test_keeps_its_microphone_waiting_that_came_first(self) -> None:
        library = Library()
        assert library.sees({"3-1": UsbDevice((), (MICROPHONE,))}) == []
        assert library.sees({"3-1": WEBCAM}) == ["plug 3-1 camera 0", "plug 3-1 card 1"]

    def test_is_reported_again_when_there_is_a_channel_for_it_and_no_other_one_is(self) -> None:
        library = Library({"1-1": WEBCAM, "3-1": WEBCAM})
        library.history = decision.without_cameras(library.history, {"3-1", "5-1"})
        assert library.sees({"1-1": WEBCAM, "3-1": WEBCAM}) == ["plug 3-1 camera 0"]

    def test_gets_its_turn_by_age(self) -> None:
        old, new = UsbDevice((replace(CAMERA, number=8, born=1),)), UsbDevice((replace(CAMERA, born=2),))
        assert Library().sees({"1-1": new, "3-1": old}) == ["plug 3-1 camera 8", "plug 1-1 camera 0"]


class TestACameraThatIsUnplugged:
    def test_is_reported_once_and_before_its_card(self) -> None:
        library = Library({"3-1": WEBCAM})
        assert library.sees({}) == ["unplug 3-1 camera 0", "unplug 3-1 card 1"]
        assert library.sees({}) == []

    def test_comes_before_its_card_whose_event_came_first(self) -> None:
        library = Library({"3-1": WEBCAM})
        assert library.sees({"3-1": replace(WEBCAM, cards=())}) == []
        assert library.sees({}) == ["unplug 3-1 camera 0", "unplug 3-1 card 1"]

    def test_leaves_the_ports_before_others_are_plugged_in(self) -> None:
        library = Library({"3-1": WEBCAM})
        assert library.sees({"3-2": WEBCAM}) == [
            "unplug 3-1 camera 0", "unplug 3-1 card 1", "plug 3-2 camera 0", "plug 3-2 card 1"]

    def test_is_reported_with_all_others_on_its_hub(self) -> None:
        world = {f"3-1.{port}": UsbDevice((replace(CAMERA, number=2 * port, born=port),)) for port in (1, 2, 3)}
        assert Library(world).sees({}) == [f"unplug 3-1.{port} camera {2 * port}" for port in (1, 2, 3)]


class TestACameraThatWasAwayBetweenTwoLooks:
    def test_is_removed_and_plugged_in_even_with_the_same_numbers(self) -> None:
        library = Library({"3-1": WEBCAM})
        assert library.sees({"3-1": reborn(WEBCAM, 20)}) == [
            "unplug 3-1 camera 0", "unplug 3-1 card 1", "plug 3-1 camera 0", "plug 3-1 card 1"]

    def test_is_another_one_in_the_same_port(self) -> None:
        other = UsbDevice((Node(4, 0, "Other", born=30),))
        assert Library({"3-1": UsbDevice((CAMERA,))}).sees({"3-1": other}) == ["unplug 3-1 camera 0", "plug 3-1 camera 4"]


class TestADriver:
    def test_that_is_unbound_and_bound_takes_the_camera_and_brings_it_back_without_its_card(self) -> None:
        library = Library({"3-1": WEBCAM})
        assert library.sees({"3-1": replace(WEBCAM, nodes=())}) == ["unplug 3-1 camera 0"]
        assert library.sees({"3-1": replace(WEBCAM, nodes=reborn(WEBCAM, 20).nodes)}) == ["plug 3-1 camera 0"]

    def test_of_the_sound_alone_leaves_the_camera(self) -> None:
        library = Library({"3-1": WEBCAM})
        assert library.sees({"3-1": replace(WEBCAM, cards=())}) == []
        assert library.sees({"3-1": replace(WEBCAM, cards=reborn(WEBCAM, 20).cards)}) == ["plug 3-1 card 1"]


class TestAnInfraredCamera:
    def test_is_reported_with_its_first_function_whichever_is_ready_first(self) -> None:
        assert Library().sees({"3-1": TWO_FUNCTIONS}) == ["plug 3-1 camera 0"]

    def test_gets_its_first_function_back_after_that_was_unbound(self) -> None:
        library = Library({"3-1": TWO_FUNCTIONS})
        assert library.sees({"3-1": UsbDevice((INFRARED,))}) == ["unplug 3-1 camera 0", "plug 3-1 camera 2"]
        assert library.sees({"3-1": TWO_FUNCTIONS}) == ["unplug 3-1 camera 2", "plug 3-1 camera 0"]

    def test_stays_while_udev_is_busy_with_its_second_function(self) -> None:
        busy = UsbDevice((CAMERA, METADATA), is_settled=False)
        assert Library({"3-1": TWO_FUNCTIONS}).sees({"3-1": busy}) == []


class TestASoundCardWithoutCamera:
    def test_is_reported_at_once(self) -> None:
        library = Library()
        assert library.sees({"1-2": HEADSET}) == ["plug 1-2 card 2"]
        assert library.sees({}) == ["unplug 1-2 card 2"]

    def test_goes_alone_if_the_device_has_two(self) -> None:
        other = Card(3, "Headset", born=6)
        library = Library({"1-2": replace(HEADSET, cards=(*HEADSET.cards, other))})
        assert library.sees({"1-2": HEADSET}) == ["unplug 1-2 card 3"]
        assert library.sees({}) == ["unplug 1-2 card 2"]


class TestAfterASynchronisation:
    def test_nothing_is_reported_that_was_there_before(self) -> None:
        assert Library({"3-1": WEBCAM, "1-2": HEADSET}).sees({"3-1": WEBCAM, "1-2": HEADSET}) == []

    def test_a_camera_is_reported_that_udev_was_not_ready_with(self) -> None:
        library = Library({"3-1": replace(WEBCAM, nodes=(CAMERA,), is_settled=False)})
        assert library.sees({"3-1": WEBCAM}) == ["plug 3-1 camera 0", "plug 3-1 card 1"]

    def test_a_camera_is_removed_that_went_meanwhile(self) -> None:
        assert Library({"3-1": UsbDevice((CAMERA,))}).sees({}) == ["unplug 3-1 camera 0"]

    @pytest.mark.parametrize("numbers", [(10, 11), (12, 13), (9, 10)])  # of video9 and video10 the latter is listed first
    def test_a_camera_with_a_node_from_10_on_is_plugged_once_more(self, numbers: tuple[int, int]) -> None:
        first, second = numbers
        device = UsbDevice((replace(CAMERA, number=first), replace(METADATA, number=second)))
        corrections = decision.corrections({"3-1": device}, {"3-1": ["HD Webcam"]})
        assert list(map(shown, corrections)) == [f"plug 3-1 camera {first}"]

    def test_a_camera_that_the_scan_read_right_is_left_alone(self) -> None:
        assert decision.corrections({"3-1": WEBCAM}, {"3-1": ["HD Webcam"]}) == []

    def test_a_camera_that_the_scan_could_not_read_is_plugged(self) -> None:
        device = UsbDevice((replace(CAMERA, number=14),))
        assert list(map(shown, decision.corrections({"3-1": device}, {}))) == ["plug 3-1 camera 14"]

    def test_a_camera_that_no_channel_has_is_plugged(self) -> None:
        assert list(map(shown, decision.corrections({"3-1": WEBCAM}, {}))) == ["plug 3-1 camera 0"]

    def test_a_camera_whose_second_function_has_the_same_name_is_plugged_once_more(self) -> None:
        corrections = decision.corrections({"3-1": TWO_FUNCTIONS}, {"3-1": ["HD Webcam"]})
        assert list(map(shown, corrections)) == ["plug 3-1 camera 0"]

    def test_a_port_that_got_the_name_of_another_camera_is_emptied_before(self) -> None:
        device = UsbDevice((replace(CAMERA, number=10),))
        assert list(map(shown, decision.corrections({"3-1": device}, {"3-1": ["Other"]}))) == [
            "unplug 3-1 camera 10", "plug 3-1 camera 10"]

    def test_the_second_function_is_not_a_camera_of_its_own(self) -> None:
        corrections = decision.corrections({"3-1": TWO_FUNCTIONS}, {"3-1": ["HD Webcam", "IR Camera"]})
        assert list(map(shown, corrections)) == 2 * ["unplug 3-1 camera 0"] + ["plug 3-1 camera 0"]

    def test_a_camera_that_udev_is_not_ready_with_waits(self) -> None:
        assert decision.corrections({"3-1": replace(TWO_FUNCTIONS, is_settled=False)}, {}) == []


def test_whatever_happens_the_library_knows_in_the_end_what_is_plugged_in_and_no_card_goes_before_its_camera() -> None:
    chance, library, born, attached = random.Random(seed()), Library(), count(1), dict[str, int]()
    world: dict[str, UsbDevice] = {}
    for _ in range(2000):
        slot = chance.choice(["1-1", "3-1", "3-1.1", "3-1.2"])
        device = reborn(chance.choice([WEBCAM, TWO_FUNCTIONS, HEADSET]), next(born))
        device = replace(device, is_settled=chance.random() < 0.8, cards=chance.choice([device.cards, ()]))
        world = {**world, slot: device} if chance.random() < 0.6 else {k: v for k, v in world.items() if k != slot}
        for call in library.sees(world):
            action, port, kind, number = call.split()
            if kind == "camera":
                assert (port in attached) == (action == "unplug")
                attached = {**attached, port: int(number)} if action == "plug" else {k: v for k, v in attached.items() if k != port}
            elif action == "unplug":
                assert port not in attached
    settled = {slot: replace(device, is_settled=True) for slot, device in world.items()}
    library.sees(settled)
    cameras = {slot: device.camera() for slot, device in settled.items()}
    assert {slot: known.camera for slot, known in library.history.items() if known.camera} == {
        slot: camera for slot, camera in cameras.items() if camera}
