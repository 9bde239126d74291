# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A host of which the tests are the only users: its neighbours are replaced by hostile ones."""

from __future__ import annotations

import os
import sys
from collections.abc import Iterator
from pathlib import Path

import pytest

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
REPOSITORY = HERE.parents[2]
sys.path[:0] = [str(HERE.parent), str(REPOSITORY / "host/share"), str(REPOSITORY / "host/services")]

from thoroughness import report  # noqa: E402

CONFIGURATION = Path("/etc/config/usbdev.conf")
ONE_CAMERA = """\
<velmora>
  <ch0>
    <exists>1</exists>
    <profile>0</profile>
    <usbslot>3-1</usbslot>
    <devname>Camera</devname>
    <video>
      <vnode>0</vnode>
    </video>
  </ch0>
</velmora>
"""


class Figures:
    """The most that a row took."""

    def __init__(self) -> None:
        self.rows, self.seconds, self.megabytes = 0, 0.0, 0.0

    def add(self, seconds: float, megabytes: float) -> None:
        self.rows += 1
        self.seconds, self.megabytes = max(self.seconds, seconds), max(self.megabytes, megabytes)


@pytest.fixture(scope="module")
def figures(request: pytest.FixtureRequest) -> Iterator[Figures]:
    """Reported when all rows of a table are done."""
    taken = Figures()
    yield taken
    table = request.module.__name__.removeprefix("test_")
    bounds = f"{taken.seconds:.1f} s and {taken.megabytes:.1f} MB at most"
    report(f"neighbours: {taken.rows} behaviours of {table}, {bounds}")


@pytest.fixture
def one_camera() -> Iterator[None]:
    """One camera in channel 0, which has profile 0."""
    CONFIGURATION.write_text(ONE_CAMERA)
    yield
    CONFIGURATION.unlink(missing_ok=True)
