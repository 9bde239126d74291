# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Light or dark: as the system, or as somebody chose in this browser, on the owner's pages and on that of guests."""

from __future__ import annotations

from collections.abc import Iterator

import pytest
from browser import Owner
from every_page import LINK
from standin import SHARED, StandIn

LIGHT, DARK = "rgb(242, 244, 247)", "rgb(16, 19, 23)"
BACKGROUND = "getComputedStyle(document.body).backgroundColor"
# A script that the browser waits for, before any style.
IS_FIRST = """(([script, style]) => script.matches('[src$="colours.js"]:not([type], [async], [defer])') && style.matches('link'))(
  [...document.head.querySelectorAll('script, [rel="stylesheet"]')])"""
GUESTS_PAGE = LINK + SHARED(1)
# Keeps the background of each picture of the page that the browser draws, from the first that has its styles.
WATCH = """window.backgrounds = new Set();
const look = () => {
  const hasStyles = document.body && getComputedStyle(document.documentElement).getPropertyValue('--page');
  if (hasStyles) backgrounds.add(getComputedStyle(document.body).backgroundColor);
  requestAnimationFrame(look);
};
look();"""


@pytest.fixture(autouse=True)
def watching(window: Owner) -> Iterator[None]:
    script = window.tell_browser("Page.addScriptToEvaluateOnNewDocument", source=WATCH)
    yield
    window.tell_browser("Page.removeScriptToEvaluateOnNewDocument", **script)


@pytest.mark.parametrize(("system", "choice", "colour"), [("light", "Dark", DARK), ("dark", "Light", LIGHT)])
def test_what_somebody_chose_is_what_the_browser_draws_from_the_first_picture_on(
    owner: Owner, standin: StandIn, system: str, choice: str, colour: str
) -> None:
    owner.prefer(color_scheme=system)
    owner.open()
    owner.sees("Front door")
    assert owner.evaluate(BACKGROUND) != colour
    owner.choose("Colours", choice)
    assert owner.evaluate(BACKGROUND) == colour
    owner.open("sharing")
    owner.sees("Copy link")
    assert owner.evaluate("[...backgrounds]") == [colour]
    assert owner.evaluate(IS_FIRST)
    owner.browser.get(owner.origin + GUESTS_PAGE)
    owner.sees("Front door")
    assert owner.evaluate("[...backgrounds]") == [colour]
    assert owner.evaluate(IS_FIRST)
    assert owner.evaluate("document.querySelector('[name=color-scheme]').content") == choice.lower()  # for what the browser draws itself


def test_a_guest_chooses_light_or_dark_too(owner: Owner) -> None:
    owner.browser.get(owner.origin + GUESTS_PAGE)
    owner.sees("Front door")
    owner.choose("Colours", "Dark")
    assert owner.evaluate(BACKGROUND) == DARK
    owner.choose("Language", "Deutsch")
    owner.sees("Front door")
    owner.wait(lambda: owner.field("Farben"))
    owner.choose("Farben", "Wie das System")
    assert owner.evaluate(BACKGROUND) == LIGHT


def test_whoever_chooses_the_system_follows_it_again(owner: Owner) -> None:
    owner.open()
    owner.choose("Colours", "Dark")
    owner.choose("Colours", "As the system")
    assert owner.evaluate(BACKGROUND) == LIGHT
    owner.prefer(color_scheme="dark")
    assert owner.wait(lambda: owner.evaluate(BACKGROUND) == DARK)


def test_a_chart_is_drawn_anew_in_the_colours_that_somebody_chose(owner: Owner) -> None:
    owner.open("charts")
    owner.sees("Missed pictures")
    picture = "document.querySelector('canvas').toDataURL()"
    before = owner.evaluate(picture)
    owner.choose("Colours", "Dark")
    assert owner.wait(lambda: owner.evaluate(picture) != before)


def test_on_the_way_in_there_is_the_choice_too(owner: Owner, standin: StandIn) -> None:
    standin.signed_in = False
    owner.evaluate("localStorage.removeItem('signedIn')")
    owner.open()
    owner.choose("Colours", "Dark")
    assert owner.evaluate(BACKGROUND) == DARK


def test_beside_the_choice_there_is_room_for_the_name_of_the_host(owner: Owner) -> None:
    owner.size(320, 568)
    owner.open()
    owner.sees("Front door")
    assert owner.evaluate("document.querySelector('.host-name').scrollWidth <= document.querySelector('.host-name').clientWidth")
