# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the pages show while the host is gone, hangs, or has ended the session, and when it is back."""

from __future__ import annotations

import copy

import pytest
from browser import Owner
from made_up import STATE
from standin import PASSWORD, StandIn

AWAY = "The host does not answer; the page tries again."
ENDED = "Your session has ended; sign in again."


def test_only_pictures_is_the_address_of_a_screen_that_waits_for_streams(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][0]["streams"] = False
    owner.open("pictures")
    assert owner.sees("No camera streams now")
    standin.state = copy.deepcopy(STATE)
    standin.tell("state", STATE)
    assert owner.wait(lambda: owner.evaluate("document.querySelector('.live')?.dataset.shows === 'plays'"))
    standin.hang()
    assert owner.sees("No picture: the host does not answer.", AWAY)
    standin.hangs = False
    assert owner.wait(lambda: owner.evaluate("document.querySelector('.live')?.dataset.shows === 'plays'"))


def test_a_host_that_is_gone_is_waited_for(owner: Owner, standin: StandIn) -> None:
    owner.open("events")
    owner.sees("The encoder of profile 1 has ended")
    standin.leave()
    assert owner.sees(AWAY, "The encoder of profile 1 has ended")
    standin.away = False
    assert owner.sees_no_more(AWAY)
    assert owner.is_told("The host answers again.")
    owner.complaints()


def test_a_host_that_hangs_is_away_and_nothing_streams_until_it_answers_again(owner: Owner, standin: StandIn) -> None:
    owner.open()
    owner.sees_on_card(0, "Streams")
    owner.sees("1 of 6 cameras streams")
    standin.hang()
    assert owner.sees(AWAY, "Which cameras stream now is not known.")
    assert owner.sees_on_card(0, "Not known now")
    assert "Streams" not in owner.text()
    standin.hangs = False
    assert owner.sees_no_more(AWAY)
    assert owner.sees_on_card(0, "Streams")


def test_a_live_picture_of_a_host_that_hangs_is_not_shown_as_one(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    playing = "document.querySelector('.live')?.dataset.shows === 'plays'"
    owner.wait(lambda: owner.evaluate(playing))
    standin.hang()
    assert owner.sees("No picture: the host does not answer.", "Not known now")
    standin.hangs = False
    assert owner.wait(lambda: owner.evaluate(playing))


@pytest.mark.parametrize("hangs", [True, False])
@pytest.mark.parametrize(
    ("page", "text"), [("Charts", "Missed pictures"), ("Help", "6.1.0-27-amd64"), ("Sharing", "Copy link"), ("Events", "has ended")]
)
def test_what_is_asked_for_while_the_host_is_away_comes_when_it_is_back(
    owner: Owner, standin: StandIn, page: str, text: str, hangs: bool
) -> None:
    owner.open()
    owner.sees("Front door")
    if hangs:
        standin.hang()
    else:
        standin.leave()
    owner.sees(AWAY)
    owner.press(page)
    assert owner.sees("The host does not answer; what belongs here comes as soon as it does.")
    assert owner.evaluate("document.querySelectorAll('.notice.refusal').length") == 0
    standin.hangs = standin.away = False
    assert owner.sees(text)
    assert owner.is_told("The host answers again.")
    owner.complaints()


def test_a_session_that_has_ended_leads_to_the_login_and_back_to_the_page(owner: Owner, standin: StandIn) -> None:
    owner.open("sharing")
    owner.sees("Front door")
    standin.signed_in = False
    standin.leave()
    standin.away = False
    assert owner.sees("with the account that you have on their host.", ENDED)
    owner.sign_in("ann", PASSWORD)
    assert owner.sees("Front door")
    assert owner.wait(lambda: owner.heading() == "Sharing")
    owner.press("Sign out")
    owner.sees("with the account that you have on their host.")
    assert ENDED not in owner.text()
    owner.complaints()
