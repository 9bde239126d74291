# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the pages show while the host is gone, hangs, or has ended the session, and when it is back."""

from __future__ import annotations

import copy

import pytest
from browser import Owner
from made_up import STATE
from selenium.webdriver import Keys
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


# What would change something, and is pressed or chosen on this page.
INACTIVE = """[...document.querySelectorAll('main :is(button, select, input[type=checkbox], input[type=range])')]
  .filter((one) => one.checkVisibility() && !one.matches('[aria-disabled=true]')).map((one) => one.innerText || one.id)"""
REASON = "document.getElementById(document.activeElement.getAttribute('aria-describedby')).innerText"
PLACES = "JSON.stringify([...document.querySelectorAll('main .card :is(button, select, input, h2)')].map((one) => one.getBoundingClientRect()))"


def test_nothing_can_be_changed_while_the_host_is_away_and_the_keyboard_stays_where_it_is(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.sees("Saving interrupts")
    owner.wait(lambda: owner.evaluate("document.querySelector('.live')?.dataset.shows === 'plays'"))
    owner.choose("Size", "640 × 480")
    owner.evaluate("document.querySelector('.stream-form button').focus()")
    places = owner.evaluate(PLACES)
    standin.hang()
    assert owner.sees(AWAY)
    assert owner.evaluate(INACTIVE) == []
    assert (owner.focused(), owner.evaluate(REASON)) == ("Save", f"{AWAY} Its last answer: 10:00:00 AM.")
    assert owner.evaluate(PLACES) == places
    owner.press_keys(Keys.ENTER, Keys.SPACE)
    for label in ("Use its USB port", "Time in the picture"):
        owner.turn(label)
    owner.press("Upside down (the camera hangs)")
    assert owner.is_on("Use its USB port") and not owner.evaluate("document.querySelector('dialog')")
    assert owner.evaluate("document.querySelectorAll('.busy').length") == 0
    assert owner.barriers() == []
    standin.hangs = False
    assert owner.is_told("The host answers again.")
    assert standin.asked == []
    assert owner.evaluate("document.querySelectorAll('[aria-disabled=true]').length") == 0
    assert owner.sees("Not saved yet.")


# What is at least partly under the message; all of the page but what it consists of.
COVERED = """(() => {
  const message = document.querySelector('.notice.away').getBoundingClientRect();
  const meets = ({ left, right, top, bottom }) => left < message.right && message.left < right && top < message.bottom && message.top < bottom;
  return [...document.querySelectorAll('header > *, h1, .lead > *, main .card, .live, nav a')]
    .filter((one) => meets(one.getBoundingClientRect())).map((one) => one.outerHTML.slice(0, 80));
})()"""
PLACE = "(({ top, bottom }) => top >= 0 && bottom < innerHeight / 2)(document.querySelector('.notice.away').getBoundingClientRect())"


@pytest.mark.parametrize("page", ["", "profile/0", "events"])
def test_on_a_phone_the_message_that_the_host_is_away_covers_nothing_and_stays_in_sight(owner: Owner, standin: StandIn, page: str) -> None:
    owner.size(390, 844)
    owner.open(page)
    owner.sees({"": "Free channels", "profile/0": "Saving interrupts", "events": "has ended"}[page])
    standin.hang()
    owner.sees(AWAY)
    assert owner.evaluate(COVERED) == []
    owner.evaluate("scrollTo(0, document.documentElement.scrollHeight)")
    assert owner.evaluate(PLACE)
    standin.hangs = False
    assert owner.sees_no_more(AWAY)


def test_a_dialog_waits_for_the_host_too_and_then_does_what_it_says(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.turn("Use its USB port")
    owner.sees("Switch the port of “Front door” off?")
    places = "JSON.stringify([...document.querySelectorAll('dialog button')].map((one) => one.getBoundingClientRect()))"
    before = owner.evaluate(places)
    standin.leave()
    assert owner.wait(lambda: AWAY in owner.text("dialog"))
    assert owner.evaluate(places) == before
    owner.press("Switch off")
    assert owner.sees("Switch the port of “Front door” off?")
    standin.away = False
    assert owner.wait(lambda: AWAY not in owner.text("dialog"))
    assert standin.asked == []
    owner.press("Switch off")
    assert owner.is_told("“Front door” is switched off.")
    owner.complaints()


def test_a_host_that_hangs_is_noticed_when_something_is_pressed(owner: Owner, standin: StandIn) -> None:
    """The next sign of life is long to come."""
    owner.open("profile/0")
    owner.sees("Saving interrupts")
    standin.hangs = True
    owner.enter("Name", "Gate")
    owner.press("Rename")
    assert owner.sees(AWAY)
    standin.hangs = False
    assert owner.sees_no_more(AWAY)
    assert owner.is_told("It is called “Gate” now.")


def test_what_takes_long_on_a_host_that_lives_is_waited_for(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.sees("Saving interrupts")
    owner.evaluate("AbortSignal.timeout = () => new AbortController().signal")  # a busy machine may be late with any answer
    standin.slow_change = 4.0
    owner.enter("Name", "Gate")
    owner.press("Rename")
    assert owner.is_told("It is called “Gate” now.")
    assert not owner.evaluate(f"window.told.some((one) => one.includes('{AWAY}'))")


def test_a_camera_that_waits_does_not_stand_out_while_the_host_is_away(owner: Owner, standin: StandIn) -> None:
    def colours() -> set[str]:
        return set(owner.evaluate("[...document.querySelectorAll('.reason')].map((one) => getComputedStyle(one).backgroundColor)"))

    owner.open()
    owner.sees_on_card(1, "Waits")
    assert len(colours()) == 2
    standin.leave()
    assert owner.sees(AWAY)
    assert len(colours()) == 1
    standin.away = False
    assert owner.sees_no_more(AWAY)
    owner.complaints()


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
    assert owner.evaluate("document.querySelectorAll('.busy').length") == 0
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
    assert (owner.field("User name").get_attribute("value"), owner.evaluate("document.activeElement.id")) == ("ann", "password")
    owner.sign_in("ann", PASSWORD)
    assert owner.sees("Front door")
    assert owner.wait(lambda: owner.heading() == "Sharing")
    owner.press("Sign out")
    owner.sees("with the account that you have on their host.")
    assert ENDED not in owner.text()
    assert owner.field("User name").get_attribute("value") == ""
    owner.complaints()
