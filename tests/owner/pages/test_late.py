# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What somebody looks at, or is about to press, stays where it is when the host answers late."""

from __future__ import annotations

from typing import Any

import pytest
from browser import Owner
from every_page import OTHERS, PAGES, WINDOWS, come_to
from standin import StandIn

LATE = 1.0  # seconds
MOST = 0.02  # of what browsers call the layout shift; from 0.1 they call it bad
# Keeps each time that something moved: how much, and what.
WATCH = """window.moves = [];
const place = ({ x, y, width, height }) => `${Math.round(x)},${Math.round(y)} ${Math.round(width)}x${Math.round(height)}`;
const moved = ({ node, previousRect, currentRect }) =>
  `${(node?.outerHTML ?? node?.data ?? '').slice(0, 80)}: ${place(previousRect)} -> ${place(currentRect)}`;
new PerformanceObserver((list) => moves.push(...list.getEntries().map((one) => ({ value: one.value, what: one.sources.map(moved) }))))
  .observe({ type: 'layout-shift', buffered: true });
// What turns takes no other place, but is drawn 60 times a second.
const still = new CSSStyleSheet();
still.replaceSync('* { animation: none !important; }');
document.adoptedStyleSheets = [still];"""
# The browser tells of what it has drawn after the next picture.
DRAW = "new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => setTimeout(done, 0))))"


@pytest.fixture(scope="module", autouse=True)
def watching(window: Owner) -> None:
    window.tell_browser("Page.addScriptToEvaluateOnNewDocument", source=WATCH)


def moves(page: Owner) -> list[dict[str, Any]]:
    page.evaluate(DRAW)
    return list(page.evaluate("moves"))


@pytest.mark.parametrize("place", WINDOWS)
@pytest.mark.parametrize("name", [*PAGES, *OTHERS])
def test_nothing_moves_on_a_page_when_what_it_shows_comes_late(window: Owner, server: StandIn, name: str, place: str) -> None:
    found = moves(come_to(name, window, server, place, late=LATE))
    assert sum(one["value"] for one in found) < MOST, found


def test_what_moves_is_noticed(window: Owner, server: StandIn) -> None:
    page = come_to("host", window, server)
    before = len(moves(page))
    page.evaluate("document.querySelector('h1').before(Object.assign(document.createElement('div'), { style: 'height: 200px' }))")
    assert sum(one["value"] for one in moves(page)[before:]) > MOST
