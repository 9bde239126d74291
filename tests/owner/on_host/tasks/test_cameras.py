# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the owner of cameras does with them."""

from __future__ import annotations

import json

from browser import Owner
from conftest import Service, run
from selenium.webdriver import Keys
from selenium.webdriver.common.by import By


def streams(channel: int) -> bool:
    explained = json.loads(run(f"usbdevctl explain ch{channel} --json"))
    return bool(explained["cameras"][0]["streams"] if "cameras" in explained else explained["streams"])


def test_sign_in_and_see_the_cameras(ann: Owner) -> None:
    run("sim plug hd-pro-webcam 1-1")
    ann.press("Sign out")
    assert ann.sees("with the account that you have on their host.")
    ann.sign_in("ann", "correct horse")
    assert ann.sees_on_card(0, "HD Pro Webcam C920", "1-1")


def test_mistype_the_password(ann: Owner) -> None:
    ann.press("Sign out")
    ann.sign_in("ann", "correct house")
    assert ann.sees("The user name or the password is wrong.")
    ann.enter("Password", "correct horse")
    ann.press_keys(Keys.ENTER)
    assert ann.sees("Overview")
    assert len(ann.complaints()) == 1  # the refusal


def test_plug_a_camera_in_and_see_it_appear(ann: Owner) -> None:
    assert ann.sees("No camera is plugged in")
    run("sim plug usb2-camera 3-1")
    assert ann.sees_on_card(0, "USB 2.0 Camera: USB Camera", "3-1", "No stream")


def test_give_a_camera_a_profile(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1")
    ann.sees("Start its stream")
    assert ann.evaluate("document.querySelector('.reasons button').className") == ""  # the one that stands out
    ann.press("Start its stream")
    assert ann.is_told("The stream of “USB 2.0 Camera: USB Camera” begins, with profile 0.")
    assert "3-1" in run("usbdevctl profiles")


def test_plug_a_second_camera_into_the_same_hub_and_understand_why_it_waits(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1.1; usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door; sim plug usb2-camera 3-1.2")
    assert ann.sees_on_card(1, "Waits", "It waits for “Door”: both are on one USB controller on which one camera can stream, however little it sends.")
    assert ann.sees_on_card(1, "To have both, plug this one into another USB port: 1-1 to 1-8 and 5-1 to 5-4.")
    assert ann.sees("Cameras that share the blue part wait for each other")


def test_let_the_camera_that_waits_stream_instead(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1.1; usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door; sim plug usb2-camera 3-1.2")
    ann.press("Stream this one instead")
    assert ann.sees("Stream “USB 2.0 Camera: USB Camera” instead of “Door”?", "The stream of “Door” ends, for guests too")
    ann.press("Stream this one instead")
    assert ann.sees_on_card(0, "Switched off")
    assert ann.is_told("“Door” is switched off, so that “USB 2.0 Camera: USB Camera” can stream.")
    assert ann.wait(lambda: streams(1))


def test_let_a_camera_that_waits_and_has_a_profile_stream_instead(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1.1; usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door; sim plug usb2-camera 3-1.2")
    run("usbdevctl slot off 3-1.1; usbdevctl assign 3-1.2 1; usbdevctl rename 1 Garage; usbdevctl slot on 3-1.1")
    assert ann.sees_on_card(0, "It waits for “Garage”")
    ann.press("Stream this one instead")
    ann.press("Stream this one instead")
    assert ann.sees_on_card(1, "Switched off")
    assert ann.wait(lambda: streams(0))
    ann.turn_to("events")
    ann.enter("Search", "wait 3-1.1")
    assert ann.sees("Waits for “Garage”, port 3-1.2: both are on one USB controller", "No longer waits for “Garage”, port 3-1.2",
                    "“Stream this one instead”: the USB port 3-1.2 of “Garage” was switched off")  # fmt: skip


def test_let_a_camera_stream_instead_when_no_profile_is_free(ann: Owner) -> None:
    run("for port in 3-1.1 1-1 1-2 5-1; do sim plug usb2-camera $port; done")
    run("usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door; sim plug usb2-camera 3-1.2")
    run("usbdevctl assign 1-1 1; usbdevctl assign 1-2 2; usbdevctl assign 5-1 3")
    ann.sees_on_card(4, "It waits for “Door”")
    ann.sees_on_card(3, "Begins")  # the last one has its profile
    ann.press("Move a profile here")
    assert ann.sees("Move the profile of “Door” to “USB 2.0 Camera: USB Camera, port 3-1.2”?")
    assert ann.sees("The camera that has the profile now loses it, and cannot stream without one.")
    ann.press("Move")
    assert ann.is_told("“Door” now shows the picture of “USB 2.0 Camera: USB Camera, port 3-1.2”.")
    assert ann.wait(lambda: streams(4))


def test_find_out_that_a_camera_cannot_be_used(ann: Owner) -> None:
    run("sim plug infrared-camera 5-1")
    assert ann.sees_on_card(0, "Not supported", "This host cannot use its picture format")


def test_give_a_profile_to_a_camera_that_waits_and_be_warned(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1.1; usbdevctl assign 3-1.1 0; sim plug usb2-camera 3-1.2")
    ann.turn_to("profile/1")
    ann.press("Port 3-1.2: USB 2.0 Camera: USB Camera")
    assert ann.sees("Stream “USB 2.0 Camera: USB Camera, port 3-1.2” instead of “USB 2.0 Camera: USB Camera, port 3-1.1”?")
    assert ann.sees("for guests too")
    ann.press("Cancel")
    assert "3-1.2" not in run("usbdevctl profiles")
    ann.complaints()  # of the refusal


def test_set_15_frames_a_second_and_see_what_was_taken(ann: Owner) -> None:
    run("sim plug hd-pro-webcam 1-1; usbdevctl assign 1-1 0")
    ann.turn_to("profile/0")
    ann.choose("Size", "640 × 480")
    ann.choose("Rate", "15 pictures a second")
    ann.press("Save")
    assert ann.sees("Saved:", "640 × 480, 15 pictures a second.")
    assert ann.browser.find_element(By.CSS_SELECTOR, ".taken .icon").is_displayed()
    assert "15" in run("usbdevctl stream show 0")
    ann.turn_to()
    assert ann.sees_on_card(0, "640 × 480", "15 pictures a second")


def test_turn_the_picture_around(door: Owner) -> None:
    door.turn_to("profile/0")
    assert door.sees("These take effect with the format H.264 only", "With H.264 this camera ")
    door.press("Upside down (the camera hangs)")
    assert door.sees("Change “Door” to the format H.264?", "Turn the picture: Upside down (the camera hangs).")
    door.press("Change to H.264")
    pressed = "document.querySelector('[aria-labelledby=\"turn\"] [aria-pressed=\"true\"]').innerText"
    assert door.wait(lambda: door.evaluate(pressed) == "Upside down (the camera hangs)")
    assert door.wait(lambda: all(json.loads(run("usbdevctl stream show 0 --json"))[name] for name in ("flip", "mirror")))
    door.turn_to("events")
    assert door.sees("Turned: upside down")
    assert "Mirror left and right" not in door.text()
    door.turn("Show how the host has logged it")
    assert door.sees("Enabled image mirror on Channel 1")


def test_watch_a_camera(door: Owner, manager: Service) -> None:
    run("usbdevctl stream set 0 --size 640x480")
    door.turn_to("profile/0")
    moves = "document.querySelector('video')?.currentTime > 0.5"
    assert door.wait(lambda: door.evaluate(moves))
    assert door.sees_no_more("Waiting for the picture …")


def test_see_all_pictures_beside_each_other(door: Owner, manager: Service) -> None:
    run("sim plug usb2-camera 5-1; usbdevctl assign 5-1 1; usbdevctl stream set 0 --size 640x480")
    door.sees_on_card(1, "Streams")
    door.press("Only pictures")
    moving = "[...document.querySelectorAll('video')].filter((one) => one.currentTime > 0.5).length"
    assert door.wait(lambda: door.evaluate(moving) == 2)
    assert door.sees("Door", "USB 2.0 Camera: USB Camera")


def test_rename_a_camera(door: Owner) -> None:
    door.turn_to("profile/0")
    assert door.field("Name").get_attribute("value") == "Door"
    door.enter("Name", "Gärtchen")
    door.press("Rename")
    assert door.is_told("It is called “Gärtchen” now.")
    assert door.wait(lambda: door.heading() == "Gärtchen")
    assert "Gärtchen" in run("usbdevctl profiles")


def test_switch_a_port_off_and_on_again(door: Owner) -> None:
    door.turn_to("profile/0")
    door.turn("Use its USB port")
    door.press("Switch off")
    assert door.sees("Its USB port is switched off.")
    door.press("Switch the port on")
    assert door.sees_no_more("Its USB port is switched off.")
    assert door.is_on("Use its USB port")


def test_be_told_which_camera_streams_after_a_port_is_switched(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1.1; usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door; sim plug usb2-camera 3-1.2")
    run("usbdevctl slot off 3-1.1; usbdevctl assign 3-1.2 1; usbdevctl rename 1 Garage; usbdevctl slot on 3-1.1")
    ann.sees_on_card(0, "Waits")
    ann.turn_to("profile/1")
    ann.turn("Use its USB port")
    assert ann.sees("“Door” streams in its place. If you then switch this one on, it waits for “Door”.")
    ann.press("Switch off")
    ann.press("Switch the port on")
    assert ann.is_told("“Garage” is switched on; it waits for “Door”.")


def test_move_to_another_camera(door: Owner) -> None:
    run("sim plug hd-pro-webcam 5-1")
    door.turn_to("profile/0")
    door.press("Move to another camera")
    assert door.sees("The stream then comes from “HD Pro Webcam C920”.", "“HD Pro Webcam C920” offers the same settings.")
    door.choose("To the camera", "Port 5-1: HD Pro Webcam C920")
    door.press("Move")
    assert door.is_told("“Door” now shows the picture of “HD Pro Webcam C920”.")
    assert door.sees("HD Pro Webcam C920 · Channel 1")
    assert door.wait(lambda: door.heading() == "Door")


def test_take_the_profile_away_knowing_what_is_lost(door: Owner) -> None:
    door.turn_to("profile/0")
    door.press("End this stream")
    assert door.sees("Its profile becomes free for another camera.", "Its name is lost.")
    door.press("End this stream")
    assert door.is_told("The stream of “Door” has ended, and its profile is free.")
    assert door.sees_on_card(0, "No stream")
    assert "Door" not in run("usbdevctl profiles")


def test_forget_a_camera_that_will_not_come_back(door: Owner) -> None:
    run("sim unplug 3-1")
    assert door.is_told("“Door” was unplugged; its stream goes on when it is back.")
    assert door.sees_on_card(0, "Unplugged", "Plug it in again, into the same USB port (3-1); in another one it is a new camera.")
    door.press("Forget this camera")
    assert door.sees("Profile 0 becomes free")
    door.press("Forget this camera")
    assert door.sees("No camera is plugged in")
    assert door.is_told("“Door” is forgotten.")


def test_do_it_all_with_the_keyboard(ann: Owner) -> None:
    run("sim plug usb2-camera 3-1")
    ann.sees("Start its stream")
    for _ in range(20):
        if ann.focused() == "Start its stream":
            break
        ann.press_keys(Keys.TAB)
    ann.press_keys(Keys.ENTER)
    assert ann.is_told("The stream of “USB 2.0 Camera: USB Camera” begins, with profile 0.")
