# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Why there is nothing to see at the moment: the page shows it, and shows the picture when the reason has passed."""

from __future__ import annotations

import pytest
from conftest import share, shared
from encoder import Encoder
from host_service import Service
from viewer import Viewer

Link = dict[str, str]

pytestmark = pytest.mark.usefixtures("page")


PASSING = [
    ({"slot_switch": 0}, "The camera’s port is switched off; its picture comes back by itself as soon as it is switched on."),
    ({"exists": 0}, "The camera is not plugged in; its picture comes back by itself as soon as it is."),
    ({"video.vnode": -1}, "The camera gives no picture at the moment."),
    ({"video.vnode": -1, "audio.anode": 1}, "There is sound here, but no picture to show."),
    ({"conflictch": 3}, "The camera has to wait for another one, or cannot be used on this host; its picture comes by itself as soon as it can."),
    ({"sharelink.shrenable": 0}, "This camera is not shared at the moment."),
]


@pytest.mark.usefixtures("encoder")
def test_the_page_asks_again_after_every_reason_that_can_pass(viewer: Viewer, link: Link) -> None:
    shared(link, **PASSING[0][0])
    viewer.open(link["page"])
    for keys, sentence in PASSING:
        shared(link, **keys)
        viewer.await_sentence(sentence)
    shared(link)
    viewer.await_playing()


def test_a_password_is_not_asked_for_again_when_the_camera_is_back(
    viewer: Viewer, encoder: Encoder, link: Link
) -> None:
    protected = share("on", "0", "--password-stdin", "--json", password="pass\n")
    password = {"sharelink.pwdenable": 1, "sharelink.shrpwd": "pass"}
    viewer.open(protected["page"])
    viewer.await_sentence("This link is protected by a password.")
    viewer.enter_password("pass")
    viewer.await_playing()
    encoder.end()
    shared(protected, exists=0, **password)
    viewer.await_sentence("The camera is not plugged in; its picture comes back by itself as soon as it is.")
    shared(protected, **password)
    encoder.start()
    viewer.await_playing()


@pytest.mark.usefixtures("encoder")
def test_a_pause_after_too_many_wrong_attempts_is_shown_until_it_is_over(
    viewer: Viewer, page: Service, link: Link
) -> None:
    viewer.open(share("on", "0", "--password-stdin", "--json", password="pass\n")["page"])
    for _ in range(6):
        viewer.wait(viewer.sees_form)
        viewer.enter_password("wrong")
    viewer.await_sentence("There were too many wrong attempts.")
    assert not viewer.sees_form()
    first = viewer.countdown()
    assert first.startswith("The next attempt is possible in ")
    viewer.wait(lambda: viewer.countdown() != first)
    # A minute passes: the server has forgotten, and the page's clock goes on.
    page.end()
    page.start()
    viewer.evaluate("void (performance.now = (now => () => now() + 60000)(performance.now.bind(performance)))")
    viewer.wait(viewer.sees_form)
    viewer.enter_password("pass")
    viewer.await_playing()
