# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""All that the page can show: each state in windows of all sizes, in light and dark, in both languages, and for those who
do not see it."""

from __future__ import annotations

from collections.abc import Callable
from signal import SIGCONT, SIGSTOP

import pytest
from conftest import EVERYWHERE, FITS, share, shared
from encoder import Encoder
from host_service import Service
from viewer import OF_COLOURS, RULES, Viewer

Link = dict[str, str]
Check = Callable[..., None]

pytestmark = pytest.mark.usefixtures("page")


@pytest.fixture
def check(viewer: Viewer, in_every_window: Callable[[str], list[bool]]) -> Check:
    """Checks what is shown; a sentence in both languages."""

    def speak(language: str, code: str) -> None:
        viewer.speak(language)
        viewer.wait(lambda: viewer.evaluate("document.documentElement.lang") == code)

    def everything(english: str, german: str | None = None) -> None:
        viewer.await_sentence(english)
        assert in_every_window(FITS) == EVERYWHERE
        for scheme, rules in (("light", RULES), ("dark", OF_COLOURS)):
            viewer.prefer(scheme)
            assert viewer.barriers(rules) == []
        if german is None:
            return
        speak("Deutsch", "de")
        viewer.await_sentence(german)
        assert in_every_window(FITS) == EVERYWHERE
        speak("English", "en")
        viewer.await_sentence(english)

    viewer.complaints()
    return everything


def protected() -> str:
    return share("on", "0", "--password-stdin", "--json", password="pass\n")["page"]


def test_a_password_is_asked_for(viewer: Viewer, link: Link, check: Check) -> None:
    viewer.open(protected())
    check("This link is protected by a password.", "Dieser Link ist durch ein Passwort geschützt.")
    viewer.enter_password("wrong")
    viewer.await_sentence("This is not the password.")
    assert viewer.wait(lambda: viewer.evaluate("document.activeElement.id") == "password")
    check("This is not the password.", "Das ist nicht das Passwort.")
    assert viewer.complaints() == []


def test_there_were_too_many_attempts(viewer: Viewer, page: Service, link: Link, check: Check) -> None:
    viewer.open(protected())
    for _ in range(6):
        viewer.wait(viewer.sees_form)
        viewer.enter_password("wrong")
    check("There were too many wrong attempts.", "Es gab zu viele falsche Versuche.")
    assert len(viewer.complaints()) == 1  # the refusal
    page.end()
    page.start()  # it has forgotten the attempts


def test_the_camera_is_unplugged(viewer: Viewer, link: Link, check: Check) -> None:
    shared(link, exists=0)
    viewer.open(link["page"])
    check("The camera is not plugged in; its picture comes back by itself as soon as it is.",
          "Die Kamera ist nicht angeschlossen; ihr Bild kommt von selbst zurück, sobald sie wieder angeschlossen ist.")  # fmt: skip
    assert viewer.complaints() == []


def test_the_stream_has_not_begun(viewer: Viewer, link: Link, check: Check) -> None:
    viewer.open(link["page"])
    check("The stream has not begun yet; it will be shown as soon as it begins.",
          "Der Stream hat noch nicht begonnen; er erscheint, sobald er beginnt.")  # fmt: skip
    assert viewer.complaints() == []


def test_the_stream_plays_and_stands_still(viewer: Viewer, encoder: Encoder, link: Link, check: Check) -> None:
    viewer.open(link["page"])
    viewer.await_playing()
    check("", "")
    assert viewer.evaluate("document.getElementById('video').ariaLabel") == "Live picture of Door"
    encoder.send(SIGSTOP)
    check("The picture does not move; it will continue as soon as the camera sends a new one.",
          "Das Bild steht; es geht weiter, sobald die Kamera ein neues sendet.")  # fmt: skip
    encoder.send(SIGCONT)
    viewer.await_playing()
    assert viewer.complaints() == []


def test_the_link_has_ended(viewer: Viewer, link: Link, check: Check) -> None:
    viewer.open(link["page"])
    share("renew", "0")
    check("This link does not work any more: it was replaced or removed. Ask whoever sent it to you for the new one.",
          "Dieser Link gilt nicht mehr: Er wurde ersetzt oder entfernt. Fragen Sie die Person, die ihn geschickt hat, nach dem neuen.")  # fmt: skip
    assert viewer.complaints() == []


def test_the_host_is_away(viewer: Viewer, page: Service, link: Link, check: Check) -> None:
    viewer.open(link["page"])
    viewer.wait(viewer.sentence)
    page.end()
    try:
        check("The host does not answer; the page tries again.")  # nor does it give the other texts
    finally:
        page.start()


def test_a_browser_without_scripts_is_told(viewer: Viewer, link: Link) -> None:
    viewer.tell_browser("Emulation.setScriptExecutionDisabled", value=True)
    try:
        viewer.open(link["page"])
        assert viewer.wait(lambda: "This page needs JavaScript." in viewer.text())
        assert "Diese Seite braucht JavaScript." in viewer.text()
    finally:
        viewer.tell_browser("Emulation.setScriptExecutionDisabled", value=False)
