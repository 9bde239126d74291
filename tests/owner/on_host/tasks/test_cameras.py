# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the owner of cameras does with them."""

from __future__ import annotations

import json

from browser import Owner
from conftest import Service, run
from selenium.webdriver import Keys


def test_sign_in_and_see_the_cameras(ann: Owner) -> None:
    run("sim plug hd-pro-webcam 1-1")
    ann.press("Sign out")
    assert ann.sees("With the account that you have on this host.")
    ann.sign_in("ann", "correct horse")
    assert ann.sees_on_card(0, "HD Pro Webcam C920", "1-1")


def test_mistype_the_password(ann: Owner) -> None:
    ann.press("Sign out")
    ann.sign_in("ann", "correct house")
    assert ann.sees("User or password is wrong.")
    ann.enter("Password", "correct horse" + Keys.ENTER)
    assert ann.sees("Overview")
    assert len(ann.complaints()) == 1  # the refusal


def test_plug_a_camera_in_and_see_it_appear(ann: Owner) -> None:
    assert ann.sees("No camera is plugged in")
    run("sim plug usb2-camera 3-1")
    assert ann.sees_on_card(0, "USB 2.0 Camera: USB Camera", "3-1", "No profile")


def test_give_a_camera_a_profile(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1")
    ann.press("Give it profile 0")
    assert ann.sees("“USB 2.0 Camera: USB Camera” has profile 0.")

    assert "3-1" in run("usbdevctl profiles")


def test_plug_a_second_camera_into_the_same_hub_and_understand_why_it_waits(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1.1; usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door; sim plug usb2-camera 3-1.2")
    assert ann.sees_on_card(1, "Waits", "It waits for “Door” (channel 0): both hang on USB port 3-1.")
    assert ann.sees_on_card(1, "Plug it into another port of the host, not behind port 3-1")
    assert ann.sees("Cameras that share the blue part wait for each other")


def test_let_the_camera_that_waits_stream_instead(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1.1; usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door; sim plug usb2-camera 3-1.2")
    ann.press("Switch the port of Door off")
    assert ann.sees("It keeps its profile and all settings")
    ann.press("Switch off")
    assert ann.sees_on_card(0, "Switched off")
    assert ann.wait(lambda: "waits" not in ann.card(1))


def test_find_out_that_a_camera_cannot_be_used(ann: Owner) -> None:
    run("sim plug infrared-camera 5-1")
    assert ann.sees_on_card(0, "Not supported", "this host uses MJPG and YUYV only")


def test_give_a_profile_to_a_camera_that_waits_and_be_warned(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1.1; usbdevctl assign 3-1.1 0; sim plug usb2-camera 3-1.2")
    ann.open("profile/1")
    ann.press("USB 2.0 Camera: USB Camera, port 3-1.2")
    assert ann.sees("Then both cameras wait for each other, and neither streams.")
    ann.press("Cancel")
    assert "3-1.2" not in run("usbdevctl profiles")
    ann.complaints()  # of the refusal


def test_set_15_frames_a_second_and_see_what_was_taken(ann: Owner) -> None:
    run("sim plug hd-pro-webcam 1-1; usbdevctl assign 1-1 0")
    ann.open("profile/0")
    ann.choose("Size", "640 × 480")
    ann.choose("Rate", "15 per second")
    ann.press("Save")
    assert ann.sees("Taken as asked.")
    assert "15" in run("usbdevctl stream show 0")
    ann.open()
    assert ann.sees_on_card(0, "640 × 480", "15 per second")


def test_turn_the_picture_around(door: Owner) -> None:
    run("usbdevctl stream set 0 --codec h264")
    door.open("profile/0")
    door.turn("Upside down")
    assert door.wait(lambda: door.is_on("Upside down"))
    assert door.wait(lambda: json.loads(run("usbdevctl stream show 0 --json"))["flip"])


def test_watch_a_camera(door: Owner, manager: Service) -> None:
    run("usbdevctl stream set 0 --size 640x480")
    door.open("profile/0")
    moves = "document.querySelector('video')?.currentTime > 0.5"
    assert door.wait(lambda: door.evaluate(moves))
    assert door.sees_no_more("Waiting for the picture …")


def test_see_all_pictures_beside_each_other(door: Owner, manager: Service) -> None:
    run("usbdevctl stream set 0 --size 640x480")
    picture = "[...document.querySelectorAll('[data-channel=\"0\"] img')].some((one) => !one.hidden && one.naturalWidth > 0)"
    assert door.wait(lambda: door.evaluate(picture))


def test_rename_a_camera(door: Owner) -> None:
    door.open("profile/0")
    door.enter("Name", "Gärtchen")
    door.press("Rename")
    assert door.sees("It is called “Gärtchen” now.")
    assert door.wait(lambda: door.heading() == "Gärtchen")
    assert "Gärtchen" in run("usbdevctl profiles")


def test_switch_a_port_off_and_on_again(door: Owner) -> None:
    door.open("profile/0")
    door.turn("USB port switched on")
    door.press("Switch off")
    assert door.sees("Its port is switched off.")
    door.press("Switch the port on")
    assert door.sees_no_more("Its port is switched off.")
    assert door.is_on("USB port switched on")


def test_move_to_another_camera(door: Owner) -> None:
    run("sim plug hd-pro-webcam 5-1")
    door.open("profile/0")
    door.press("Move to another camera")
    assert door.sees("A shared link gets a new address; the old one stops working.")
    door.choose("To the camera", "HD Pro Webcam C920, port 5-1")
    door.press("Move")
    assert door.sees("Profile 0 is moved.")
    assert door.sees("HD Pro Webcam C920 · Channel 1")
    assert door.heading() == "Door"


def test_take_the_profile_away_knowing_what_is_lost(door: Owner) -> None:
    door.open("profile/0")
    door.press("Take the profile away")
    assert door.sees("The stream ends.", "The name of the profile is lost.")
    door.press("Take the profile away")
    assert door.sees("No camera has this profile")
    assert "Door" not in run("usbdevctl profiles")


def test_forget_a_camera_that_will_not_come_back(door: Owner) -> None:
    run("sim unplug 3-1")
    assert door.sees_on_card(0, "Unplugged", "Plug it into port 3-1 again.")
    door.press("Forget this camera")
    assert door.sees("Profile 0 becomes free")
    door.press("Forget this camera")
    assert door.sees("No camera is plugged in")


def test_do_it_all_with_the_keyboard(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1")
    ann.sees("Give it profile 0")
    for _ in range(20):
        if ann.focused() == "Give it profile 0":
            break
        ann.press_keys(Keys.TAB)
    ann.press_keys(Keys.ENTER)
    assert ann.sees("“USB 2.0 Camera: USB Camera” has profile 0.")
