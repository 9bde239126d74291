# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Whatever a login, camera or streaming server or the manager does, a call ends as it is described."""

from __future__ import annotations

import meeting
import pytest
from conftest import Figures
from row import Row, named
from servers import TABLE

LOGIN_PORT, STREAMING_PORT, MANAGER_PORT = 58080, 10170, 10171
PORTS = {"accept a user": LOGIN_PORT, "signal": STREAMING_PORT, "notify": MANAGER_PORT}
# What a call gets in place of the port.
WORDS = {"accept a user": "ann", "notify": "500", "open a connection": "127.0.0.1"}

pytestmark = pytest.mark.usefixtures("one_camera")


@pytest.mark.parametrize(**named(TABLE))
def test_a_server(row: Row, figures: Figures) -> None:
    port = row.neighbour.begin(PORTS.get(row.meets, 0))
    try:
        answer = meeting.meet(row, row.neighbour, WORDS.get(row.meets, str(port)))
        figures.add(answer.seconds, answer.megabytes)
        if row.outcome.result is None:
            assert b"ERROR reading from socket: Connection reset by peer" in answer.messages
    finally:
        row.neighbour.end()
