# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Hosts and networks that go away: the page reports it, and continues afterwards."""

from __future__ import annotations

import re
from collections.abc import Iterator
from signal import SIGCONT, SIGSTOP

import pytest
from encoder import Encoder
from host_service import Service
from viewer import Viewer

Link = dict[str, str]
AWAY = "The host does not answer; the page tries again."
# How the picture is drawn, and whether it is said since when the host is away.
LOOK = """[getComputedStyle(document.getElementById('video')).filter, document.getElementById('since').checkVisibility()]"""

pytestmark = pytest.mark.usefixtures("page")


@pytest.fixture(params=[True, False], ids=["online", "offline"])
def connection(request: pytest.FixtureRequest, viewer: Viewer) -> Iterator[None]:
    """What the browser believes of the network, right or wrong."""
    source = f"Object.defineProperty(Navigator.prototype, 'onLine', {{ get: () => {str(request.param).lower()} }})"
    script = viewer.tell_browser("Page.addScriptToEvaluateOnNewDocument", source=source)
    yield
    viewer.tell_browser("Page.removeScriptToEvaluateOnNewDocument", **script)


@pytest.mark.usefixtures("encoder", "connection")
def test_a_host_that_was_away_is_taken_up_again(viewer: Viewer, page: Service, link: Link) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    assert viewer.evaluate(LOOK) == ["none", False]
    page.end()
    viewer.await_sentence(AWAY)
    assert viewer.evaluate(LOOK) == ["grayscale(1)", True]
    assert re.fullmatch(r"Its last answer: \d+:\d\d:\d\d\s[AP]M\.", viewer.text("#since"))
    page.start()
    viewer.await_playing()
    assert viewer.evaluate(LOOK) == ["none", False]


@pytest.mark.usefixtures("encoder", "connection")
def test_a_host_that_does_not_answer_at_first_is_asked_until_it_does(viewer: Viewer, page: Service, link: Link) -> None:
    viewer.tell_browser("Network.enable")
    viewer.tell_browser("Network.setBlockedURLs", urls=["*/share/open"])
    viewer.open(link["page"])
    viewer.await_sentence(AWAY)
    viewer.tell_browser("Network.setBlockedURLs", urls=[])
    viewer.await_playing()


@pytest.mark.usefixtures("encoder")
def test_a_host_that_hangs_is_said_to_be_away_and_taken_up_again(viewer: Viewer, page: Service, link: Link) -> None:
    """Its connections stay."""
    viewer.open(link["page"])
    viewer.await_playing()
    page.send(SIGSTOP)
    try:
        viewer.await_sentence(AWAY)
    finally:
        page.send(SIGCONT)
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
