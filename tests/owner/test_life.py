# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What each page that is open is sent, whatever happens on the host."""

from __future__ import annotations

import asyncio
import json
import sys
from pathlib import Path

import pytest

HOST = Path(__file__).resolve().parents[2] / "host"
sys.path[:0] = [str(HOST / "owner"), str(HOST / "services")]
from ownerlib.live import SIGN_SECONDS, Live
from ownerlib.sessions import IDLE_SECONDS, Sessions

MOST_SECONDS = 4  # a page waits for two and a half times as long, so that one that is late does not matter


class Clock:
    """Goes on only when somebody waits, and ends the waiting at the end of its time."""

    def __init__(self, end: float) -> None:
        self.now = 0.0
        self._end = end

    def time(self) -> float:
        return self.now

    async def pause(self, seconds: float) -> None:
        self.now += seconds
        if self.now > self._end:
            raise asyncio.CancelledError


class Page:
    def __init__(self, session_id: str, clock: Clock) -> None:
        self.session_id = session_id
        self.got: list[tuple[float, object]] = []
        self.dropped: list[float] = []
        self._clock = clock

    def send(self, text: str) -> None:
        self.got.append((self._clock.now, json.loads(text)))

    def drop(self) -> None:
        self.dropped.append(self._clock.now)


def open_for(seconds: float) -> Page:
    """A page that nobody uses, and on whose host nothing happens."""
    clock = Clock(seconds)
    sessions = Sessions(clock=clock.time)
    live = Live(sessions)
    page = Page(sessions.begin("ann", None), clock)
    live.add(page)
    with pytest.raises(asyncio.CancelledError):
        asyncio.run(live.show_life(clock.pause))
    return page


def test_a_sign_of_life_comes_at_least_as_often_as_it_says() -> None:
    assert 1 <= SIGN_SECONDS <= MOST_SECONDS
    page = open_for(5 * SIGN_SECONDS)
    assert page.got == [(count * SIGN_SECONDS, {"section": "alive", "value": SIGN_SECONDS}) for count in range(1, 6)]
    assert not page.dropped


def test_a_page_whose_session_has_ended_gets_none() -> None:
    page = open_for(IDLE_SECONDS + SIGN_SECONDS)
    assert page.got[-1][0] < IDLE_SECONDS
    assert page.dropped[0] <= IDLE_SECONDS + SIGN_SECONDS
