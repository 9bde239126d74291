# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The pictures of the cameras, on their cards and beside each other."""

from __future__ import annotations

import pytest
from browser import Owner
from selenium.webdriver import ActionChains
from selenium.webdriver.common.by import By
from standin import StandIn

HEIGHT = "document.querySelector('[data-channel=\"0\"]').offsetHeight"


def test_a_stream_without_a_picture_has_only_begun(owner: Owner, standin: StandIn) -> None:
    standin.has_picture = False
    owner.size(390, 844)
    owner.open()
    height = "document.querySelector('[data-channel=\"0\"] .picture').offsetHeight"
    assert owner.sees_on_card(0, "Begins", "Waiting for the picture …")
    drawn = "[...document.querySelectorAll('.usb-tree title')].map((one) => one.textContent)"
    assert "Front door, 3-1.1 · Begins" in owner.evaluate(drawn)
    before = owner.evaluate(height)
    standin.has_picture = True
    assert owner.sees_on_card(0, "Streams")
    assert owner.evaluate(height) == before


def test_a_card_stays_as_high_as_it_is_when_its_stream_begins_and_has_a_picture(owner: Owner, standin: StandIn) -> None:
    standin.has_picture = False
    camera = standin.state["channels"][0]
    camera["streams"] = False
    for width, height in ((1280, 800), (390, 844)):
        owner.size(width, height)
        owner.open()
        owner.sees_on_card(0, "The stream has not begun yet")
        heights = [owner.evaluate(HEIGHT)]
        standin.tell("channels", [{**camera, "streams": True}, *standin.state["channels"][1:]])
        owner.sees_on_card(0, "Waiting for the picture …")
        heights.append(owner.evaluate(HEIGHT))
        standin.has_picture = True
        owner.sees_on_card(0, "Streams")
        assert [*heights, owner.evaluate(HEIGHT)] == 3 * [heights[0]]
        standin.has_picture = False


def test_a_picture_says_that_it_leads_to_the_live_one(owner: Owner) -> None:
    owner.open()
    assert owner.sees_on_card(0, "Watch")
    ActionChains(owner.browser).click(owner.browser.find_element(By.CSS_SELECTOR, ".watch")).perform()
    assert owner.wait(lambda: owner.heading() == "Front door")


def test_who_leaves_a_picture_before_it_is_connected_gives_the_browser_no_reason_to_complain(owner: Owner, standin: StandIn) -> None:
    standin.slow_film = 1
    owner.open("profile/0")
    owner.wait(lambda: standin.films == 1)
    owner.press("Overview")
    assert owner.sees_on_card(0, "Streams")


def four_streams(standin: StandIn) -> None:
    for channel, profile in ((1, 1), (2, 2), (4, 3)):
        standin.state["channels"][channel] |= {"streams": True, "profile": profile, "reasons": [], "switched_on": True}
    standin.state["channels"][5]["profile"] = None


@pytest.mark.parametrize(("streams", "columns"), [(1, [1, 1, 1]), (4, [2, 2, 1])])
def test_only_pictures_has_all_that_stream_as_large_as_fits(owner: Owner, standin: StandIn, streams: int, columns: list[int]) -> None:
    if streams == 4:
        four_streams(standin)
    owner.open("pictures")
    owner.sees("Front door")
    boxes = "[...document.querySelectorAll('.tiles .live')].map((one) => one.getBoundingClientRect())"
    cells = "[...document.querySelectorAll('.tiles li')].map((one) => one.getBoundingClientRect())"
    fills = "cells.every((cell, index) => boxes[index].width > cell.width - 1 || boxes[index].height > cell.height - 33)"
    for (width, height), count in zip([(1280, 800), (844, 390), (390, 844)], columns, strict=True):
        owner.size(width, height)
        assert owner.wait(lambda: owner.evaluate(f"new Set({cells}.map(({{ x }}) => x)).size") == count), width
        assert owner.evaluate(f"{boxes}.every(({{ bottom, right }}) => bottom <= innerHeight && right <= innerWidth)"), width
        assert owner.evaluate("document.documentElement.scrollHeight <= innerHeight"), width
        assert owner.evaluate(f"(([boxes, cells]) => {fills})([{boxes}, {cells}])"), width


def test_each_of_the_pictures_leads_to_its_camera(owner: Owner, standin: StandIn) -> None:
    four_streams(standin)
    owner.open()
    owner.press("Only pictures")
    tile = "//*[contains(@class, 'tiles')]//a[contains(., 'Garage with a name that is rather long')]"
    owner.wait(lambda: owner.browser.find_element(By.XPATH, tile).click() is None)
    assert owner.wait(lambda: owner.heading() == "Garage with a name that is rather long")
