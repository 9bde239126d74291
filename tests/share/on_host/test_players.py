# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How the page plays a stream: as it comes, or, in browsers that cannot, as a playlist."""

from __future__ import annotations

from collections.abc import Iterator
from contextlib import contextmanager
from signal import SIGCONT, SIGSTOP

import pytest
from encoder import Encoder
from host_service import Service
from viewer import Viewer

Link = dict[str, str]
IS_LIVE = "document.getElementById('video').src.startsWith('blob:')"
# How many seconds of the stream the browser has, but does not show yet.
BEHIND = "((video) => video.buffered.end(video.buffered.length - 1) - video.currentTime)(document.getElementById('video'))"
WITHOUT_SOURCES = "delete window.MediaSource"
WITHOUT_SOCKETS = "window.WebSocket = class extends WebSocket { constructor() { super('/nothing'); } }"
STOPPED = "The browser has stopped the picture."
REFUSE = "document.getElementById('video').play = () => Promise.reject(new DOMException('', 'NotAllowedError'))"
# Whether the page calls the picture live, how it is drawn, and whether there is the button that goes on.
LOOK = """[document.querySelector('.now').checkVisibility({ visibilityProperty: true }),
  getComputedStyle(document.getElementById('video')).filter, document.getElementById('go-on').checkVisibility()]"""

pytestmark = pytest.mark.usefixtures("page")


@contextmanager
def changed(viewer: Viewer, script: str) -> Iterator[None]:
    """The browser runs a script before those of each page."""
    added = viewer.tell_browser("Page.addScriptToEvaluateOnNewDocument", source=script)
    try:
        yield
    finally:
        viewer.tell_browser("Page.removeScriptToEvaluateOnNewDocument", **added)


def test_a_stream_is_played_as_it_comes(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    assert viewer.evaluate(IS_LIVE)
    viewer.wait(lambda: viewer.evaluate(BEHIND) < 0.6)


@pytest.mark.parametrize("script", [WITHOUT_SOURCES, WITHOUT_SOCKETS], ids=["no media sources", "no sockets"])
def test_a_browser_that_cannot_plays_the_playlist(viewer: Viewer, encoder: Encoder, link: Link, script: str) -> None:
    with changed(viewer, script):
        encoder.await_pictures()
        viewer.open(link["page"])
        viewer.await_playing()
        assert not viewer.evaluate(IS_LIVE)


def test_a_viewer_who_fell_behind_catches_up(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    for seconds in (0.8, 3):
        viewer.wait(lambda: viewer.evaluate(BEHIND) < 0.6)
        viewer.evaluate(f"void (document.getElementById('video').currentTime -= {seconds})")
    viewer.wait(lambda: viewer.evaluate(BEHIND) < 0.6)


@pytest.mark.parametrize("script", ["", WITHOUT_SOURCES], ids=["as it comes", "as a playlist"])
def test_a_picture_that_something_stops_goes_on_by_itself(viewer: Viewer, encoder: Encoder, link: Link, script: str) -> None:
    """A media key on a keyboard can stop it, for example; the page itself has no such button."""
    with changed(viewer, script):
        encoder.await_pictures()
        viewer.open(link["page"])
        viewer.await_playing()
    assert not viewer.evaluate("document.getElementById('video').controls")
    viewer.evaluate("document.getElementById('video').pause()")
    viewer.wait(lambda: not viewer.evaluate("document.getElementById('video').paused"))
    viewer.await_playing()


def test_a_picture_that_the_browser_stops_is_not_called_live_and_goes_on_with_the_present(
    viewer: Viewer, encoder: Encoder, link: Link
) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    viewer.wait(lambda: viewer.evaluate(LOOK) == [True, "none", False])
    viewer.evaluate(REFUSE)
    viewer.evaluate("document.getElementById('video').pause()")
    viewer.await_sentence(STOPPED)
    assert viewer.evaluate(LOOK) == [False, "grayscale(1)", True]
    at = viewer.position()
    viewer.wait(lambda: viewer.evaluate(BEHIND) > 4)
    assert (viewer.position(), viewer.sentence()) == (at, STOPPED)
    viewer.click("go-on")
    viewer.await_sentence(STOPPED)  # it refuses again
    viewer.evaluate("delete document.getElementById('video').play")
    viewer.click("go-on")
    viewer.await_playing()
    viewer.wait(lambda: viewer.evaluate(BEHIND) < 0.6)
    assert viewer.evaluate(LOOK) == [True, "none", False]


def test_a_browser_that_does_not_play_by_itself_plays_when_it_is_told_to(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    """As an iPhone that saves power."""
    with changed(viewer, f"addEventListener('DOMContentLoaded', () => {{ {REFUSE} }})"):
        viewer.open(link["page"])
        viewer.await_sentence(STOPPED)
    viewer.evaluate("delete document.getElementById('video').play")
    viewer.click("go-on")
    viewer.await_playing()


def test_what_came_while_the_server_stood_still_is_skipped(
    viewer: Viewer, encoder: Encoder, page: Service, link: Link
) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    page.send(SIGSTOP)
    try:
        at = viewer.wait(lambda: viewer.evaluate("document.body.dataset.state") == "still" and viewer.position())
    finally:
        page.send(SIGCONT)
    viewer.await_playing()
    viewer.wait(lambda: viewer.evaluate(BEHIND) < 0.6)
    assert viewer.position() > at + 2


def test_what_was_shown_long_ago_is_not_kept(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    begin = "document.getElementById('video').buffered.start(0)"
    first = viewer.evaluate(begin)
    viewer.wait(lambda: viewer.evaluate(begin) > first + 10)
