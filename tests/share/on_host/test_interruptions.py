# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Encoders that hang or end: the page reports it, and continues afterwards."""

from __future__ import annotations

from signal import SIGCONT, SIGSTOP

import pytest
from encoder import Encoder
from viewer import Viewer

Link = dict[str, str]
STILL = "The picture does not move; it will continue as soon as the camera sends a new one."
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
