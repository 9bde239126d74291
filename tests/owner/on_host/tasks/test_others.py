# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the owner of cameras does for guests, and learns of the host."""

from __future__ import annotations

import json
from collections.abc import Iterator
from contextlib import contextmanager

from browser import Owner
from client import ORIGIN, PASSWORD, USER
from conftest import run
from selenium.webdriver.common.by import By


def link(owner: Owner) -> str:
    return owner.field("Link for guests").text


@contextmanager
def guest(owner: Owner) -> Iterator[Owner]:
    """Somebody else, to whom the owner gives the link that the page shows."""
    address = link(owner)
    own = owner.browser.current_window_handle
    owner.browser.switch_to.new_window("tab")
    owner.browser.get(address)
    yield owner
    owner.browser.close()
    owner.browser.switch_to.window(own)


def share(owner: Owner) -> None:
    owner.turn_to("sharing")
    owner.turn("Share this camera")
    owner.is_told("“Door” is shared.")


def test_share_a_camera_and_look_as_a_guest(door: Owner) -> None:
    share(door)
    with guest(door) as somebody:
        assert somebody.sees("The stream has not begun yet")


def test_copy_a_link(door: Owner) -> None:
    share(door)
    door.press("Copy link")
    assert door.is_told("The link is copied.")


def test_show_a_link_to_a_phone(door: Owner) -> None:
    """The page was opened by a name that others could know too."""
    share(door)
    door = Owner(door.browser, ORIGIN.replace("127.0.0.1", "host.localhost"))
    door.open("sharing")
    door.sign_in(USER, PASSWORD)
    door.sees("Copy link")
    assert door.browser.find_elements(By.CSS_SELECTOR, ".qr") == []
    door.press("Show a code for a phone")
    code = door.wait(lambda: door.browser.find_element(By.CSS_SELECTOR, ".qr svg"))
    assert code.get_attribute("aria-label") == "QR code of the link"
    assert code.is_displayed()
    assert door.sees("Scan it with the phone’s camera")


def test_hear_that_only_the_host_can_open_a_link(door: Owner) -> None:
    share(door)
    assert door.sees("itself can open this link, and no phone: these pages are not open to the network.")
    assert "Show a code for a phone" not in door.text()


def test_share_with_a_password(door: Owner) -> None:
    share(door)
    door.enter("Password for guests", "a")
    door.press("Set password")
    assert door.sees("This password is too short: it needs at least 6 characters.")
    door.enter("Password for guests", "sesame")
    old = link(door)
    door.press("Set password")
    assert door.sees("The link changes: the one that you gave away stops working")
    door.press("Set password")
    assert door.is_told("“Door” has a password now, and a new link; the old one does not work any more.")
    assert door.sees("Protected by a password: whoever opens the link is asked for it.")
    assert door.wait(lambda: link(door) != old)
    with guest(door) as somebody:
        assert somebody.sees("This link is protected by a password.")
    protected = link(door)
    door.press("Remove password")
    assert door.sees("The link changes", "Whoever has the new link sees the camera without a password.")
    door.press("Remove password")
    assert door.sees("No password. Guests see the picture and the name “Door”, and nothing else.")
    assert door.wait(lambda: link(door) != protected)


def test_change_the_password(door: Owner) -> None:
    share(door)
    run("echo sesame | usbdevctl share on 0 --password-stdin")
    door.open("sharing")
    old = link(door)
    door.enter("New password for guests", "lettuce")
    door.press("Change password")
    assert door.sees("The present password stops working.")
    door.press("Change password")
    assert door.is_told("“Door” has a new password and a new link")
    assert door.wait(lambda: link(door) != old)


def test_renew_a_link_and_watch_the_guests_page_end(door: Owner) -> None:
    share(door)
    with guest(door) as somebody:
        somebody.sees("The stream has not begun yet")
        run("usbdevctl share renew 0")
        assert somebody.sees("it was replaced or removed. Ask whoever sent it to you for the new one.")


def test_make_a_new_link(door: Owner) -> None:
    share(door)
    old = link(door)
    door.press("Make a new link")
    assert door.sees("The link that you gave away stops working")
    door.press("Make a new link")
    assert door.is_told("“Door” has a new link; the old one does not work any more.")
    assert door.wait(lambda: link(door) != old)


def test_stop_sharing(door: Owner) -> None:
    share(door)
    door.turn("Share this camera")
    door.press("Stop sharing")
    assert door.sees("Not shared: nobody can see this camera without an account on this host.")
    assert not json.loads(run("usbdevctl share show 0 --json"))["sharing"]


def test_hear_that_the_password_goes_with_the_link(door: Owner) -> None:
    share(door)
    run("echo sesame | usbdevctl share on 0 --password-stdin")
    door.open("sharing")
    door.press("Make a new link")
    assert door.sees("The password stays.")
    door.press("Make a new link")
    assert door.is_told("“Door” has a new link")
    assert door.sees("Protected by a password: whoever opens the link is asked for it.")
    door.turn("Share this camera")
    assert door.sees("Its password is lost too: sharing again begins without one.")
    door.press("Stop sharing")
    door.sees("Not shared")
    door.turn("Share this camera")
    assert door.sees("No password.")


def rows(owner: Owner) -> list[str]:
    """The events, the newest first."""
    return [row.text.replace("\n", " ") for row in owner.browser.find_elements(By.CSS_SELECTOR, ".event")]


def test_see_an_event_when_it_happens(door: Owner) -> None:
    door.turn_to("events")
    door.sees("Search")
    run("usbdevctl stream set 0 --fps 60")
    assert door.sees("Rate set to 60 pictures a second")
    run("sim unplug 3-1")
    assert door.wait(lambda: any("Unplugged" in row and "Door 3-1" in row for row in rows(door)))


def test_search_the_events(door: Owner) -> None:
    run("usbdevctl stream set 0 --fps 60; usbdevctl stream set 0 --size 640x480")
    door.turn_to("events")
    door.sees("Size set to")
    search = "Search"
    door.enter(search, "pictures a second")
    assert door.sees_no_more("Size set to")
    door.enter(search, "FPS")  # as it was logged
    assert door.sees("Rate set to 60 pictures a second")
    door.enter(search, "Door")
    assert door.sees("Rate set to", "Size set to")
    door.enter(search, "no such event")
    assert door.sees("No event fits")
    door.press("Show all events")
    assert door.sees("Rate set to", "Size set to")


def test_see_who_has_done_what(door: Owner) -> None:
    door.turn_to("sharing")
    door.turn("Share this camera")
    door.is_told("“Door” is shared.")
    door.turn_to("events")
    assert door.wait(lambda: any("Shared" in row and "by ann" in row and "Door 3-1" in row for row in rows(door)))
    door.enter("Search", "signed in")
    assert door.sees_no_more("Shared")
    assert door.sees("Signed in", "by ann")


def test_read_the_events_in_german(door: Owner) -> None:
    run("usbdevctl stream set 0 --fps 60")
    door.turn_to("events")
    door.sees("Rate set to 60 pictures a second")
    door.choose("Language", "Deutsch")
    assert door.sees("Bildrate auf 60 Bilder pro Sekunde gesetzt", "Angeschlossen")
    door.enter("Suchen", "Angeschlossen")
    assert door.sees_no_more("Bildrate")
    door.choose("Sprache", "English")
    assert door.sees("Export these as CSV")


def test_export_the_events(door: Owner) -> None:
    run("usbdevctl stream set 0 --fps 60")
    door.turn_to("events")
    door.press("Export all as CSV")
    assert door.is_told("Saved as events-")
    door.enter("Search", "60 pictures")
    door.press("Export these as CSV")
    assert door.is_told("Saved as events-")


def test_see_when_a_camera_came_and_went(door: Owner) -> None:
    """Also other cameras came and went on this host."""
    run("usbdevctl rename 0 Gate; sim unplug 3-1")
    door.sees_on_card(0, "Unplugged")
    door.press("Events")
    door.press("The charts show when each camera came and went.")
    assert door.sees("Plugged in and out")
    mark = door.wait(lambda: door.browser.find_element(By.CSS_SELECTOR, ".mark.unplugged[tabindex][aria-label*=Gate]"))
    words = mark.get_attribute("aria-label")
    assert "Gate, unplugged" in words
    assert words not in door.text()
    door.browser.execute_script("arguments[0].focus()", mark)
    assert door.sees(words)


def test_ask_for_help_with_a_report(door: Owner) -> None:
    door.press("Help")
    assert door.sees("What to do when there is no picture", "The words on these pages")
    assert door.sees("Something does not work?", "to whoever looks after this host", "Technical facts")
    door.press("Make the report")
    assert door.sees("The report is made.", "USB 2.0 Camera: USB Camera")
    report = door.browser.find_element(By.TAG_NAME, "pre")
    assert door.wait(lambda: door.evaluate("document.querySelector('pre').getBoundingClientRect().top < innerHeight"))
    assert int(report.get_attribute("scrollHeight")) > int(report.get_attribute("clientHeight"))  # in a box of its own
    door.press("Copy the report")
    assert door.is_told("The report is copied.")
    door.press("Save as a file")
    assert door.is_told("Saved as report.txt")


def test_read_the_page_in_german(door: Owner) -> None:
    door.choose("Language", "Deutsch")
    assert door.sees("Übersicht", "Beginnt")
    run("sim unplug 3-1")
    assert door.sees_on_card(0, "Die Kamera ist nicht angeschlossen.", "Kamera vergessen")
    door.turn_to()
    assert door.sees("Freie Kanäle")


def test_look_in_the_dark(door: Owner) -> None:
    door.prefer(color_scheme="dark")
    background = "getComputedStyle(document.body).backgroundColor"
    assert door.wait(lambda: door.evaluate(background) == "rgb(16, 19, 23)")
    assert door.barriers() == []
