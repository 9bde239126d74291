# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Encoders that hang or end, hosts and networks that go away: the page reports it, and continues afterwards."""

from __future__ import annotations

from collections.abc import Iterator
from signal import SIGCONT, SIGSTOP

import pytest
from conftest import SharePage
from encoder import Encoder
from viewer import Viewer

Link = dict[str, str]
STILL = "The picture does not move; it will continue as soon as the camera sends a new one."
AWAY = "The host does not answer; the page tries again."
NOT_THERE = "The stream has not begun yet; it will be shown as soon as it begins."

pytestmark = pytest.mark.usefixtures("page")


def test_a_picture_that_does_not_move_is_reported_until_it_moves_again(
    viewer: Viewer, encoder: Encoder, link: Link
) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    encoder.send(SIGSTOP)
    viewer.await_sentence(STILL)
    assert viewer.sees_video()
    encoder.send(SIGCONT)
    viewer.await_playing()


def test_an_old_playlist_is_not_played_again_and_again(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    encoder.send(SIGSTOP)
    viewer.await_sentence(STILL)
    end = viewer.position()
    questions = "performance.getEntriesByName(location.origin + '/share/open').length"
    asked = viewer.evaluate(questions)
    viewer.wait(lambda: viewer.evaluate(questions) > asked + 5)
    assert (viewer.position(), viewer.sentence()) == (end, STILL)


def test_a_pause_by_the_viewer_is_not_reported(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    viewer.evaluate("document.getElementById('video').pause()")
    encoder.send(SIGSTOP)
    viewer.evaluate("void (window.later = performance.now() + 2 * kStandsStill)")
    viewer.wait(lambda: viewer.evaluate("performance.now() > later"))
    assert viewer.sentence() == ""


def test_an_encoder_that_is_started_again_is_followed(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    encoder.end()
    viewer.wait(lambda: viewer.sentence() in (NOT_THERE, STILL))
    encoder.start()
    viewer.await_playing()


def test_a_stream_that_begins_later_is_waited_for(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    encoder.end()
    viewer.open(link["page"])
    viewer.await_sentence(NOT_THERE)
    encoder.start()
    viewer.await_playing()


@pytest.fixture(params=[True, False], ids=["online", "offline"])
def connection(request: pytest.FixtureRequest, viewer: Viewer) -> Iterator[None]:
    """What the browser believes of the network, right or wrong."""
    source = f"Object.defineProperty(Navigator.prototype, 'onLine', {{ get: () => {str(request.param).lower()} }})"
    script = viewer.tell_browser("Page.addScriptToEvaluateOnNewDocument", source=source)
    yield
    viewer.tell_browser("Page.removeScriptToEvaluateOnNewDocument", **script)


@pytest.mark.usefixtures("encoder", "connection")
def test_a_host_that_was_away_is_taken_up_again(viewer: Viewer, page: SharePage, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    page.end()
    viewer.await_sentence(AWAY)
    page.start()
    viewer.await_playing()


@pytest.mark.usefixtures("encoder", "connection")
def test_a_host_that_does_not_answer_at_first_is_asked_until_it_does(viewer: Viewer, page: SharePage, link: Link) -> None:
    viewer.tell_browser("Network.enable")
    viewer.tell_browser("Network.setBlockedURLs", urls=["*/share/open"])
    viewer.open(link["page"])
    viewer.await_sentence(AWAY)
    viewer.tell_browser("Network.setBlockedURLs", urls=[])
    viewer.await_playing()


def test_the_page_continues_when_the_network_is_back(viewer: Viewer, encoder: Encoder, link: Link) -> None:
    """The browser itself reports that it is offline."""
    offline = {"latency": 0, "downloadThroughput": -1, "uploadThroughput": -1}
    viewer.open(link["page"])
    viewer.await_playing()
    viewer.tell_browser("Network.emulateNetworkConditions", offline=True, **offline)
    viewer.await_sentence(AWAY)
    assert viewer.evaluate("navigator.onLine") is False
    viewer.tell_browser("Network.emulateNetworkConditions", offline=False, **offline)
    viewer.await_playing()
