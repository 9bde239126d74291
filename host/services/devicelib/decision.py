# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Which call of the library is the next one. Reads and calls nothing itself: it compares what was reported to the library
with what is plugged in. So of a storm of events only the last state counts."""

from __future__ import annotations

from collections.abc import Iterable, Iterator, Mapping, Sequence, Set
from dataclasses import dataclass, replace
from enum import Enum
from typing import TypeVar

from devicelib.world import Card, Node, World


Thing = TypeVar("Thing", Node, Card)


class Kind(Enum):
    CAMERA = "camera"
    CARD = "card"


@dataclass(frozen=True)
class Call:
    """One call of the library's hotplug handler."""

    kind: Kind
    slot: str
    device: Node | Card
    plugged: bool


@dataclass(frozen=True)
class Reported:
    """What the library knows of a port from this process."""

    camera: Node | None = None
    cards: tuple[Card, ...] = ()


History = Mapping[str, Reported]
NOTHING = Reported()


def all_of(world: World) -> History:
    """Returns the history after a synchronisation, which has reported everything that was plugged in before. What udev
    was not ready with is reported once more, because the scan may have come too early for it."""
    return {slot: Reported(device.camera(), device.cards) for slot, device in world.items() if device.is_settled}


def next_call(history: History, world: World) -> Call | None:
    """Returns the call to make now; None if the library knows everything."""
    return next(_calls(history, world), None)


def after(history: History, call: Call) -> History:
    """Returns the history after the call, whatever came of it: each device is reported once."""
    known = history.get(call.slot, NOTHING)
    if isinstance(call.device, Node):
        known = replace(known, camera=call.device if call.plugged else None)
    elif call.plugged:
        known = replace(known, cards=(*known.cards, call.device))
    else:
        known = replace(known, cards=tuple(it for it in known.cards if it != call.device))
    return {**history, call.slot: known}


def without_cameras(history: History, slots: Set[str]) -> History:
    """Returns the history in which the cameras of these ports are to be plugged in once more."""
    return {slot: replace(known, camera=None) if slot in slots else known for slot, known in history.items()}


def _calls(history: History, world: World) -> Iterator[Call]:
    """Returns the calls in their order: removals first, because ports and numbers are given out again."""
    wanted = {slot: _camera(slot, history, world) for slot in [*history, *world]}
    for slot, known in history.items():
        if known.camera and known.camera != wanted[slot]:
            yield Call(Kind.CAMERA, slot, known.camera, False)
    for slot, known in history.items():
        if known.camera is None:  # before, a card would take the camera's channel with it
            gone = set(known.cards) - set(_cards(slot, world))
            yield from (Call(Kind.CARD, slot, card, False) for card in _by_age(gone))
    cameras = {camera: slot for slot, camera in wanted.items() if camera and not history.get(slot, NOTHING).camera}
    for camera in _by_age(cameras):
        yield Call(Kind.CAMERA, cameras[camera], camera, True)
    cards = {card: slot for slot in world for card in _new_cards(slot, history, world)}
    for card in _by_age(cards):
        yield Call(Kind.CARD, cards[card], card, True)


def _camera(slot: str, history: History, world: World) -> Node | None:
    """Returns the camera that the library should know. While udev is busy with a device, what is known of it stays if it
    is there: a node of its first function may still come."""
    if slot not in world:
        return None
    device = world[slot]
    if device.is_settled:
        return device.camera()
    known = history.get(slot, NOTHING).camera
    return known if known in device.nodes else None


def _cards(slot: str, world: World) -> tuple[Card, ...]:
    return world[slot].cards if slot in world else ()


def _new_cards(slot: str, history: History, world: World) -> Iterator[Card]:
    """Returns the cards to report. A camera's microphone waits for the camera, as in the library's own scan."""
    known = history.get(slot, NOTHING)
    if known.camera or not world[slot].has_video:
        yield from (card for card in world[slot].cards if card not in known.cards)


def _by_age(devices: Iterable[Thing]) -> list[Thing]:
    return sorted(devices, key=lambda it: (it.born, it.number))


def corrections(world: World, stored: Mapping[str, Sequence[str]]) -> list[Call]:
    """Returns the calls that correct what the library's scan reads wrongly: it reads the last digit of a node's number
    only, and takes a second function for another camera. `stored` are the names of the attached cameras in each port."""
    return [call for slot in world for call in _corrected(slot, world, stored.get(slot, ()))]


def _corrected(slot: str, world: World, names: Sequence[str]) -> list[Call]:
    camera = world[slot].camera()
    if camera is None or not world[slot].is_settled:
        return []
    if world[slot].is_scanned_right() and list(names) == [camera.name]:
        return []
    # A channel with the right name is found again; with any other one the port is emptied before.
    removals = [] if list(names) == [camera.name] else [Call(Kind.CAMERA, slot, camera, False)] * len(names)
    return [*removals, Call(Kind.CAMERA, slot, camera, True)]
