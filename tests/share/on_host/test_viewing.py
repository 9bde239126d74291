# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The share page as a viewer sees it: in a browser."""

from __future__ import annotations

from signal import SIGSTOP

import pytest
from conftest import share, shared
from encoder import Encoder
from viewer import Viewer

ENDED = "This link does not work any more: it was replaced or removed. Ask whoever sent it to you for the new one."

pytestmark = pytest.mark.usefixtures("page", "encoder")


def test_the_stream_plays(viewer: Viewer, link: dict[str, str]) -> None:
    viewer.open(link["page"])
    viewer.await_playing()


def test_a_wrong_token_plays_nothing(viewer: Viewer, link: dict[str, str]) -> None:
    viewer.open(link["page"][:-1] + ("0" if link["page"][-1] != "0" else "1"))
    viewer.await_sentence(ENDED)
    assert (viewer.sees_video(), viewer.position()) == (False, 0)


def test_a_renewed_link_ends_the_old_one_and_who_watches_it(viewer: Viewer, link: dict[str, str]) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    renewed = share("renew", "0", "--json")["page"]
    viewer.await_sentence(ENDED)
    assert not viewer.sees_video()
    viewer.open(link["page"])
    viewer.await_sentence(ENDED)
    viewer.open(renewed)
    viewer.await_playing()


def test_a_link_taken_back_ends_for_who_watches_it(viewer: Viewer, link: dict[str, str]) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    share("off", "0")
    viewer.await_sentence(ENDED)
    assert not viewer.sees_video()


def test_the_page_reports_that_the_camera_was_unplugged(viewer: Viewer, encoder: Encoder, link: dict[str, str]) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    encoder.send(SIGSTOP)
    shared(link, exists=0)
    viewer.await_sentence("The camera is not plugged in; its picture comes back by itself as soon as it is.")
    assert not viewer.sees_video()


def test_a_password_opens_a_protected_link(viewer: Viewer, link: dict[str, str]) -> None:
    protected = share("on", "0", "--password-stdin", "--json", password="pass\n")["page"]
    viewer.open(protected)
    viewer.await_sentence("This link is protected by a password.")
    viewer.enter_password("Pass")
    viewer.await_sentence("This is not the password.")
    assert not viewer.sees_video()
    viewer.enter_password("pass")
    viewer.await_playing()
