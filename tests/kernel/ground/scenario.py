# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A scenario that is written once: it runs in the sandbox, then in the guest, and both must have come to the same."""

from __future__ import annotations

import time
from collections.abc import Callable, Iterator
from contextlib import contextmanager

from ground.ground import PAUSE, Ground
from ground.grounds import RealGround, SimulatedGround
from ground.guest import Guest

ON_ITS_WAY = 60
Steps = Callable[..., None]
Seen = Callable[[Ground], object]


def on_both_grounds(topology: str = "three-controllers", seen: Seen = Ground.record) -> Callable[[Steps], Callable[[Guest], None]]:
    """`seen` is what must be the same on both."""

    def decorate(steps: Steps) -> Callable[[Guest], None]:
        def test(guest: Guest) -> None:
            with ended(SimulatedGround(topology)) as simulated, ended(RealGround(guest).reset()) as real:
                for ground in (simulated, real):
                    ground.use_light_encoder()
                    steps(ground)
                compare(simulated, real, seen)

        test.__name__, test.__doc__ = steps.__name__, steps.__doc__
        return test

    return decorate


@contextmanager
def ended(ground: SimulatedGround | RealGround) -> Iterator[SimulatedGround | RealGround]:
    try:
        yield ground
    finally:
        ground.end()


def compare(simulated: Ground, real: Ground, seen: Seen) -> None:
    """Waits for what is still on its way: a notification is printed after the call that sent it."""
    patience = time.monotonic() + ON_ITS_WAY
    while seen(simulated) != seen(real) and time.monotonic() < patience:
        time.sleep(PAUSE)
    assert seen(real) == seen(simulated)
