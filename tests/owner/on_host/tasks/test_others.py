# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the owner of cameras does for guests, and learns of the host."""

from __future__ import annotations

import json
from collections.abc import Iterator
from contextlib import contextmanager

from browser import Owner
from conftest import Service, run
from selenium.webdriver.common.by import By


@contextmanager
def guest(owner: Owner) -> Iterator[Owner]:
    """Somebody else, to whom the owner gives the link that the page shows."""
    link = owner.field("Link for guests").get_attribute("value")
    own = owner.browser.current_window_handle
    owner.browser.switch_to.new_window("tab")
    owner.browser.get(link)
    yield owner
    owner.browser.close()
    owner.browser.switch_to.window(own)


def share(owner: Owner) -> None:
    owner.open("sharing")
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
    share(door)
    code = door.wait(lambda: door.browser.find_element(By.CSS_SELECTOR, ".qr"))
    assert code.get_attribute("aria-label") == "QR code of the link"
    assert code.is_displayed()


def test_share_with_a_password(door: Owner) -> None:
    share(door)
    door.enter("Password for guests", "sesame")
    door.press("Set password")
    assert door.sees("A guest is asked for the password")
    assert door.is_told("“Door” has a new password and a new link.")
    with guest(door) as somebody:
        assert somebody.sees("This link is protected by a password.")
    door.press("Remove password")
    assert door.is_told("“Door” has no password any more; its link is the same.")
    assert door.sees("A guest sees the picture and the name of the camera, and nothing else.")


def test_renew_a_link_and_watch_the_guests_page_end(door: Owner) -> None:
    share(door)
    with guest(door) as somebody:
        somebody.sees("The stream has not begun yet")
        run("usbdevctl share renew 0")
        assert somebody.sees("This link is unknown; it was renewed or removed.")


def test_make_a_new_link(door: Owner) -> None:
    share(door)
    old = door.field("Link for guests").get_attribute("value")
    door.press("Replace the link")
    assert door.sees("The link that you gave away stops working")
    door.press("Replace the link")
    assert door.is_told("“Door” has a new link.")
    assert door.wait(lambda: door.field("Link for guests").get_attribute("value") != old)


def test_stop_sharing(door: Owner) -> None:
    share(door)
    door.turn("Share this camera")
    door.press("Stop sharing")
    assert door.sees("Nobody but you can see this camera.")
    assert not json.loads(run("usbdevctl share show 0 --json"))["sharing"]


def test_see_an_event_when_it_happens(door: Owner) -> None:
    door.open("events")
    door.sees("Search")
    run("usbdevctl stream set 0 --fps 60")
    assert door.sees("Modified Channel 1 FPS: 60.00", "“Door”, profile 0")


def test_search_the_events(door: Owner) -> None:
    run("usbdevctl stream set 0 --fps 60; usbdevctl stream set 0 --size 640x480")
    door.open("events")
    door.sees("resolution")
    door.enter("Search", "FPS")
    assert door.sees_no_more("resolution")
    door.enter("Search", "no such event")
    assert door.sees("No event fits")


def test_export_the_events(door: Owner) -> None:
    run("usbdevctl stream set 0 --fps 60")
    door.open("events")
    link = door.wait(lambda: door.browser.find_element(By.LINK_TEXT, "Export all, as a table (CSV)").get_attribute("href"))
    fetch = "fetch(arguments[0]).then((answer) => answer.text()).then(arguments[1])"
    assert "Modified Channel 1 FPS: 60.00" in door.browser.execute_async_script(fetch, link)


def test_see_when_a_camera_came_and_went(door: Owner) -> None:
    run("sim unplug 3-1")
    door.sees_on_card(0, "Unplugged")
    door.open("charts")
    assert door.sees("Plugged in and out")
    plot = door.wait(lambda: door.browser.find_element(By.CSS_SELECTOR, "[role=img][aria-label^='Plugged in and out']"))
    assert plot.find_elements(By.TAG_NAME, "canvas") != []
    assert door.sees("Channel 0 · Door: unplugged")


def test_ask_for_help_with_a_report(door: Owner) -> None:
    door.open("host")
    assert door.sees("Kernel", "Profiles")
    door.press("Make the report")
    assert door.sees("USB 2.0 Camera: USB Camera")
    door.press("Save as a file")
    assert door.is_told("The report is saved, as report.txt.")


def test_read_the_page_in_german(door: Owner) -> None:
    door.choose("Language", "Deutsch")
    assert door.sees("Übersicht", "Beginnt")
    run("sim unplug 3-1")
    assert door.sees_on_card(0, "Sie ist nicht angeschlossen.", "Kamera vergessen")
    door.open()
    assert door.sees("Freie Kanäle")


def test_look_in_the_dark(door: Owner) -> None:
    door.prefer(color_scheme="dark")
    background = "getComputedStyle(document.body).backgroundColor"
    assert door.wait(lambda: door.evaluate(background) == "rgb(16, 19, 23)")
    assert door.barriers() == []


def test_wait_for_a_host_that_is_gone(door: Owner, server: Service) -> None:
    server.end()
    assert door.sees("The host does not answer; the page tries again.", "Door")
    server.start()
    assert door.sees("Sign in")  # a host that begins anew knows no session
    door.complaints()
