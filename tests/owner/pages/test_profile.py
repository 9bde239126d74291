# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The page of one camera: what can be set, and what that costs."""

from __future__ import annotations

from typing import Any

import pytest
from browser import Owner
from made_up import FORMATS, SIZES
from selenium.webdriver import Keys
from standin import StandIn


def test_what_somebody_types_stays_when_news_come(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.enter("Name", "Back d")
    standin.tell("channels", [{**one, "switched_on": False} for one in standin.state["channels"]])
    assert owner.wait(lambda: not owner.is_on("Use its USB port"))
    assert owner.field("Name").get_attribute("value") == "Back d"


COST = "With H.264 this camera sends 15 pictures a second at this size, instead of 30 pictures a second."
AS_SENT, UPSIDE_DOWN, MIRRORED = "As the camera sends it", "Upside down (the camera hangs)", "Mirror left and right"
IN_H264 = {"codec": "h264", "width": 1280, "height": 720, "rate": 15}


# The buttons of which one is pressed, below their name.
GROUP = "document.querySelector('[role=\"group\"][aria-labelledby=\"%s\"]')"


def pressed(owner: Owner, name: str) -> list[str]:
    found = f"[...{GROUP % name}.querySelectorAll('[aria-pressed=\"true\"]')].map((one) => one.innerText)"
    return [str(one) for one in owner.evaluate(found)]


def streams_changed(standin: StandIn) -> list[dict[str, Any]]:
    return [body for method, _, body in standin.asked if method == "PATCH"]


def test_what_takes_effect_with_h264_only_sets_it_after_saying_what_that_costs(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][0] |= {"codec": "mjpeg", "rate": 30, "overlay": True, "mirror": False}
    owner.open("profile/0")
    assert owner.sees("These take effect with the format H.264 only", COST)
    assert owner.is_on("Time in the picture")  # as it is stored
    owner.press(UPSIDE_DOWN)
    assert owner.sees("Change “Front door” to the format H.264?", "This host turns pictures", "The picture is interrupted for some seconds")
    assert owner.text("dialog").count(COST) == 1
    assert all(one in owner.text("dialog") for one in (f"Turn the picture: {UPSIDE_DOWN}.", "The time is shown in the picture."))
    owner.press("Cancel")
    assert pressed(owner, "turn") == [AS_SENT]
    assert streams_changed(standin) == []
    owner.press(UPSIDE_DOWN)
    owner.press("Change to H.264")
    assert owner.wait(lambda: streams_changed(standin) == [{**IN_H264, "flip": True, "mirror": True}])


def test_a_picture_that_the_host_encodes_is_turned_at_once(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.sees(UPSIDE_DOWN)
    assert pressed(owner, "turn") == [MIRRORED]
    owner.press(MIRRORED)  # which it is already
    owner.press(UPSIDE_DOWN)
    assert owner.wait(lambda: streams_changed(standin) == [{"flip": True, "mirror": True}])


def test_with_the_keyboard_nobody_turns_the_picture_on_the_way_to_another_choice(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.sees(UPSIDE_DOWN)
    owner.evaluate(f"{GROUP % 'turn'}.querySelector('button').focus()")
    owner.press_keys(Keys.ARROW_DOWN, Keys.ARROW_UP, Keys.TAB)
    assert owner.focused() == UPSIDE_DOWN
    owner.press_keys(Keys.TAB, Keys.TAB)
    assert (owner.focused(), streams_changed(standin)) == ("Flip top and bottom", [])
    owner.press_keys(Keys.SPACE)
    assert owner.wait(lambda: streams_changed(standin) == [{"flip": True, "mirror": False}])
    assert owner.focused() == "Flip top and bottom"


def test_a_choice_that_acts_when_pressed_is_a_group_with_its_name_and_large_enough_for_a_finger(owner: Owner) -> None:
    owner.size(320, 568)
    owner.open("profile/0")
    owner.sees(UPSIDE_DOWN)
    for name, label, count in (("turn", "Turn the picture", 4), ("sound-codec", "Sound format", 2)):
        boxes = f"[...{GROUP % name}.querySelectorAll('button')].map((one) => one.getBoundingClientRect())"
        assert owner.evaluate(f"document.getElementById('{name}').innerText") == label
        assert owner.evaluate(f"{boxes}.filter(({{ width, height, right }}) => width >= 44 && height >= 44 && right <= innerWidth).length") == count


def test_with_the_keyboard_the_volume_is_set_once_when_it_rests_or_is_left(owner: Owner, standin: StandIn) -> None:
    """Each of the steps would begin the stream anew. Here nothing rests long enough at first."""
    owner.open("profile/0")
    owner.sees("Volume: 70 %")
    owner.evaluate("void (window.later = setTimeout, window.setTimeout = (act, time, ...given) => time !== 1000 && later(act, time, ...given))")
    owner.evaluate("document.getElementById('volume').focus()")
    owner.press_keys(Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
    assert owner.sees("Volume: 72 %")
    assert streams_changed(standin) == []
    owner.press_keys(Keys.SHIFT + Keys.TAB)
    assert owner.wait(lambda: streams_changed(standin) == [{"volume": 72}])
    standin.state["channels"][0] |= {"sound": {**standin.state["channels"][0]["sound"], "volume": 72}, "profile_name": "Back door"}
    standin.tell("channels", standin.state["channels"])
    owner.wait(lambda: owner.heading() == "Back door")
    owner.evaluate("document.getElementById('volume').focus()")
    owner.evaluate("void (window.setTimeout = later)")
    owner.press_keys(Keys.ARROW_RIGHT)
    assert owner.wait(lambda: streams_changed(standin)[1:] == [{"volume": 73}])
    assert owner.evaluate("document.activeElement.id") == "volume"


def test_a_choice_that_is_not_saved_is_kept_when_the_format_changes(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][0] |= {"codec": "mjpeg", "rate": 30, "overlay": True, "mirror": False}
    owner.open("profile/0")
    owner.choose("Size", "640 × 480")
    owner.press(UPSIDE_DOWN)
    owner.press("Change to H.264")
    assert owner.wait(lambda: streams_changed(standin) == [{**IN_H264, "width": 640, "height": 480, "flip": True, "mirror": True}])


def test_what_there_is_to_choose_from_is_a_list_and_what_not_a_fact(owner: Owner, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setitem(FORMATS, "codecs", [{"codec": "h264", "sizes": [{"width": 1280, "height": 720, "rates": [0.125]}, SIZES[2]]}])
    owner.open("profile/0")
    assert owner.wait(lambda: owner.evaluate("[...document.querySelectorAll('.stream-form select')].map((one) => one.id)") == ["stream-size"])
    assert owner.text(".stream-form").count("1 picture every 8 seconds") == 1
    assert owner.sees("The first picture then takes up to 8 seconds.")


def test_settings_that_the_camera_does_not_offer_are_told_and_what_stands_in_the_lists_is_what_save_sets(
    owner: Owner, standin: StandIn, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setitem(FORMATS, "codecs", [{"codec": "mjpeg", "sizes": [{"width": 3840, "height": 2160, "rates": [30]}]}])
    standin.state["channels"][0] |= {"codec": "mjpeg", "width": 1280, "height": 720, "rate": 30}
    owner.open("profile/0")
    assert owner.sees("Now set: As the camera sends it (MJPEG), 1280 × 720, 30 pictures a second.", "“Save” sets what is chosen here", "3840 × 2160")
    assert "Not saved yet" not in owner.text()
    owner.press("Save")
    assert owner.wait(lambda: streams_changed(standin) == [{"codec": "mjpeg", "width": 3840, "height": 2160, "rate": 30}])
    standin.state["channels"][0] |= {"width": 3840, "height": 2160}
    standin.tell("channels", standin.state["channels"])
    assert owner.wait(lambda: "Now set" not in owner.text(".stream-form"))


def test_who_waits_for_a_slow_picture_hears_how_long(owner: Owner, standin: StandIn) -> None:
    """What plays is live, and can be enlarged."""
    owner.open("profile/0")
    assert owner.wait(lambda: owner.text(".live") == "Live\nSound on\nFull view")
    standin.hang()
    owner.sees("No picture: the host does not answer.")
    standin.state["channels"][0]["rate"] = 0.125
    standin.has_stream = False
    standin.hangs = False
    assert owner.sees("Waiting for the picture … One comes every 8 seconds.")
    assert owner.wait(lambda: owner.text(".lead .standing") == "Begins")
    standin.has_stream = True
    owner.complaints()  # of the stream that is not there


def test_the_full_view_has_the_pages_own_buttons(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.press("Full view")
    assert owner.wait(lambda: owner.evaluate("document.fullscreenElement?.className") == "live")
    assert owner.sees("Live", "Sound on", "Leave full view")
    owner.press("Leave full view")
    assert owner.wait(lambda: owner.evaluate("document.fullscreenElement") is None)
    assert owner.sees("Full view")


def test_a_live_picture_that_something_stops_goes_on(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.sees("Full view")
    owner.evaluate("void document.querySelector('video').pause()")
    assert owner.wait(lambda: not owner.evaluate("document.querySelector('video').paused"))


def test_a_live_picture_that_the_browser_stops_is_not_called_live_and_goes_on_when_that_is_pressed(owner: Owner, standin: StandIn) -> None:
    """As an iPhone does that saves power."""
    owner.open("profile/0")
    owner.sees("Full view")
    video = "document.querySelector('video')"
    owner.evaluate(f"void ({video}.play = () => Promise.reject(new DOMException('', 'NotAllowedError')), {video}.pause())")
    assert owner.sees("The browser has stopped the picture.")
    assert owner.wait(lambda: owner.text(".lead .standing") == "Begins")
    assert owner.text(".live").split() == ["The", "browser", "has", "stopped", "the", "picture.", "Watch"]
    owner.evaluate(f"void delete {video}.play")
    owner.press("Watch")
    assert owner.wait(lambda: owner.text(".live") == "Live\nSound on\nFull view")


def test_what_was_saved_is_no_longer_told_when_it_was_changed_elsewhere(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.choose("Size", "640 × 480")
    owner.press("Save")
    assert owner.sees("The camera took something else:")
    standin.state["channels"][0] |= {"width": 640, "height": 480, "rate": 24}  # as it was taken
    standin.tell("channels", standin.state["channels"])
    assert owner.wait(lambda: "24 pictures" in owner.text(".facts, .stream-form"))
    assert "The camera took something else:" in owner.text()
    standin.state["channels"][0] |= {"codec": "mjpeg"}
    standin.tell("channels", standin.state["channels"])
    assert owner.sees_no_more("The camera took something else:")


def test_a_camera_that_does_not_stream_gives_up_its_profile_not_its_stream(owner: Owner) -> None:
    owner.open("profile/2")
    owner.press("Take its profile away")
    assert owner.sees("Take the profile of “Cam <img src=x onerror=alert(1)>” away?", "Its profile becomes free for another camera.")
    owner.open("profile/0")
    assert owner.sees("End this stream")


def test_a_name_is_readable_on_a_phone(owner: Owner) -> None:
    """It has a line of its own."""
    owner.size(390, 844)
    owner.open("profile/0")
    owner.sees("Rename")
    assert owner.evaluate("document.getElementById('name').getBoundingClientRect().width") > 300


def test_a_camera_leads_to_when_it_came_and_went(owner: Owner) -> None:
    owner.open("profile/0")
    owner.press("When it came and went")
    assert owner.wait(lambda: owner.heading() == "Charts")
    assert owner.sees("When each camera was plugged in and out")


def test_only_rates_that_can_be_had_are_offered_and_the_highest_is_first(owner: Owner, standin: StandIn) -> None:
    """Of the rates in the camera's order, 15, 0.133 and 5, the host takes the first that is not above the wish."""
    owner.open("profile/0")
    owner.choose("Format", "Encoded by this host (H.264)")
    rates = "[...document.querySelectorAll('#stream-rate option')].map((one) => one.text)"
    assert owner.wait(lambda: owner.evaluate(rates) == ["15 pictures a second", "1 picture every 8 seconds"])


def test_a_rate_is_offered_and_taken_whose_last_digit_the_host_does_not_store(owner: Owner, standin: StandIn, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setitem(FORMATS, "codecs", [{"codec": "mjpeg", "sizes": [{"width": 1280, "height": 720, "rates": [30, 0.133]}]}])
    standin.state["channels"][0] |= {"codec": "mjpeg", "width": 1280, "height": 720, "rate": 30}
    standin.rate_taken = 0.13
    owner.open("profile/0")
    owner.choose("Rate", "1 picture every 8 seconds")
    owner.press("Save")
    assert owner.sees("Saved: As the camera sends it (MJPEG), 1280 × 720, 1 picture every 8 seconds.")
    assert streams_changed(standin) == [{"codec": "mjpeg", "width": 1280, "height": 720, "rate": 0.133}]
    standin.state["channels"][0]["rate"] = 0.13
    standin.tell("channels", standin.state["channels"])
    assert owner.wait(lambda: owner.evaluate("document.getElementById('stream-rate').selectedOptions[0].text") == "1 picture every 8 seconds")
    assert "Now set" not in owner.text() and "Not saved yet" not in owner.text()


def test_another_size_that_h264_needs_is_said(owner: Owner, standin: StandIn) -> None:
    standin.state["channels"][0] |= {"codec": "mjpeg", "rate": 15, "width": 800, "height": 600}
    owner.open("profile/0")
    assert owner.sees("With H.264 this camera sends 1920 × 1080 instead of 800 × 600, at the same rate.")
    standin.state["channels"][0]["rate"] = 25
    standin.tell("channels", standin.state["channels"])
    assert owner.sees("With H.264 this camera sends 1920 × 1080 and 15 pictures a second, instead of 800 × 600 and 25 pictures a second.")


@pytest.mark.parametrize(
    ("smallest", "said"),
    [(30, "With this format and size there is no other rate; a smaller size has a higher one."),
     (9, "With this format and size there is no other rate.")],
)
def test_why_there_is_only_one_rate_is_said(owner: Owner, standin: StandIn, monkeypatch: pytest.MonkeyPatch, smallest: int, said: str) -> None:
    sizes = [{"width": width, "height": height, "rates": [rate]} for width, height, rate in ((1280, 720, 9), (640, 480, smallest))]
    monkeypatch.setitem(FORMATS, "codecs", [{"codec": "h264", "sizes": sizes}, {"codec": "mjpeg", "sizes": SIZES}])
    standin.state["channels"][0] |= {"codec": "h264", "rate": 9}
    owner.open("profile/0")
    assert owner.wait(lambda: owner.text(".about-lists") == said)
    owner.choose("Format", "As the camera sends it (MJPEG)")
    assert owner.wait(lambda: owner.text(".about-lists") == "Saving interrupts the picture for some seconds, for guests too.")


def test_a_change_is_shown_before_the_host_has_answered(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.wait(lambda: owner.is_on("Time in the picture"))
    standin.slow = 3
    owner.turn("Time in the picture")
    assert owner.wait(lambda: not owner.is_on("Time in the picture"))
    assert streams_changed(standin) == []
    standin.slow = 0


LOST = "What you chose for the stream of “Front door” was not saved."


def test_a_choice_that_is_not_saved_is_marked_and_whoever_leaves_it_is_told(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.choose("Size", "640 × 480")
    assert owner.sees("Not saved yet.")
    owner.choose("Size", "1280 × 720")
    assert owner.sees_no_more("Not saved yet.")
    owner.choose("Size", "640 × 480")
    owner.press("Overview")
    assert owner.is_told(LOST)


ASKS_BEFORE_IT_CLOSES = "!dispatchEvent(new Event('beforeunload', { cancelable: true }))"


def test_the_browser_asks_whoever_closes_the_page_as_long_as_something_is_not_saved(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.sees("Save")
    assert not owner.evaluate(ASKS_BEFORE_IT_CLOSES)
    owner.choose("Size", "640 × 480")
    owner.sees("Not saved yet.")
    assert owner.wait(lambda: owner.evaluate(ASKS_BEFORE_IT_CLOSES))
    owner.choose("Size", "1280 × 720")
    assert owner.wait(lambda: not owner.evaluate(ASKS_BEFORE_IT_CLOSES))
    owner.choose("Size", "640 × 480")
    assert owner.wait(lambda: owner.evaluate(ASKS_BEFORE_IT_CLOSES))
    owner.press("Save")
    assert owner.wait(lambda: not owner.evaluate(ASKS_BEFORE_IT_CLOSES))
    owner.choose("Size", "1920 × 1080")
    assert owner.wait(lambda: owner.evaluate(ASKS_BEFORE_IT_CLOSES))
    owner.press("Overview")
    assert owner.is_told(LOST)
    assert not owner.evaluate(ASKS_BEFORE_IT_CLOSES)


def test_whoever_leaves_after_saving_is_told_nothing(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.choose("Size", "640 × 480")
    owner.press("Save")
    assert owner.sees("The camera took something else:")
    assert "Not saved yet." not in owner.text()
    owner.press("Overview")
    owner.press("Sharing")
    owner.press("Make a new link")
    owner.press("Make a new link")
    assert owner.is_told("“Front door” has a new link")
    assert not any(LOST in one for one in owner.evaluate("window.told"))


def test_the_keyboard_stays_in_the_name_when_it_was_stored(owner: Owner, standin: StandIn) -> None:
    owner.open("profile/0")
    owner.enter("Name", "Back door" + Keys.ENTER)
    standin.state["channels"][0]["profile_name"] = "Back door"
    standin.tell("channels", standin.state["channels"])
    assert owner.wait(lambda: owner.heading() == "Back door")
    assert owner.evaluate("document.activeElement.id") == "name"


def test_a_link_that_looks_like_a_button_is_pressed_like_one(owner: Owner) -> None:
    owner.open("profile/0")
    owner.sees("Save")
    owner.evaluate("[...document.querySelectorAll('a.button')].find((one) => one.innerText === 'Share').focus()")
    owner.press_keys(Keys.SPACE)
    assert owner.wait(lambda: owner.heading() == "Sharing")


def test_the_camera_from_which_one_comes_is_the_first_to_share(owner: Owner) -> None:
    owner.open("profile/2")
    owner.press("Share")
    assert owner.wait(lambda: owner.text(".shares h2") == "Cam <img src=x onerror=alert(1)>")
    owner.press("Sharing")
    assert owner.wait(lambda: owner.text(".shares h2") == "Front door")
