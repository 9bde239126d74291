# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Every page looks as it does in the pictures in kept/: in a window of a desk and of a phone, in light and dark."""

from __future__ import annotations

import base64

import looks
import pytest
from browser import Owner
from every_page import IS_DRAWN, PAGES, WINDOWS, come_to
from PIL import Image, ImageDraw
from standin import StandIn

SCHEMES = ("light", "dark")
# Nothing moves, and a film is black.
STILL = """new Promise((done) => {
  const sheet = new CSSStyleSheet();
  sheet.replaceSync(`* { animation: none !important; transition: none !important; caret-color: transparent !important; }
    video { filter: brightness(0); }`);
  document.adoptedStyleSheets = [sheet];
  requestAnimationFrame(() => requestAnimationFrame(done));
})"""


@pytest.fixture(scope="module", params=PAGES)
def page(request: pytest.FixtureRequest, window: Owner, server: StandIn) -> tuple[str, Owner]:
    """It is opened once for all of its pictures."""
    return request.param, come_to(request.param, window, server)


@pytest.mark.parametrize("scheme", SCHEMES)
@pytest.mark.parametrize("place", WINDOWS)
def test_a_page_looks_as_it_did(page: tuple[str, Owner], place: str, scheme: str) -> None:
    name, owner = page
    width, height = WINDOWS[place]
    owner.size(width, height)
    owner.prefer(color_scheme=scheme, reduced_motion="reduce")
    assert owner.wait(lambda: owner.evaluate(IS_DRAWN))
    owner.evaluate(STILL)
    owner.size(width, max(owner.evaluate("document.documentElement.scrollHeight"), height))  # all of it is in the window
    owner.evaluate(STILL)
    drawn = owner.tell_browser("Page.captureScreenshot")
    looks.check(f"{name}-{place}-{scheme}", base64.b64decode(drawn["data"]))


def drawing(at: int) -> Image.Image:
    """A button with a text."""
    picture = Image.new("RGB", (200, 60), "white")
    pen = ImageDraw.Draw(picture)
    pen.rectangle((at, 10, at + 80, 40), outline="black")
    pen.text((at + 10, 20), "Save this", fill="black")
    return picture


def test_a_control_that_has_moved_is_noticed() -> None:
    assert looks.difference(drawing(20), drawing(20)) is None
    assert looks.difference(drawing(20), drawing(24)) is not None
    assert looks.difference(drawing(20), drawing(20).resize((200, 64))) is not None


def test_the_edges_of_letters_are_not_noticed() -> None:
    """As if their strokes were a third of a pixel further."""
    fine = drawing(20).resize((600, 180), Image.Resampling.BOX)
    moved = Image.new("RGB", fine.size, "white")
    moved.paste(fine, (1, 0))
    assert looks.difference(*(one.resize((200, 60), Image.Resampling.BOX) for one in (fine, moved))) is None
