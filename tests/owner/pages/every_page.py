# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Every page, and the windows in which it is looked at."""

from __future__ import annotations

from browser import Owner
from conftest import prepare
from standin import SHARED, StandIn

WINDOWS = {"desk": (1280, 800), "phone": (390, 844)}
LINK = "/share?ssid=39202766&token="
# The address of a page, and a text that it shows when it is complete.
PAGES = {
    "sign-in": ("/#/", "with the account that you have on their host."),
    "overview": ("/#/", "Free channels"),
    "pictures": ("/#/pictures", "Front door"),
    "profile": ("/#/profile/0", "Save"),
    "sharing": ("/#/sharing", "Copy link"),
    "events": ("/#/events", "has ended"),
    "charts": ("/#/charts", "Missed pictures"),
    "host": ("/#/host", "6.1.0-27-amd64"),
    "share-password": (LINK + SHARED(2), "This link is protected by a password."),
    "share-playing": (LINK + SHARED(1), "Front door"),
}
# Of which no picture is kept.
OTHERS = {"profile-mjpeg": ("/#/profile/2", "Save"), "camera": ("/#/camera/3", "Use another camera.")}
IS_DRAWN = """[...document.images].every((one) => one.complete) && document.fonts.status === 'loaded'
  && !document.querySelector('[data-state="loading"], [data-shows="waits"]')"""


def come_to(name: str, window: Owner, server: StandIn, place: str = "desk", late: float = 0) -> Owner:
    """As somebody who enters the address, and to whom everything comes so many seconds late."""
    address, text = {**PAGES, **OTHERS}[name]
    prepare(window, server).size(*WINDOWS[place])
    if name == "sign-in":
        server.signed_in = False
        window.evaluate("localStorage.clear()")
    server.slow = late
    window.browser.get("about:blank")
    window.browser.get(window.origin + address)
    window.sees(text)
    assert window.wait(lambda: window.evaluate(IS_DRAWN))
    return window
