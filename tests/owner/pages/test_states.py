# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the pages show when there is nothing yet, while they wait, and when the host refuses."""

from __future__ import annotations

import copy
from collections.abc import Iterator
from contextlib import contextmanager
from typing import Any

import pytest
from browser import Owner
from made_up import EMPTY, STATE, came_or_went, done
from selenium.webdriver import Keys
from selenium.webdriver.common.by import By
from standin import StandIn


def test_a_host_without_cameras_says_what_to_do(owner: Owner, standin: StandIn) -> None:
    standin.state = copy.deepcopy(EMPTY)
    owner.open()
    assert owner.sees("No camera is plugged in", "Plug a USB camera into this host", "7, 8, 9")


@pytest.mark.parametrize(
    ("page", "text"),
    [("sharing", "There is nothing to share yet"), ("profile/2", "No camera has this profile"), ("profile/7", "There is no such page")],
)
def test_a_page_with_nothing_to_show_says_so(owner: Owner, standin: StandIn, page: str, text: str) -> None:
    standin.state = copy.deepcopy(EMPTY)
    owner.open(page)
    assert owner.sees(text)


def test_a_page_that_is_opened_again_asks_for_none_of_its_files_again(owner: Owner) -> None:
    owner.open()
    owner.sees("Front door")
    owner.open()
    owner.sees("Front door")
    asked = "performance.getEntriesByType('resource').filter((one) => /page|libraries/.test(one.name) && one.transferSize > 0)"
    assert owner.evaluate(f"{asked}.map((one) => one.name)") == []


def test_of_two_cameras_with_the_same_name_the_ports_are_said(owner: Owner, standin: StandIn) -> None:
    for channel in (0, 1):
        standin.state["channels"][channel]["profile_name"] = "Barn"
    owner.open()
    assert owner.sees("It waits for “Barn, port 3-1.1”")
    owner.press("Stream this one instead")
    assert owner.sees("Stream “Barn, port 3-1.2” instead of “Barn, port 3-1.1”?")


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


@pytest.mark.parametrize("page", ["charts", "events", "host", "profile/1"])
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
    assert owner.sees("2 guests are watching now.", "Guests who watch on an iPhone are not counted.")
    standin.tell("viewers", [1, 0, 0, 0])
    assert owner.sees("One guest is watching now.")
    owner.press("Make a new link")
    assert owner.sees("One guest is watching now, and will then see no picture any more.")
    owner.press("Cancel")
    standin.tell("viewers", [0, 0, 0, 0])
    assert owner.sees("No guest is watching now.")
    owner.press("Make a new link")
    assert owner.wait(lambda: "No guest is watching now." in owner.text("dialog"))
    assert "any more" not in owner.text("dialog")
    owner.press("Cancel")


def test_a_camera_that_is_plugged_in_appears_at_once(owner: Owner, standin: StandIn) -> None:
    standin.state = copy.deepcopy(EMPTY)
    owner.open()
    owner.sees("No camera is plugged in")
    standin.tell("channels", STATE["channels"])
    assert owner.sees_on_card(0, "Front door", "Streams", "3-1.1", "1280 × 720", "15 pictures a second")


def plugged_in(standin: StandIn, *channels: int) -> list[dict[str, Any]]:
    """The channels when the cameras of these have been plugged in, which are away until then."""
    for channel in channels:
        standin.state["channels"][channel]["state"] = "unplugged"
    return STATE["channels"]


# Looks at the page whenever it changes.
WATCH = "new MutationObserver(() => { %s }).observe(document.body, { childList: true, subtree: true, attributes: true })"


def test_a_camera_that_is_plugged_in_is_announced_and_marked(owner: Owner, standin: StandIn) -> None:
    channels = plugged_in(standin, 1)
    owner.open()
    owner.sees_on_card(1, "Garage")
    owner.evaluate("void (window.marked = [], window.most = 0)")
    owner.evaluate(WATCH % "window.most = Math.max(window.most, document.querySelectorAll('.notice').length)")
    owner.evaluate(WATCH % "window.marked.push(...[...document.querySelectorAll('.camera.new')].map((one) => one.dataset.channel))")
    standin.tell("channels", channels)
    assert owner.is_told("“Garage with a name that is rather long” is plugged in")
    assert owner.evaluate("document.querySelector('.notices').getAttribute('role')") == "status"
    assert owner.wait(lambda: set(owner.evaluate("window.marked")) == {"1"})
    standin.state["channels"][1] = {**channels[1], "state": "unplugged", "waits_for": None}
    standin.tell("channels", standin.state["channels"])
    assert owner.is_told("“Garage with a name that is rather long” was unplugged.")
    assert owner.evaluate("window.most") == 1  # not beside the contrary
    assert owner.wait(lambda: owner.evaluate("document.querySelectorAll('.camera.new, .notice').length") == 0)


def test_it_is_announced_on_every_page_that_a_stream_goes_on_when_its_camera_is_back(owner: Owner, standin: StandIn) -> None:
    owner.open("sharing")
    owner.sees("Copy link")
    assert "instead of a picture" not in owner.text()
    away, off, waits = (STATE["channels"][number]["reasons"] for number in (5, 2, 1))
    for values, guests in (({"state": "unplugged", "reasons": away}, "Their picture comes back by itself as soon as the camera is plugged in again."),
                           ({"state": "plugged", "switched_on": False, "reasons": off}, "The USB port of the camera is switched off: guests see this"),
                           ({"switched_on": True, "reasons": waits}, "The camera waits for another one: guests")):
        standin.state["channels"][0] |= {"streams": False, **values}
        standin.tell("channels", standin.state["channels"])
        assert owner.sees(guests)
    assert owner.is_told("“Front door” was unplugged; its stream goes on when it is back.")


def test_a_message_lies_over_nothing_that_can_be_pressed(owner: Owner, standin: StandIn) -> None:
    """On a phone it lies over the page, until that is touched."""
    channels = plugged_in(standin, 0, 1, 2)
    for width, height in ((1280, 800), (2560, 1440)):
        owner.size(width, height)
        owner.open()
        owner.sees_on_card(1, "Garage")
        end = f"scrollTo(0, document.documentElement.scrollHeight); window.covered = {COVERED};"
        owner.evaluate(WATCH % f"if (document.querySelectorAll('.notice').length === 3) {{ {end} }}")
        standin.tell("channels", channels)
        assert owner.wait(lambda: owner.evaluate("window.covered ?? null") is not None)
        assert owner.evaluate("window.covered") == [], width


@pytest.mark.parametrize("touched", ["h1", ".notice:not(.refusal)"])
def test_a_touch_takes_a_message_away_from_what_it_lies_over_but_not_a_refusal(owner: Owner, standin: StandIn, touched: str) -> None:
    channels = plugged_in(standin, 1)
    standin.refusal = {"reason": "not_attached", "text": "It is not attached.", "cure": None}
    owner.open()
    owner.press("Switch the port on")
    assert owner.sees("The camera is not plugged in.")
    owner.size(390, 844)
    owner.evaluate("document.querySelector('h1').click()")
    assert "The camera is not plugged in." in owner.text()
    left = f"window.place ??= document.querySelector('.notices').className; document.querySelector('{touched}').click(); window.left ??= document.querySelectorAll('.notice').length"
    owner.evaluate(WATCH % f"if (document.querySelector('.notice:not(.refusal)')) {{ {left} }}")
    standin.tell("channels", channels)
    assert owner.is_told("“Garage with a name that is rather long” is plugged in")
    assert owner.wait(lambda: owner.evaluate("window.left === 0"))
    assert owner.evaluate("window.place") == "notices above"  # wherever was touched before
    owner.complaints()  # of the refusal


def test_a_refusal_is_next_to_the_keyboard_and_closed_with_a_key(owner: Owner, standin: StandIn) -> None:
    standin.refusal = {"reason": "not_attached", "text": "It is not attached.", "cure": None}
    owner.open("profile/0")
    owner.turn("Time in the picture")
    owner.sees("The camera is not plugged in.")
    owner.press_keys(Keys.TAB)
    assert owner.wait(lambda: owner.focused() == "Close")
    owner.press_keys(Keys.TAB)
    assert owner.wait(lambda: owner.focused() != "Close")
    owner.press_keys(Keys.SHIFT + Keys.TAB)
    assert owner.evaluate(FOCUSED_SWITCH) == "Time in the picture"
    owner.press_keys(Keys.ESCAPE)
    assert owner.sees_no_more("The camera is not plugged in.")
    owner.complaints()  # of the refusal


FOCUSED_SWITCH = "document.activeElement.closest('.switch')?.innerText"


def test_the_keyboard_goes_back_to_where_it_was_when_a_message_is_closed(owner: Owner, standin: StandIn) -> None:
    standin.refusal = {"reason": "not_attached", "text": "It is not attached.", "cure": None}
    owner.open("profile/0")
    owner.turn("Time in the picture")
    owner.sees("The camera is not plugged in.")
    owner.evaluate("document.querySelector('.notice .bare').focus()")
    owner.press_keys(Keys.ENTER)
    assert owner.sees_no_more("The camera is not plugged in.")
    assert owner.evaluate(FOCUSED_SWITCH) == "Time in the picture"
    owner.turn("Time in the picture")
    owner.sees("The camera is not plugged in.")
    standin.refusal = None
    owner.turn("Time in the picture")  # which says nothing when it is done
    assert owner.sees_no_more("The camera is not plugged in.")
    owner.complaints()  # of the refusal


@pytest.mark.parametrize(("scroll", "is_above"), [("start", False), ("end", True)])
def test_on_a_phone_a_message_is_away_from_what_was_pressed(owner: Owner, standin: StandIn, scroll: str, is_above: bool) -> None:
    standin.refusal = {"reason": "not_attached", "text": "It is not attached.", "cure": None}
    owner.size(390, 844)
    owner.open()
    owner.sees_on_card(2, "Switch the port on")
    button = "document.querySelector('[data-channel=\"2\"] button')"
    owner.evaluate(f"{button}.scrollIntoView({{ block: '{scroll}' }})")
    owner.evaluate(f"{button}.click()")
    owner.sees("The camera is not plugged in.")
    assert owner.evaluate("document.querySelector('.notice').getBoundingClientRect().top < innerHeight / 2") == is_above
    owner.evaluate(f"scrollTo(0, {0 if is_above else 'document.documentElement.scrollHeight'})")
    assert owner.evaluate(COVERED) == []
    owner.complaints()  # of the refusal


# What can be pressed and is at least partly under a message.
COVERED = """(() => {
  const messages = [...document.querySelectorAll('.notice')].map((one) => one.getBoundingClientRect());
  const meets = (one, other) => one.left < other.right && other.left < one.right && one.top < other.bottom && other.top < one.bottom;
  return [...document.querySelectorAll('main :is(a, button, select, input), nav a')].filter((one) =>
    messages.some((message) => meets(message, one.getBoundingClientRect()))).map((one) => one.outerHTML);
})()"""


def test_a_camera_that_waits_is_offered_one_thing_to_do(owner: Owner, standin: StandIn) -> None:
    """It has no profile either, and its port is off, in this order."""
    camera = standin.state["channels"][1]
    camera["profile"] = None
    camera["reasons"].append({**camera["reasons"][0], "reason": "unbound", "cause": "unbound"})
    owner.open()
    assert owner.sees_on_card(1, "It waits for “Front door”", "It has no profile, and other cameras have all four; “Move a profile here” takes that of “Front door”, which then has none")
    assert "instead" not in owner.card(1) and "another USB port" not in owner.card(1)
    standin.state["profiles"][1] |= {"channel": None}
    standin.tell("profiles", standin.state["profiles"])
    assert owner.sees_on_card(1, "It has no profile as long as it waits; “Stream this one instead” gives it one.", "Stream this one instead")
    assert "Start its stream" not in owner.card(1)
    camera["reasons"].append({**camera["reasons"][0], "reason": "switched_off", "cause": "switched_off"})
    standin.tell("channels", standin.state["channels"])
    assert owner.sees_on_card(1, "Switch the port on")
    assert "instead" not in owner.card(1)


@pytest.mark.parametrize(
    ("channel", "is_said"), [(0, True), (1, False), (2, False), (5, False)], ids=["streams", "waits", "switched_off", "unplugged"]
)
def test_only_of_a_camera_that_sends_pictures_size_and_rate_are_said(owner: Owner, channel: int, is_said: bool) -> None:
    owner.open()
    owner.sees_on_card(channel, "Profile")
    assert ("Rate" in owner.card(channel), "Size" in owner.card(channel)) == (is_said, is_said)


def test_a_card_keeps_its_room_when_something_on_it_is_pressed_but_no_hole(owner: Owner, standin: StandIn) -> None:
    owner.open()
    owner.sees_on_card(2, "Switch the port on")
    card = "document.querySelector('[data-channel=\"2\"]')"
    height, gap = f"{card}.offsetHeight", f"parseFloat(getComputedStyle({card}).marginBottom)"
    before = owner.evaluate(height)
    standin.state["channels"][2] |= {"switched_on": True, "reasons": []}
    owner.press("Switch the port on")
    standin.tell("channels", standin.state["channels"])
    assert owner.sees_on_card(2, "Begins")
    assert owner.evaluate(height) < before == owner.evaluate(f"{height} + {gap}")
    owner.evaluate("scrollBy(0, 50)")
    assert owner.wait(lambda: owner.evaluate(gap) == 0)


def test_the_keyboard_goes_to_the_camera_when_what_was_pressed_disappears(owner: Owner, standin: StandIn) -> None:
    owner.open()
    owner.sees_on_card(2, "Switch the port on")
    owner.evaluate("document.querySelector('[data-channel=\"2\"] button').focus()")
    owner.press_keys(Keys.ENTER)
    standin.state["channels"][2] |= {"switched_on": True, "reasons": []}
    standin.tell("channels", standin.state["channels"])
    assert owner.wait(lambda: owner.focused() == "Cam <img src=x onerror=alert(1)>")


def test_a_camera_that_was_switched_off_for_another_one_can_stream_instead_of_it_again(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][1] |= {"switched_on": False, "reasons": [{**standin.state["channels"][2]["reasons"][0]}]}
    owner.open()
    owner.sees_on_card(1, "Switched off", "Stream this one instead", "Switch the port on")
    assert "instead" not in owner.card(2)  # in whose place none streams
    owner.press("Stream this one instead")
    assert owner.sees("its USB port is switched off, so that “Garage with a name that is rather long” gets the room.")
    owner.press("Stream this one instead")
    switched = [("PUT", "/channels/0/switch", {"on": False, "for": 1}), ("PUT", "/channels/1/switch", {"on": True})]
    assert owner.wait(lambda: [one for one in standin.asked if one[0] == "PUT"] == switched)


@pytest.mark.parametrize(
    ("channels", "said"),
    [
        ([0], "Every camera streams."),
        ([1], "The camera does not stream now. Its card says why."),
        ([1, 2], "No camera streams now. Each card says why."),
        ([0, 1], "1 of 2 cameras streams. The card of the other one says why it does not."),
        ([0, 1, 2], "1 of 3 cameras streams. The cards of the others say why they do not."),
    ],
)
def test_how_many_cameras_stream_is_said_in_the_right_number(owner: Owner, standin: StandIn, channels: list[int], said: str) -> None:
    for one in standin.state["channels"]:
        if one["channel"] not in channels:
            one["state"] = "free"
    owner.open()
    assert owner.sees(said)


def test_a_camera_that_cannot_be_used_is_announced_as_such(owner: Owner, standin: StandIn) -> None:
    channels = plugged_in(standin, 3)
    owner.open()
    owner.sees_on_card(3, "Old camera")
    standin.tell("channels", channels)
    assert owner.is_told("“Old camera” is plugged in, but cannot be used. Its card on the overview says why.")


@pytest.mark.parametrize(
    ("channel", "told"),
    [(0, "“Front door” is plugged in."),
     (1, "“Garage with a name that is rather long” is plugged in, and cannot stream beside another camera. Its card on the overview says why.")],
)  # fmt: skip
def test_a_camera_that_has_to_wait_is_announced_as_such(owner: Owner, standin: StandIn, channel: int, told: str) -> None:
    channels = plugged_in(standin, channel)
    owner.open()
    owner.sees_on_card(channel, "USB port")
    standin.tell("channels", channels)
    assert owner.is_told(told)


def test_a_camera_that_is_away_and_has_no_profile_has_none_to_make_free(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][5] |= {"profile": None, "profile_name": None}
    owner.open()
    assert owner.sees_on_card(5, "forget it; that makes its place free.")


def test_a_second_step_that_is_refused_is_said_with_the_first(owner: Owner, standin: StandIn) -> None:
    camera = standin.state["channels"][1]
    camera["profile"] = None
    standin.state["profiles"][1]["channel"] = None
    standin.refused_path = "/channels/1/profile"
    standin.refusal = {"reason": "no_format", "text": "It offers nothing.", "cure": None}
    owner.open()
    owner.press("Stream this one instead")
    owner.press("Stream this one instead")
    assert owner.sees("“Front door” is switched off, but “Garage with a name that is rather long” could not be started.")
    assert owner.sees("The camera offers nothing that this host can use.")
    changes = [one for one in standin.asked if one[0] == "PUT"]
    assert changes == [("PUT", "/channels/0/switch", {"on": False, "for": 1}), ("PUT", "/channels/1/profile", {"profile": 1, "anyway": False})]
    owner.complaints()  # of the refusal


def test_it_is_said_that_a_password_is_lost_with_the_link(owner: Owner) -> None:
    owner.open("sharing")
    owner.turn("Share this camera")
    assert owner.sees("Its password is lost too: sharing again begins without one.")
    owner.press("Cancel")
    owner.press("Make a new link")
    assert owner.sees("The password stays.")


def test_a_password_of_guests_that_is_too_short_is_not_sent(owner: Owner, standin: StandIn) -> None:
    owner.open("sharing")
    owner.sees("At least 6 characters.")
    owner.enter("New password for guests", "short")
    owner.press("Change password")
    assert owner.sees("This password is too short: it needs at least 6 characters.")
    assert owner.evaluate("document.activeElement.id") == "password-0"
    owner.enter("New password for guests", "longer")
    owner.press("Change password")
    assert owner.sees("The link changes: the one that you gave away stops working")
    owner.press("Cancel")
    assert standin.asked == []


def test_a_link_that_only_the_host_can_open_is_not_shown_to_a_phone(owner: Owner, standin: StandIn) -> None:
    """It says who changes that."""
    owner.open("sharing")
    owner.sees("Copy link", "Show a code for a phone")
    assert "Not here: Night camera. Only a camera with a profile can be shared" in owner.text()
    assert "Only a browser on the host" not in owner.text()
    with local(owner, standin) as here:
        assert here.sees(f"http://127.0.0.1:{standin.port}/share?", "Only a browser on the host “Attic” itself can open this link", "“man usbdev-pages”")
        assert "Show a code for a phone" not in here.text()
        standin.state["host"]["open"] = True
        standin.tell("state", standin.state)
        assert here.sees("Only a browser on the host “Attic” itself can open this link, and no phone: the host is in no network now.")
        assert "Show a code for a phone" not in here.text()


def test_on_the_host_itself_a_link_begins_as_others_reach_the_pages(owner: Owner, standin: StandIn) -> None:
    standin.state["host"]["origin"] = "http://192.168.1.5:8080"
    with local(owner, standin) as here:
        assert here.sees("http://192.168.1.5:8080/share?", "Show a code for a phone")
        assert "Only a browser on the host" not in here.text()


@contextmanager
def local(owner: Owner, standin: StandIn) -> Iterator[Owner]:
    """Somebody at the machine of the server, who looks at the links."""
    here = Owner(owner.browser, f"http://127.0.0.1:{standin.port}")
    here.open()
    here.evaluate("localStorage.setItem('signedIn', '1')")
    here.open("sharing")
    here.sees("Copy link")
    yield here
    here.browser.get(owner.origin)


def test_the_code_for_a_phone_can_be_hidden_again(owner: Owner) -> None:
    owner.open("sharing")
    owner.press("Show a code for a phone")
    owner.sees("Scan it with the phone")
    owner.press("Hide the code")
    assert owner.sees_no_more("Scan it with the phone")


@pytest.mark.parametrize(
    ("name", "promise"),
    [("Front door", "Guests see the picture and the name “Front door”, and nothing else."), (None, "Guests see the picture and nothing else.")],
)
def test_a_guest_is_promised_only_the_name_that_somebody_gave(owner: Owner, standin: StandIn, name: str | None, promise: str) -> None:
    standin.state["profiles"][0]["name"] = name
    owner.open("sharing")
    assert owner.sees(promise)


def test_an_event_names_the_camera_that_it_is_about(owner: Owner) -> None:
    owner.open("events")
    owner.sees("Rate set to 24 pictures a second")
    events = owner.evaluate("[...document.querySelectorAll('.event')].map((one) => one.innerText)")
    assert ["Front door" in one for one in events[:6]] == [True, True, False, False, False, False]


@pytest.mark.parametrize("width", [390, 1280])
def test_an_event_names_the_user_who_did_it(owner: Owner, width: int) -> None:
    owner.size(width, 800)
    owner.open("events")
    owner.sees("Password for guests set, with a new link")
    events = owner.evaluate("[...document.querySelectorAll('.event')].map((one) => one.innerText)")
    assert ["by ann" in one for one in events[:4]] == [True, False, True, False]


def test_older_events_are_those_before_what_is_known_of_each_kind(owner: Owner, standin: StandIn) -> None:
    standin.events = [*standin.events, *(done(-number, 200 + number, "Signed in") for number in range(30))]
    owner.open("events")
    owner.press("Older events")
    known = {"before": "21", "before_turn": "1", "before_act": "-29"}
    assert owner.wait(lambda: [query for _, path, query in standin.asked if path == "/events" and known.items() <= query.items()])


def test_how_the_host_has_logged_it_is_shown_on_demand(owner: Owner) -> None:
    owner.open("events")
    assert owner.sees("Rate set to 24 pictures a second", "The encoder of profile 1 has ended")
    assert "Modified Channel 1" not in owner.text()
    owner.turn("Show how the host has logged it")
    assert owner.sees("Rate set to 24 pictures a second", "Modified Channel 1 FPS: 24.00", "their “Channel 1” is profile 0 here")
    assert owner.text().count("The encoder of profile 1 has ended") == 4  # which has no other words
    owner.turn("Show how the host has logged it")
    assert owner.sees_no_more("Modified Channel 1")


def test_events_are_asked_for_in_the_language_of_the_page(owner: Owner, standin: StandIn) -> None:
    owner.open("events")
    owner.choose("Language", "Deutsch")
    owner.press("Alle als CSV exportieren")
    assert owner.wait(lambda: ("GET", "/events.csv", {"language": "de", "zone": "UTC"}) in standin.asked)
    assert owner.wait(lambda: [query["language"] for _, path, query in standin.asked if path == "/events"][-1] == "de")


def test_a_search_that_finds_nothing_is_cleared_with_a_button(owner: Owner) -> None:
    owner.open("events")
    owner.enter("Search", "nothing like it")
    assert owner.sees("No event fits", "So there is nothing to export.")
    export = owner.wait(lambda: owner.browser.find_element(By.XPATH, "//button[normalize-space()='Export these as CSV']"))
    assert not export.is_enabled() and export.get_attribute("aria-describedby") == "nothing"
    owner.press("Show all events")
    assert owner.sees("Rate set to 24 pictures a second", "Export all as CSV")
    assert owner.evaluate("document.activeElement.id + document.activeElement.value") == "search"


@pytest.mark.parametrize(("search", "told"), [("no such", "No event fits"), ("Got profile", "4 events"), ("Unplugged", "One event"), ("", "25 events")])
def test_how_many_events_are_found_is_said(owner: Owner, search: str, told: str) -> None:
    owner.open("events")
    owner.enter("Search", search)
    assert owner.wait(lambda: owner.evaluate("document.querySelector('main p[role=status]')?.textContent") == told)


def test_in_the_picture_of_usb_only_what_is_shared_is_blue(owner: Owner) -> None:
    owner.open()
    owner.sees("USB connections")
    assert owner.evaluate("document.querySelectorAll('.usb-tree .line.shared').length") == 3
    assert owner.evaluate("document.querySelectorAll('.usb-tree .line.away').length") == 1
    assert any("Garage with a name that is rather long" in title for title in titles(owner))


def titles(owner: Owner) -> list[str]:
    """The boxes of the picture."""
    found = owner.evaluate("[...document.querySelectorAll('.usb-tree title')].map((one) => one.textContent)")
    assert isinstance(found, list)
    return found


def test_the_picture_of_usb_has_controllers_without_a_camera_and_says_where_there_is_room(owner: Owner, standin: StandIn) -> None:
    standin.state["usb"]["controllers"].append({"path": "/x", "bridge": None, "buses": [9], "ports": [], "free_ports": []})
    owner.open()
    ports = "of the USB ports 1-3, 1-5 to 1-7, 5-3 to 5-4, and 7-1 to 7-2."
    assert owner.sees(f"To stream, one more camera needs one of the four profiles, which other cameras have, and one {ports}")
    standin.state["profiles"][3] |= {"channel": None}
    standin.tell("profiles", standin.state["profiles"])
    assert owner.sees(f"One more camera can stream in any {ports}")
    assert "Hub, 3-1 · no room" in titles(owner)
    controllers = [title for title in titles(owner) if title.startswith("USB controller")]
    assert controllers == [f"USB controller, bus {one}" for one in ("3 · no room", "5 · has room", "1 · has room", "7, 8 · has room", "9 · no camera")]


def test_a_hub_of_which_the_sockets_are_not_known_is_not_called_full_while_no_camera_of_it_streams(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][0] |= {"switched_on": False, "streams": False}
    standin.state["channels"][1] |= {"profile": None, "waits_for": None}
    owner.open()
    assert owner.wait(lambda: "Hub, 3-1" in titles(owner))


def test_a_camera_that_is_neither_there_nor_switched_on_has_first_to_be_there(owner: Owner, standin: StandIn) -> None:
    reasons = standin.state["channels"][2]["reasons"] + standin.state["channels"][5]["reasons"]
    standin.state["channels"][5] |= {"switched_on": False, "reasons": reasons}
    owner.open("profile/3")
    assert owner.sees("Unplugged", "Forget this camera")
    assert "Switch the port on" not in owner.text(".reasons")


def test_of_two_buses_of_a_controller_the_one_that_has_room_is_named(owner: Owner, standin: StandIn) -> None:
    standin.state["usb"]["controllers"][3]["free_ports"] = ["8-1", "8-2"]
    owner.open()
    owner.sees("USB connections")
    assert "USB controller, bus 7, 8 · bus 8 has room" in titles(owner)


def test_free_ports_of_a_hub_are_said_to_have_room(owner: Owner, standin: StandIn) -> None:
    standin.state["usb"]["controllers"][1]["free_ports"] = ["3-2", "3-1.3", "3-1.4"]
    owner.open()
    assert owner.sees("3-2, 3-1.3 to 3-1.4, 5-3 to 5-4")
    assert "Hub, 3-1 · has room" in titles(owner)


def test_a_camera_of_the_picture_leads_to_its_page(owner: Owner) -> None:
    owner.open()
    owner.sees("USB connections")
    links = "[...document.querySelectorAll('.usb-tree a')].map((one) => [one.querySelector('text').textContent, one.getAttribute('href')])"
    assert {"Front door": "#/profile/0", "Old camera": "#/camera/3"}.items() <= dict(owner.evaluate(links)).items()


def test_a_camera_without_a_profile_has_a_page_until_it_gets_one(owner: Owner, standin: StandIn) -> None:
    owner.open()
    owner.press("Old camera")
    assert owner.sees("Not supported", "This host cannot use its picture format", "Channel 3")
    assert owner.wait(lambda: owner.heading() == "Old camera")
    standin.state["channels"][3]["profile"] = 3
    standin.tell("channels", standin.state["channels"])
    assert owner.sees("Take its profile away")


def test_a_box_of_the_picture_is_as_high_as_its_name(owner: Owner) -> None:
    for width, height in ((390, 844), (1280, 800)):
        owner.size(width, height)
        owner.open()
        owner.sees("USB connections")
        boxes = "[...document.querySelectorAll('.usb')].map((one) => [one.querySelectorAll('text').length, one.querySelector('rect').getBBox().height])"
        assert {tuple(one) for one in owner.evaluate(boxes)} == {(2, 46), (3, 64)}


@pytest.mark.parametrize(
    ("values", "advice"),
    [
        ({"profile": None}, "To have both, plug this one into another USB port: 1-3, 1-5 to 1-7, 5-3 to 5-4, and 7-1 to 7-2."),
        ({}, "There it is a new camera, to which you then move its profile."),
        ({"port": "8-3"}, "To have both, plug this one into another USB port: 8-1 to 8-2."),
    ],
)
def test_a_camera_that_waits_is_sent_to_a_port_where_it_streams(owner: Owner, standin: StandIn, values: dict[str, Any], advice: str) -> None:
    standin.state["channels"][1] |= values
    standin.state["profiles"][3] |= {"channel": None}
    owner.open()
    assert owner.sees_on_card(1, "one camera can stream, however little it sends.", advice)


def test_if_no_port_has_room_a_camera_that_waits_is_sent_nowhere(owner: Owner, standin: StandIn) -> None:
    for controller in standin.state["usb"]["controllers"]:
        controller["free_ports"] = []
    owner.open()
    no_room = "no free USB port of this host has room for one more camera."
    assert owner.sees_on_card(1, f"To have both does not work here: {no_room}", "Stream this one instead")


def test_a_camera_that_waits_is_not_sent_to_a_port_that_is_too_fast_for_it(owner: Owner, standin: StandIn) -> None:
    for controller in standin.state["usb"]["controllers"]:
        controller["free_ports"] = [port for port in controller["free_ports"] if port.startswith("8-")]
    owner.open()
    assert owner.sees_on_card(1, "To have both does not work here")


@pytest.mark.parametrize(("port", "is_said"), [("5-1", False), ("3-2", True)])
def test_it_is_said_before_whom_a_camera_waits_for_when_it_is_switched_on(owner: Owner, standin: StandIn, port: str, is_said: bool) -> None:
    standin.state["channels"][2]["port"] = port
    owner.open()
    assert owner.sees_on_card(2, "Switch the port on")
    assert ("If you switch it on now, it waits for “Front door”." in owner.card(2)) == is_said
    assert ("Switch it on; the camera has kept its settings." in owner.card(2)) != is_said


def test_a_camera_without_a_profile_is_not_said_to_have_kept_its_settings(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][2] |= {"profile": None}
    owner.open()
    assert owner.sees_on_card(2, "Switch it on; then it can get a profile, which it needs to stream.")
    assert "kept its settings" not in owner.card(2)


def test_formats_are_listed_in_the_language_of_the_page(owner: Owner) -> None:
    owner.open()
    assert owner.sees_on_card(3, "(NV12 and H264)")
    owner.choose("Language", "Deutsch")
    assert owner.sees_on_card(3, "(NV12 und H264)")
    owner.choose("Sprache", "English")


def test_the_way_in_has_nothing_to_scroll(owner: Owner, standin: StandIn) -> None:
    standin.signed_in = False
    owner.evaluate("localStorage.clear()")
    owner.size(1280, 900)
    owner.open()
    owner.sees("Sign in")
    assert owner.evaluate("getComputedStyle(document.documentElement).overflowY") == "auto"
    assert owner.evaluate("document.documentElement.scrollHeight <= innerHeight")


def test_a_wrong_password_is_forgiven_when_one_types_again(owner: Owner, standin: StandIn) -> None:
    standin.signed_in = False
    owner.evaluate("localStorage.clear()")
    owner.open()
    owner.enter("User name", "ann")
    owner.enter("Password", "wrong")
    owner.press("Show the password")
    assert owner.field("Password").get_attribute("type") == "text"
    place = "document.getElementById('password').getBoundingClientRect().top"
    before = owner.evaluate(place)
    owner.press("Sign in")
    assert owner.sees("The user name or the password is wrong.")
    assert owner.evaluate("document.querySelector('.problem .icon').getBoundingClientRect().width") > 0
    assert owner.evaluate(place) == before
    owner.enter("Password", "s")
    assert "The user name or the password is wrong." not in owner.text()
    owner.complaints()  # of the refusal


def test_who_is_signed_in_is_beside_the_way_out(owner: Owner) -> None:
    owner.open()
    assert owner.sees("ann")
    assert owner.sees("Sign out")


def test_a_refused_change_is_taken_back_with_its_reason(owner: Owner, standin: StandIn) -> None:
    standin.refusal = {"reason": "not_attached", "text": "It is not attached.", "cure": None}
    owner.open("profile/2")
    owner.wait(lambda: not owner.is_on("Use its USB port"))
    owner.turn("Use its USB port")
    assert owner.sees("The camera is not plugged in.")
    assert owner.evaluate("document.querySelector('.refusal > .icon').getBoundingClientRect().width") > 0
    assert not owner.is_on("Use its USB port")
    owner.press("Close")
    assert owner.sees_no_more("The camera is not plugged in.")
    assert owner.complaints() != []  # the browser tells of every refusal


WOULD_WAIT = "“USB 2.0 Camera: HD USB Camera” cannot take it now: it would wait for “Front door”."
IN_PORT_1_2, IN_PORT_3_1_2 = "Port 1-2: Night camera", "Port 3-1.2: USB 2.0 Camera: HD USB Camera"


@pytest.mark.parametrize(("profile", "offered", "others"), [(0, [IN_PORT_1_2, IN_PORT_3_1_2], []), (2, [IN_PORT_1_2], [WOULD_WAIT])])
def test_a_camera_that_would_have_to_wait_is_not_offered_a_profile(
    owner: Owner, standin: StandIn, profile: int, offered: list[str], others: list[str]
) -> None:
    """It waits for the camera of profile 0, which it does not if it gets that one's profile."""
    standin.state["channels"][1] |= {"profile": None, "profile_name": None}
    standin.state["profiles"][1] |= {"channel": None}
    owner.open(f"profile/{profile}")
    owner.press("Move to another camera")
    assert owner.field("To the camera").text.split("\n") == offered
    assert ("The stream then comes from the camera that you choose." in owner.text("dialog")) == (len(offered) > 1)
    assert ("A shared link" in owner.text("dialog")) == (profile == 0)  # the only one that is shared
    assert [one for one in owner.text("dialog").split("\n") if "cannot take it now" in one] == others
    owner.press("Cancel")


def test_if_no_camera_can_take_a_profile_the_button_that_moves_it_is_not_active_and_says_why(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][1] |= {"profile": None, "profile_name": None}
    standin.state["channels"][4] |= {"switched_on": False}
    standin.state["profiles"][1] |= {"channel": None}
    owner.open("profile/2")
    assert owner.sees("“Move to another camera”: no other camera can take the profile now.", WOULD_WAIT)
    assert owner.sees("“Night camera” cannot take it now: its USB port is switched off.", "Plug in a camera that can stream beside the others")
    button = "[...document.querySelectorAll('button')].find((one) => one.innerText === 'Move to another camera')"
    why = f"document.getElementById({button}.getAttribute('aria-describedby')).innerText"
    assert WOULD_WAIT in owner.evaluate(why)
    owner.press("Move to another camera")
    owner.evaluate(f"{button}.focus()")
    owner.press_keys(Keys.ENTER)
    assert owner.evaluate("document.querySelector('dialog')") is None
    assert owner.barriers() == []
    standin.state["channels"][4] |= {"switched_on": True}
    standin.tell("channels", standin.state["channels"])
    assert owner.sees_no_more("no other camera can take the profile now")
    owner.press_keys(Keys.ENTER)
    assert owner.sees("Move the profile of")
    owner.press("Cancel")


@pytest.mark.parametrize(
    ("name", "promise", "told"),
    [("Front door", "and the name that you gave it", "“Front door” now shows the picture of “Night camera”."),
     ("", "The stream then has the name of “Night camera”.", "The stream comes from “Night camera” now; “HD Pro Webcam C920” has no profile any more.")],
)  # fmt: skip
def test_only_a_name_that_somebody_gave_moves_with_a_profile(owner: Owner, standin: StandIn, name: str, promise: str, told: str) -> None:
    standin.state["channels"][0]["profile_name"] = name
    owner.open("profile/0")
    owner.press("Move to another camera")
    assert owner.sees("The stream then comes from “Night camera”.", "loses it, and cannot stream without one.", promise, "A shared link gets a new address; the old one stops working.")
    owner.press("Move")
    assert owner.is_told(told)


RATE, SIZE = {"setting": "rate", "wanted": "24", "taken": "30"}, {"setting": "size", "wanted": "1280x720", "taken": "640x480"}


@pytest.mark.parametrize(
    ("differences", "promise"),
    [([], "“Night camera” offers the same settings."),
     ([SIZE, RATE], "does not offer the same settings. Size: 640 × 480 instead of 1280 × 720. Rate: 30 pictures a second instead of 24"),
     (None, "The host does not know now whether “Night camera” offers the same settings. What it does not offer becomes the nearest")],
)  # fmt: skip
def test_what_another_camera_makes_of_the_settings_is_said_before_a_move(
    owner: Owner, standin: StandIn, differences: list[dict[str, str]] | None, promise: str
) -> None:
    standin.differences = differences
    owner.open("profile/0")
    owner.press("Move to another camera")
    assert owner.sees(promise)
    owner.press("Cancel")
    owner.complaints()  # of the question that is not answered


def test_each_camera_is_asked_when_it_is_chosen_for_a_move(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][1] |= {"profile": None, "profile_name": None}
    standin.state["profiles"][1] |= {"channel": None}
    owner.open("profile/0")
    owner.press("Move to another camera")
    assert owner.sees("“Night camera” offers the same settings.")
    owner.choose("To the camera", IN_PORT_3_1_2)
    assert owner.sees("“USB 2.0 Camera: HD USB Camera” offers the same settings.")
    assert [query["channel"] for method, path, query in standin.asked if path == "/profiles/0/move"] == ["4", "1"]
    owner.press("Cancel")


@pytest.mark.parametrize("name", ["Front door", ""])
def test_only_a_name_that_somebody_gave_is_lost_with_a_profile(owner: Owner, standin: StandIn, name: str) -> None:
    standin.state["channels"][0]["profile_name"] = name
    owner.open("profile/0")
    owner.press("End this stream")
    owner.sees("Its profile becomes free for another camera.")
    assert ("Its name is lost." in owner.text("dialog")) == bool(name)
    owner.press("Cancel")


def test_a_refusal_is_not_said_on_the_next_page(owner: Owner, standin: StandIn) -> None:
    standin.refusal = {"reason": "not_attached", "text": "It is not attached.", "cure": None}
    owner.open("profile/2")
    owner.turn("Use its USB port")
    owner.sees("The camera is not plugged in.")
    owner.press("Sharing")
    assert owner.sees_no_more("The camera is not plugged in.")
    assert owner.complaints() != []  # the browser tells of every refusal


def test_a_refused_move_is_said_in_the_language_of_the_page(owner: Owner, standin: StandIn) -> None:
    standin.refusal = {"reason": "port_off", "text": "Its port is off.", "other_channel": None, "collision": None}
    owner.open("profile/0")
    owner.choose("Language", "Deutsch")
    owner.press("Auf eine andere Kamera verschieben")
    owner.press("Verschieben")
    assert owner.sees("Der USB-Anschluss der Kamera ist ausgeschaltet; schalten Sie ihn zuerst ein.")
    assert "Its port is off." not in owner.text()
    standin.refusal = {"reason": "failed", "text": "It could not be stored.", "cure": None}
    owner.press("Auf eine andere Kamera verschieben")
    owner.press("Verschieben")
    assert owner.sees("Der Host konnte das nicht ausführen.")
    assert "It could not be stored." not in owner.text()
    owner.choose("Sprache", "English")
    owner.complaints()  # of the refusal


@pytest.mark.parametrize(("other", "named"), [(2, "“Cam <img src=x onerror=alert(1)>”"), (None, "another camera")])
def test_a_refusal_names_the_camera_that_is_in_the_way(owner: Owner, standin: StandIn, other: int | None, named: str) -> None:
    standin.refusal = {"reason": "port_kept", "text": "The port is kept.", "other_channel": other, "collision": None}
    owner.open("profile/0")
    owner.press("Move to another camera")
    owner.press("Move")
    assert owner.sees(f"The port is kept for {named}; forget that one first.")
    owner.complaints()  # of the refusal


def test_a_name_from_outside_is_only_text(owner: Owner) -> None:
    owner.open()
    assert owner.sees_on_card(2, "Cam <img src=x onerror=alert(1)>")
    assert owner.evaluate("document.querySelectorAll('img[src=x]').length") == 0


def test_the_way_out_of_a_question_is_first_and_changes_nothing(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.press("End this stream")
    assert owner.sees("End the stream of “Front door”?", "The shared link stops working, for good.", "switch the camera’s USB port off instead")
    assert owner.wait(lambda: owner.focused() == "Cancel")
    owner.press_keys(Keys.ESCAPE)
    assert owner.sees_no_more("End the stream of “Front door”?")
    assert owner.wait(lambda: owner.focused() == "End this stream")
    assert [one for one in standin.asked if one[0] == "DELETE"] == []


def test_a_link_is_readable_to_its_end_in_a_small_window(owner: Owner) -> None:
    owner.size(320, 568)
    owner.open("sharing")
    owner.sees("/share?ssid=39202766&token=" + 32 * "a")
    assert owner.evaluate("[...document.querySelectorAll('.link')].every((one) => one.scrollWidth <= one.clientWidth)")


def test_a_camera_that_comes_or_goes_is_an_event_and_marked_as_new(owner: Owner, standin: StandIn) -> None:
    owner.open("events")
    owner.sees("Night camera")
    assert owner.evaluate("document.querySelectorAll('.fresh').length") == 0
    standin.events = [came_or_went(3, 0, "plugged"), *standin.events]
    standin.tell("happened", 3)
    fresh = "[...document.querySelectorAll('.fresh')].map((one) => one.innerText.replace(/\\s+/g, ' '))"
    assert owner.wait(lambda: len(owner.evaluate(fresh)) == 1)
    assert "Plugged in" in owner.evaluate(fresh)[0] and "Night camera 1-1" in owner.evaluate(fresh)[0]


def test_what_is_found_is_exported_and_the_file_is_named(owner: Owner, standin: StandIn) -> None:
    owner.open("events")
    owner.press("Export all as CSV")
    assert owner.is_told("Saved as events-2026-08-01.csv, where the browser keeps downloads.")
    owner.enter("Search", "Night")
    owner.press("Export these as CSV")
    assert owner.wait(lambda: ("GET", "/events.csv", {"search": "Night", "language": "en", "zone": "UTC"}) in standin.asked)


def test_the_page_does_not_move_sideways_when_a_list_gets_short(owner: Owner) -> None:
    owner.open("events")
    owner.sees("Night camera")
    assert "stable" in owner.evaluate("getComputedStyle(document.documentElement).scrollbarGutter")


def test_help_begins_with_what_to_do_and_with_the_words(owner: Owner) -> None:
    owner.open("host")
    owner.sees("Something does not work?")
    headings = "[...document.querySelectorAll('main h2')].map((one) => one.textContent)"
    assert owner.evaluate(headings)[:2] == ["What to do when there is no picture", "The words on these pages"]
    assert "Somebody without an account" not in owner.text()
    owner.evaluate("document.querySelectorAll('summary')[1].click()")
    assert owner.sees("Somebody without an account who watches one camera", "The host compresses the pictures")


def test_a_report_is_made_where_somebody_looks(owner: Owner) -> None:
    owner.size(390, 600)
    owner.open("host")
    owner.press("Make the report")
    owner.sees("The report is made.", "the report", "their “Channel 1” is profile 0 here")
    assert owner.wait(lambda: owner.focused().startswith("The report is made."))
    assert owner.wait(lambda: owner.evaluate("document.querySelector('pre').getBoundingClientRect().top < innerHeight"))


def test_a_chart_names_cameras_and_tells_the_time_of_a_mark(owner: Owner) -> None:
    owner.open("charts")
    owner.sees("Front door", "Garden", "streams now")
    assert owner.field("Time span").get_attribute("value") == "week"  # the shortest that has everything
    owner.evaluate("document.querySelector('.mark.unplugged[tabindex]').focus()")
    assert owner.sees("Jul 29, 2026, 2:00:00 AM, Garage with a name that is rather long, unplugged")


ROWS = "[...document.querySelectorAll('.timeline')].map((one) => [...one.querySelectorAll('.row-name')].map((row) => row.textContent))"


def test_the_rows_of_a_chart_are_cameras_and_of_namesakes_the_ports_are_shown(owner: Owner) -> None:
    owner.open("charts")
    owner.sees("Missed pictures")
    plugs, streams, missed = owner.evaluate(ROWS)
    long = "Garage with a name that is rather long"
    assert plugs == ["Front door", long, "Garden, port 1-1", "Garden, port 5-2"]
    assert streams == ["Front door", long, "Garden, port 1-1", "Profile 3"]  # of which the camera is not known
    assert missed == [long]


def test_below_the_curves_are_the_latest_values(owner: Owner) -> None:
    owner.open("charts")
    legend = "[...document.querySelectorAll('ul.legend:last-of-type li')].map((one) => one.textContent.trim()).filter((one) => one.includes(':'))"
    assert owner.wait(lambda: owner.evaluate(legend) == ["Time: now", "USB bus 1: 0%", "USB bus 3: 41%"])


def test_a_mark_is_chosen_with_a_finger_too(owner: Owner) -> None:
    owner.size(390, 844)
    owner.open("charts")
    assert owner.sees("Point at a mark or choose it: its time then stands here.")
    owner.evaluate("document.querySelector('.mark.unplugged[tabindex]').click()")
    assert owner.sees("Garage with a name that is rather long, unplugged")


def test_times_are_written_in_one_way(owner: Owner) -> None:
    """With two digits in German, on charts as beside events."""
    owner.evaluate("localStorage.setItem('language', 'de')")
    owner.open("charts")
    owner.choose("Zeitraum", "Die letzte Stunde")
    scale = "[...document.querySelectorAll('.scale span')].map((one) => one.textContent)"
    assert owner.wait(lambda: owner.evaluate(scale)[:3] == ["09:00", "09:30", "jetzt"])


def test_a_chart_is_also_a_table(owner: Owner) -> None:
    owner.open("charts")
    owner.sees("Streams")
    owner.evaluate("[...document.querySelectorAll('.as-table summary')][1].click()")
    assert owner.sees("From", "Until", "Garden", "Aug 1, 2026, 4:00:00 AM", "now")
    whole = "document.querySelector('.plot:has([open])').offsetWidth === document.querySelector('.plots').offsetWidth"
    lines = "[...document.querySelectorAll('[open] td bdi')].map((one) => one.getClientRects().length)"
    assert (owner.evaluate(whole), set(owner.evaluate(lines))) == (True, {1})
    assert owner.barriers() == []
    owner.size(390, 844)
    table = "document.querySelector('[open] .scrolls')"
    assert owner.evaluate(f"{table}.scrollWidth === {table}.clientWidth")
    assert set(owner.evaluate(lines.replace("td", "td.moment"))) == {1}


def test_a_span_in_which_nothing_happened_says_so(owner: Owner) -> None:
    owner.open("charts")
    owner.choose("Time span", "The last hour")
    assert owner.sees_no_more("Plugged in and out")
    assert owner.sees("Streams", "Front door")
