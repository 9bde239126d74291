# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the pages show when there is nothing yet, while they wait, when the host refuses, and when it is gone."""

from __future__ import annotations

import copy

import pytest
from browser import Owner
from made_up import EMPTY, STATE
from selenium.webdriver import Keys
from standin import PASSWORD, StandIn

AWAY = "The host does not answer; the page tries again."


def test_a_host_without_cameras_says_what_to_do(owner: Owner, standin: StandIn) -> None:
    standin.state = copy.deepcopy(EMPTY)
    owner.open()
    assert owner.sees("No camera is plugged in", "Plug a USB camera into this host", "Channel 9")


@pytest.mark.parametrize(
    ("page", "text"),
    [("sharing", "There is nothing to share yet"), ("profile/2", "No camera has this profile"), ("profile/7", "There is no such page")],
)
def test_a_page_with_nothing_to_show_says_so(owner: Owner, standin: StandIn, page: str, text: str) -> None:
    standin.state = copy.deepcopy(EMPTY)
    owner.open(page)
    assert owner.sees(text)


def test_a_page_says_that_it_is_being_loaded(owner: Owner, standin: StandIn) -> None:
    standin.state = {}
    owner.open()
    assert owner.sees("Loading …")
    standin.state = copy.deepcopy(STATE)  # for a page that is not connected yet
    standin.tell("state", STATE)
    assert owner.sees("Front door")


def test_a_camera_that_is_asked_for_its_formats_takes_its_time(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.sees("Save")
    standin.slow = 2
    owner.open("profile/1")
    assert owner.sees("Asking the camera what it offers …")
    standin.slow = 0
    assert owner.sees("Save")


@pytest.mark.parametrize("page", ["charts", "host", "profile/1"])
def test_a_page_that_is_not_answered_can_be_asked_for_again(owner: Owner, standin: StandIn, page: str) -> None:
    standin.missing = True
    owner.open(page)
    assert owner.sees("The host did not answer this", "This does not exist any more.")
    standin.missing = False
    owner.press("Ask again")
    assert owner.sees_no_more("The host did not answer this")
    owner.complaints()  # of the answer


def test_an_owner_sees_how_many_guests_watch(owner: Owner, standin: StandIn) -> None:
    owner.open("sharing")
    assert owner.sees("2 guests are watching now.")
    standin.tell("viewers", [1, 0, 0, 0])
    assert owner.sees("One guest is watching now.")
    standin.tell("viewers", [0, 0, 0, 0])
    assert owner.sees("No guest is watching now.")


def test_a_camera_that_is_plugged_in_appears_at_once(owner: Owner, standin: StandIn) -> None:
    standin.state = copy.deepcopy(EMPTY)
    owner.open()
    owner.sees("No camera is plugged in")
    standin.tell("channels", STATE["channels"])
    assert owner.sees_on_card(0, "Front door", "Streams", "3-1.1", "1280 × 720", "15 per second")


def test_a_refused_change_is_taken_back_with_its_reason(owner: Owner, standin: StandIn) -> None:
    standin.refusal = {"reason": "not_attached", "text": "It is not attached.", "cure": None}
    owner.open("profile/2")
    owner.wait(lambda: not owner.is_on("USB port switched on"))
    owner.turn("USB port switched on")
    assert owner.sees("The camera is not plugged in.")
    assert not owner.is_on("USB port switched on")
    owner.press("Close")
    assert owner.sees_no_more("The camera is not plugged in.")
    assert owner.complaints() != []  # the browser tells of every refusal


def test_a_refused_move_is_said_in_the_language_of_the_page(owner: Owner, standin: StandIn) -> None:
    standin.refusal = {"reason": "port_off", "text": "Its port is off.", "other_channel": None, "collision": None}
    owner.open("profile/0")
    owner.choose("Language", "Deutsch")
    owner.press("Auf andere Kamera verschieben")
    owner.press("Verschieben")
    assert owner.sees("Der USB-Anschluss der Kamera ist ausgeschaltet; schalten Sie ihn zuerst ein.")
    assert "Its port is off." not in owner.text()
    owner.choose("Sprache", "English")
    owner.complaints()  # of the refusal


def test_a_change_is_shown_before_the_host_has_answered(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.wait(lambda: not owner.is_on("Upside down"))
    standin.slow = 3
    owner.turn("Upside down")
    assert owner.wait(lambda: owner.is_on("Upside down"))
    assert ("PATCH", "/profiles/0/stream", {"flip": True}) not in standin.asked
    standin.slow = 0


def test_a_host_that_is_gone_is_waited_for(owner: Owner, standin: StandIn) -> None:
    owner.open("events")
    owner.sees("The encoder of profile 1 has ended")
    standin.leave()
    assert owner.sees(AWAY, "The encoder of profile 1 has ended")
    standin.away = False
    assert owner.sees_no_more(AWAY)
    owner.complaints()


def test_a_session_that_has_ended_leads_to_the_login_and_back_to_the_page(owner: Owner, standin: StandIn) -> None:
    owner.open("sharing")
    owner.sees("Front door")
    standin.signed_in = False
    standin.leave()
    standin.away = False
    assert owner.sees("With the account that you have on this host.")
    owner.sign_in("ann", PASSWORD)
    assert owner.sees("Front door")
    assert owner.heading() == "Sharing"
    owner.complaints()


def test_a_name_from_outside_is_only_text(owner: Owner) -> None:
    owner.open()
    assert owner.sees_on_card(2, "Cam <img src=x onerror=alert(1)>")
    assert owner.evaluate("document.querySelectorAll('img[src=x]').length") == 0


def test_the_way_out_of_a_question_is_first_and_changes_nothing(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.press("Take the profile away")
    assert owner.sees("Take the profile of “Front door” away?", "The shared link stops working, for good.")
    assert owner.focused() == "Cancel"
    owner.press_keys(Keys.ESCAPE)
    assert owner.sees_no_more("Take the profile of “Front door” away?")
    assert owner.focused() == "Take the profile away"
    assert [one for one in standin.asked if one[0] == "DELETE"] == []
