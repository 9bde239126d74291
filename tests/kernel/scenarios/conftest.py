# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the tests on the real kernel share: the guest, which boots once for all of them, and what is plugged into it."""

from __future__ import annotations

import sys
from collections.abc import Callable, Iterator
from pathlib import Path

import pytest

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))
from ground.ground import Port  # noqa: E402
from ground.guest import Guest  # noqa: E402
from ground.plugging import Hub, Plugged  # noqa: E402
from ground.root import GuestRoot, packages  # noqa: E402


@pytest.fixture(scope="session")
def root() -> GuestRoot:
    return GuestRoot(packages())


@pytest.fixture(scope="session")
def guest(root: GuestRoot) -> Iterator[Guest]:
    machine = Guest(root)
    machine.boot()
    yield machine
    machine.stop()


@pytest.fixture
def plug(guest: Guest) -> Iterator[Callable[..., Plugged]]:
    """Plugs cameras in; at the end all of them are out again."""
    cameras: list[Plugged] = []

    def plug_in(camera: str, port: Port, *options: str, **changes: str | int) -> Plugged:
        cameras.append(Plugged(guest, camera, port, *options, **changes))
        return cameras[-1]

    yield plug_in
    for it in cameras:
        it.unplug()
    for it in cameras:
        it.wait_until_gone()


@pytest.fixture
def hub(guest: Guest) -> Iterator[Callable[[Port], Hub]]:
    hubs: list[Hub] = []

    def plug_in(port: Port) -> Hub:
        hubs.append(Hub(guest, port))
        return hubs[-1]

    yield plug_in
    for it in hubs:
        it.unplug()
