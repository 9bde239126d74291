# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Whatever a tool of the host prints or does, a call ends as it is described, and no shell runs what a tool printed."""

from __future__ import annotations

from pathlib import Path

import meeting
import pytest
from conftest import Figures
from row import Row, named
from tools import TABLE

# What a shell would make that runs what the tools print.
HACKED = Path("/tmp/hacked")

pytestmark = pytest.mark.usefixtures("one_camera")


@pytest.mark.parametrize(**named(TABLE))
def test_a_tool(row: Row, figures: Figures) -> None:
    HACKED.unlink(missing_ok=True)
    row.neighbour.begin()
    try:
        answer = meeting.meet(row, row.neighbour, "3-1")
        figures.add(answer.seconds, answer.megabytes)
    finally:
        row.neighbour.end()
    assert not HACKED.exists()
