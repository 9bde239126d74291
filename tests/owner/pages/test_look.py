# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Every page in windows of all sizes, in light and dark, in both languages; and for those who do not see it."""

from __future__ import annotations

import re

import pytest
from browser import Owner
from conftest import prepare
from standin import StandIn
from viewer import OF_COLOURS, RULES

# A page, and a text that it shows when it is complete.
PAGES = {
    "": "Free channels",
    "pictures": "Front door",
    "profile/0": "Save",
    "profile/1": "Save",
    "sharing": "Copy link",
    "events": "has ended",
    "charts": "Missed pictures",
    "host": "6.1.0-27-amd64",
}
SIZES = [(320, 568), (568, 320), (820, 1180), (1280, 800), (2560, 1440)]
SMALLEST_TOUCH = 24  # of WCAG 2.2; where there is room, it is 44
# What is outside of the window, though nothing of it can be scrolled.
CUT = """[...document.querySelectorAll('#page *')].filter((element) => {
  const box = element.getBoundingClientRect();
  return box.width > 1 && box.right > innerWidth + 1 && !element.closest('pre, .unseen, .u-wrap');
}).map((element) => element.outerHTML.slice(0, 80))"""
SMALL = """[...document.querySelectorAll('button, select, input, nav a')].filter((element) =>
  element.offsetWidth && Math.min(element.offsetWidth, element.offsetHeight) < %d).map((element) => element.outerHTML.slice(0, 80))"""
# What is not wholly seen although the keyboard is on it.
HIDDEN = """[...document.querySelectorAll('main :is(a, button, input, select):not(:disabled)')].filter((element) => {
  element.blur(); // it may have it already
  element.focus();
  return element.getBoundingClientRect().bottom > (document.querySelector('nav')?.getBoundingClientRect().top ?? innerHeight) + 1;
}).map((element) => element.outerHTML.slice(0, 80))"""
KEY = re.compile(r"^[a-z_]+\.[a-z_.]+$", re.MULTILINE)


@pytest.fixture(scope="module", params=PAGES, ids=lambda page: page or "overview")
def page(request: pytest.FixtureRequest, window: Owner, server: StandIn) -> Owner:
    """It is opened once for all that is to be seen of it."""
    prepare(window, server).open(request.param)
    window.sees(PAGES[request.param])
    return window


def test_nothing_is_cut_or_too_small_for_a_finger(page: Owner) -> None:
    for width, height in SIZES:
        page.size(width, height)
        assert page.wait(lambda: page.evaluate("document.documentElement.scrollWidth <= innerWidth")), width
        assert page.wait(lambda: page.evaluate(CUT) == []), (width, page.evaluate(CUT))
        assert page.evaluate(SMALL % SMALLEST_TOUCH) == [], width


def test_the_name_of_a_port_is_on_one_line(page: Owner) -> None:
    for width in range(320, 480, 8) if page.evaluate("document.querySelector('.port') !== null") else []:
        page.size(width, 700)
        assert page.evaluate("[...document.querySelectorAll('.port')].filter((one) => one.getClientRects().length > 1).length") == 0, width
    page.size(*SIZES[-1])


def test_what_the_keyboard_reaches_is_not_behind_the_navigation(page: Owner) -> None:
    for width, height in [(472, 700), (320, 568)]:
        page.size(width, height)
        page.evaluate("scrollTo(0, 0)")
        assert page.evaluate(HIDDEN) == [], width
    page.size(*SIZES[-1])


@pytest.mark.parametrize(("scheme", "rules"), [("light", RULES), ("dark", OF_COLOURS)])
def test_there_is_no_barrier(page: Owner, scheme: str, rules: list[str]) -> None:
    page.prefer(color_scheme=scheme)
    assert page.barriers(rules) == []


@pytest.mark.parametrize("width", [320, 472])
def test_there_is_no_barrier_on_a_phone(page: Owner, width: int) -> None:
    """All of the page is in the window: what the navigation half covers would count as too small for a finger, until it is scrolled."""
    page.prefer(color_scheme="light")
    page.size(width, 700)
    page.wait(lambda: page.evaluate("innerWidth") == width)
    page.size(width, max(700, page.evaluate("document.documentElement.scrollHeight")))
    assert page.barriers(RULES) == []
    page.size(*SIZES[-1])


def test_each_page_is_also_in_german(page: Owner) -> None:
    page.evaluate("(localStorage.setItem('language', 'de'), location.reload())")
    assert page.sees("Übersicht")
    assert page.evaluate("document.documentElement.lang") == "de"
    assert KEY.findall(page.text()) == []
    assert page.complaints() == []


def test_there_is_no_barrier_on_the_way_in(owner: Owner, standin: StandIn) -> None:
    standin.signed_in = False
    owner.evaluate("localStorage.clear()")
    owner.open()
    owner.sees("Sign in")
    assert owner.barriers() == []
    owner.prefer(color_scheme="dark")
    assert owner.barriers(OF_COLOURS) == []


def test_a_question_has_no_barrier(owner: Owner) -> None:
    owner.open("profile/0")
    owner.press("End this stream")
    owner.sees("Its profile becomes free for another camera.")
    assert owner.barriers() == []


def test_a_page_is_entered_at_its_heading(owner: Owner) -> None:
    owner.open()
    owner.press("Events")
    assert owner.wait(lambda: owner.evaluate("document.activeElement.tagName + document.title") == "H1Events – Attic")


def test_whoever_wants_no_motion_gets_none(owner: Owner) -> None:
    owner.prefer(reduced_motion="reduce")
    owner.open("profile/0")
    owner.sees("Save")
    moving = "[...document.querySelectorAll('.switch input')].map((one) => getComputedStyle(one).transitionDuration)"
    assert set(owner.evaluate(moving)) == {"0s"}
