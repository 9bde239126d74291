# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How the page looks: in windows of all sizes, in light and dark, with any name."""

from __future__ import annotations

from collections.abc import Callable, Iterator

import pytest
from conftest import EVERYWHERE, FITS, share, shared
from viewer import Viewer

Link = dict[str, str]
LONG = "A camera with a name that is longer than a phone is wide, by far"
SMALLEST_TOUCH = 44
VIDEO = "document.getElementById('video')"
# How light the page and its text are, from 0 to 255.
LIGHTNESS = """['backgroundColor', 'color'].map((part) =>
  Math.max(...getComputedStyle(document.body)[part].match(/\\d+/g).slice(0, 3).map(Number)))"""

pytestmark = pytest.mark.usefixtures("page", "encoder")


@pytest.fixture(params=["light", "dark"])
def scheme(request: pytest.FixtureRequest, viewer: Viewer) -> Iterator[str]:
    viewer.prefer(request.param)
    yield request.param
    viewer.tell_browser("Emulation.setEmulatedMedia", features=[])


def test_the_picture_and_its_controls_are_inside_the_window(
    viewer: Viewer, link: Link, in_every_window: Callable[[str], list[bool]]
) -> None:
    shared(link, profilename=LONG)
    viewer.open(link["page"])
    viewer.await_playing()
    assert in_every_window(FITS) == EVERYWHERE
    assert in_every_window(f"innerWidth < innerHeight || {VIDEO}.clientHeight > innerHeight / 2") == EVERYWHERE


def test_upright_the_picture_is_below_the_name_as_wide_as_the_window(
    viewer: Viewer, link: Link, in_every_window: Callable[[str], list[bool]]
) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    is_whole = f"Math.abs({VIDEO}.clientHeight * {VIDEO}.videoWidth - innerWidth * {VIDEO}.videoHeight) < 2 * innerWidth"
    is_on_top = f"{VIDEO}.getBoundingClientRect().top === document.querySelector('header').getBoundingClientRect().bottom"
    assert in_every_window(f"innerWidth > innerHeight || ({is_whole} && {is_on_top})") == EVERYWHERE


def test_on_the_picture_are_the_pages_own_buttons_large_enough_for_a_finger(
    viewer: Viewer, link: Link, in_every_window: Callable[[str], list[bool]]
) -> None:
    """The browser's would stop it, and it would be called live."""
    viewer.open(link["page"])
    viewer.await_playing()
    box = "document.getElementById('full').getBoundingClientRect()"
    picture = f"{VIDEO}.getBoundingClientRect()"
    is_on_it = f"(({{ bottom, height }}, picture) => bottom <= picture.bottom && height >= {SMALLEST_TOUCH})({box}, {picture})"
    assert in_every_window(is_on_it) == EVERYWHERE
    assert viewer.evaluate(f"[{VIDEO}.controls, document.querySelector('.now').checkVisibility()]") == [False, True]


def test_the_full_view_has_the_pages_own_buttons(viewer: Viewer, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    viewer.click("full")
    viewer.wait(lambda: viewer.evaluate("document.fullscreenElement?.tagName") == "MAIN")
    viewer.wait(lambda: viewer.text("#full") == "Leave full view")
    viewer.click("full")
    viewer.wait(lambda: viewer.evaluate("document.fullscreenElement") is None)
    viewer.wait(lambda: viewer.text("#full") == "Full view")


def test_an_iphone_that_enlarges_only_the_video_does_that(viewer: Viewer, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    viewer.evaluate("void (document.querySelector('main').requestFullscreen = undefined)")
    viewer.evaluate(f"void ({VIDEO}.webkitEnterFullscreen = () => (window.enlarged = true))")
    viewer.click("full")
    assert viewer.evaluate("window.enlarged")


def test_the_sound_of_a_stream_that_has_one_is_off_until_it_is_wanted(viewer: Viewer, link: Link) -> None:
    """The encoder's has none."""
    viewer.open(link["page"])
    viewer.await_playing()
    assert not viewer.evaluate("document.getElementById('sound').checkVisibility()")
    viewer.evaluate("void (document.getElementById('sound').hidden = false)")
    assert (viewer.text("#sound"), viewer.evaluate(f"{VIDEO}.muted")) == ("Sound on", True)
    viewer.click("sound")
    assert (viewer.text("#sound"), viewer.evaluate(f"{VIDEO}.muted")) == ("Sound off", False)


def test_the_password_can_be_entered_with_a_finger(
    viewer: Viewer, link: Link, in_every_window: Callable[[str], list[bool]]
) -> None:
    viewer.open(share("on", "0", "--password-stdin", "--json", password="pass\n")["page"])
    viewer.wait(viewer.sees_form)
    touched = "[...document.querySelectorAll('form :is(input, button)')].map((one) => one.offsetHeight)"
    assert in_every_window(FITS) == EVERYWHERE
    assert in_every_window(f"{touched}.length === 3 && Math.min(...{touched}) >= {SMALLEST_TOUCH}") == EVERYWHERE
    look, kind = "document.getElementById('see').click()", "document.getElementById('password').type"
    assert [(viewer.evaluate(look), viewer.evaluate(kind)) for _ in range(2)] == [(None, "text"), (None, "password")]


def test_a_wrong_password_looks_like_a_mistake(viewer: Viewer, link: Link) -> None:
    viewer.open(share("on", "0", "--password-stdin", "--json", password="pass\n")["page"])
    viewer.wait(viewer.sees_form)
    colour = "getComputedStyle(document.getElementById('sentence')).backgroundColor"
    before = viewer.evaluate(colour)
    viewer.enter_password("wrong")
    viewer.wait(lambda: viewer.sentence() == "This is not the password.")
    assert viewer.evaluate(colour) != before


def test_the_whole_page_is_dark_where_the_viewer_wants_it(viewer: Viewer, scheme: str, link: Link) -> None:
    viewer.open(link["page"])
    page, text = viewer.evaluate(LIGHTNESS)
    assert (page < 64, text > 192) == (scheme == "dark", scheme == "dark")
    assert viewer.evaluate("document.body.offsetHeight >= innerHeight")


@pytest.mark.parametrize(
    ("name", "shown"),
    [
        ("Door", "Door"),
        ("<img src=x onerror=document.title='taken'>", "<img src=x onerror=document.title='taken'>"),
        ("Door\u202egnp.exe\u2066", "Doorgnp.exe"),
        ("\u05d3\u05dc\u05ea", "\u05d3\u05dc\u05ea"),
    ],
    ids=["plain", "markup", "direction marks", "right to left"],
)
def test_the_title_is_the_cameras_name_as_text(viewer: Viewer, link: Link, name: str, shown: str) -> None:
    shared(link, profilename=name)
    viewer.open(link["page"])
    viewer.wait(lambda: viewer.title() == shown)
    assert viewer.evaluate("document.getElementById('name').textContent") == shown
    assert viewer.evaluate("document.getElementById('name').children.length") == 0


def test_the_name_is_not_shown_before_the_password_is_right(viewer: Viewer, link: Link) -> None:
    viewer.open(share("on", "0", "--password-stdin", "--json", password="pass\n")["page"])
    viewer.wait(viewer.sees_form)
    assert viewer.title() == "Shared camera"
    viewer.enter_password("pass")
    viewer.await_playing()
    assert viewer.title() == "Door"


def test_the_page_has_an_icon(viewer: Viewer, link: Link) -> None:
    viewer.open(link["page"])
    loads = """new Promise((answer) => Object.assign(new Image(), {
      onload: () => answer(true), onerror: () => answer(false), src: document.querySelector('link[rel=icon]').href }))"""
    assert viewer.evaluate(loads)
