# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The situations, and what a program shows in them. Each camera is recognised by its pictures, whose tag is 1 or 2."""

from __future__ import annotations

import time
from collections.abc import Callable, Iterator, Sequence
from contextlib import contextmanager

from ground.ground import Port
from ground.guest import Guest
from ground.plugging import Plugged

from comparison.programs import Program

A, B = Port("xhci", "1"), Port("xhci", "2")
FIRST, SECOND = "nameless-webcam", "hd-pro-webcam"
GREEDY = ("--isochronous", "--burst", "3", "--every-microframe")
PATIENCE = 90
AWAY = 10


@contextmanager
def plugged(guest: Guest, *cameras: tuple[str, Port, str], options: Sequence[str] = ()) -> Iterator[list[Plugged]]:
    """Cameras with their ports and tags, in this order."""
    there = []
    try:
        for camera, port, tag in cameras:
            there.append(Plugged(guest, camera, port, "--tag", tag, *options))
            there[-1].node()
        yield there
    finally:
        for it in there:
            it.unplug()
        for it in there:
            it.wait_until_gone()


def wait_for(condition: Callable[[], bool]) -> float | None:
    """Returns after how many seconds it is true."""
    began = time.monotonic()
    while not condition():
        if time.monotonic() - began > PATIENCE:
            return None
        time.sleep(0.2)
    return time.monotonic() - began


def streams_anew(program: Program, stream: int) -> float | None:
    """Waits for pictures of a camera that are not the one that is shown now."""
    before = program.seen(stream)

    def shows_another() -> bool:
        found = program.seen(stream)
        return isinstance(found, tuple) and found != before

    return wait_for(shows_another)


def shown(program: Program, count: int) -> str:
    """Says for each stream what it shows, after it had time to begin."""
    words = []
    for stream in range(count):
        streams_anew(program, stream)
        found = program.seen(stream)
        words.append(f"camera {found[1]}" if isinstance(found, tuple) else found)
    return ", ".join(f"stream {number}: {word}" for number, word in enumerate(words, 1))


def seconds(waited: float | None) -> str:
    return f"no new picture within {PATIENCE} s" if waited is None else f"new pictures after {waited:.0f} s"


def replugged(guest: Guest, program: Program) -> str:
    """A cable that slips: unplugged, and after a while in the same port again."""
    with plugged(guest, (FIRST, A, "1")) as (camera,):
        program.set_up([camera.node()])
        program.start()
        if streams_anew(program, 0) is None:
            return f"never began: {program.complaint()}"
        camera.unplug()
        camera.wait_until_gone()
        time.sleep(AWAY)
        away = program.seen(0)
        with plugged(guest, (FIRST, A, "1")):
            back = streams_anew(program, 0)
            complaint = "" if back is not None else f"; says: {program.complaint()}"
        program.stop()
    return f"away: {'its last picture' if isinstance(away, tuple) else away}; back: {seconds(back)}{complaint}"


def without_bandwidth(guest: Guest, program: Program) -> str:
    """Two cameras of which each reserves more than half of what their controller has; then the one that has it goes."""
    both = ((FIRST, Port("ehci", "1"), "1"), (SECOND, Port("ehci", "2"), "2"))
    with plugged(guest, *both, options=GREEDY) as cameras:
        program.set_up([it.node() for it in cameras])
        program.start()
        wait_for(lambda: any(isinstance(program.seen(it), tuple) for it in (0, 1)))
        one = 0 if isinstance(program.seen(0), tuple) else 1
        waited = streams_anew(program, 1 - one)
        other = program.seen(1 - one) if waited is None else "its camera too"
        said = program.complaint()
        cameras[one].unplug()
        room = streams_anew(program, 1 - one)
        program.stop()
    return f"one stream shows its camera, the other {other}; says: {said}; with room: {seconds(room)}"
