"""Whatever a tool of the host prints or does, a call ends as it is described, and no shell runs what a tool printed."""

from __future__ import annotations

from pathlib import Path

import meeting
import pytest
from conftest import Figures
from row import Row, named
from tools import TABLE

pytestmark = pytest.mark.usefixtures("one_camera")


@pytest.mark.parametrize(**named(TABLE))
def test_a_tool(row: Row, figures: Figures) -> None:
    row.neighbour.begin()
    try:
        answer = meeting.meet(row, row.neighbour, "3-1")
        figures.add(answer.seconds, answer.megabytes)
    finally:
        row.neighbour.end()
    assert not Path("/tmp/hacked").exists()
