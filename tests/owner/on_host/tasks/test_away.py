# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the owner of cameras sees of a host that does not answer."""

from __future__ import annotations

import asyncio
from collections.abc import Iterator
from pathlib import Path
from signal import SIGCONT, SIGSTOP

import pytest
from browser import Owner
from client import HOST, PASSWORD, USER, Client
from conftest import Service, run
from open_page import open_page


def test_go_on_where_one_was_when_the_host_is_back(door: Owner, server: Service) -> None:
    """With what was chosen and not saved, and in a dialog."""
    door.press("Door")
    door.choose("Size", "640 × 480")
    door.turn("Use its USB port")
    server.end()
    assert door.sees("The host does not answer; the page tries again.")
    server.start()
    assert door.is_told("The host answers again.")
    assert door.sees("Not saved yet.", "Switch the port of “Door” off?")
    door.press("Switch off")
    assert door.sees("Its USB port is switched off.", "Not saved yet.")
    door.complaints()


def test_sign_in_again_when_the_hosts_users_have_changed(door: Owner, server: Service) -> None:
    run(f"echo '{PASSWORD}' | login-users add {USER}")
    assert door.sees("Your session has ended; sign in again.")
    door.complaints()
    door.sign_in(USER, PASSWORD)
    assert door.sees_on_card(0, "Door")


# The server, with a sign of life each second.
LIVELY = f"""#!/usr/bin/python3 -B
import sys

sys.path[:0] = {[str(HOST / folder) for folder in ("owner", "share", "services")]}
from ownerlib import live, service

live.SIGN_SECONDS = 1
sys.exit(service.main([]))
"""


@pytest.fixture
def lively(server: Service, tmp_path: Path) -> Iterator[Service]:
    server.end()
    program = tmp_path / "lively"
    program.write_text(LIVELY)
    program.chmod(0o700)
    service = Service(str(program), tmp_path)
    service.start()
    yield service
    service.end()
    server.start()


def test_hear_from_a_host_on_which_nothing_happens(lively: Service) -> None:
    async def story() -> None:
        client = Client()
        client.sign_in()
        page = await open_page(client)
        signs = 0
        while signs < 3:
            message = await page.any_message()
            assert message
            signs += message["section"] == "alive"

    asyncio.run(story())


def test_wait_for_a_host_that_hangs(lively: Service, door: Owner) -> None:
    assert door.sees_on_card(0, "Begins")
    lively.send(SIGSTOP)
    assert door.sees("The host does not answer; the page tries again.", "Which cameras stream now is not known.")
    assert door.sees_on_card(0, "Door", "Not known now")
    lively.send(SIGCONT)
    assert door.sees_no_more("The host does not answer; the page tries again.")
    assert door.sees_on_card(0, "Begins")
