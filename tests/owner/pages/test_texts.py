# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The texts of the owner's pages and of the share page: every language has all of them, and every reason has its own."""

from __future__ import annotations

import json
import re
from pathlib import Path

import pytest

HOST = Path(__file__).resolve().parents[3] / "host"
TOOL = HOST.parent / "tools/usbdevctl"
Texts = dict[str, str]


def texts(page: str) -> dict[str, Texts]:
    """The texts of a page in each language."""
    return {file.stem: json.loads(file.read_text()) for file in (HOST / page / "page/texts").glob("*.json")}


def scripts(page: str) -> str:
    """All that names texts; of the owner's pages the server names some, too."""
    patterns = ("page/*.js", "page/*.html", "ownerlib/*.py")
    return "".join(file.read_text() for pattern in patterns for file in (HOST / page).glob(pattern))


ENGLISH = {page: texts(page)["en"] for page in ("owner", "share")}
# Each cause with the words of the host.
CAUSES = dict(re.findall(r"^USBDEVCTL_(?:REASON|NOTICE)\((\w+),(.*?)\)\n(?=\n|USB|$)", (TOOL / "reason/reasons.def").read_text(), re.M | re.S))
# What the page itself puts into words, besides what the host does.
OWN_VALUES = {"port", "channel", "other_name", "other_channel", "root", "lack_cure", "reserved", "room", "button"}
# Of an assignment, and of what else is refused for a reason that has a name.
REFUSALS = {
    *re.findall(r"\"(\w+)\"", re.findall(r"kReasons\[\] = \{(.*?)\}", (TOOL / "profile/assignment.cpp").read_text(), re.S)[0]),
    *re.findall(r"^constexpr char k\w+\[\] = \"(\w+)\";", (TOOL / "command_line/refusal.h").read_text(), re.M),
}
GUESTS_REASONS = re.findall(r"\(\"(\w+)\", \"", (HOST / "share/sharelib/verdict.py").read_text())
# The first part of the keys that scripts put together.
PUT_TOGETHER = ("act", "anyway", "change_password", "charts", "codec", "colours", "cure", "do", "done", "error", "events", "host", "no_picture", "reason", "refusal", "remove_password", "renew",
                "revoke", "set_password", "severity", "share", "sound", "state", "live_view", "words")  # fmt: skip


def values(text: str) -> set[str]:
    return set(re.findall(r"\{(\w+)\}", text))


def named(key: str, kind: str) -> str:
    """What a key is of, after its kind."""
    return key.split(".")[1] if key.startswith(f"{kind}.") else ""


@pytest.mark.parametrize("page", ENGLISH)
def test_there_are_two_languages(page: str) -> None:
    assert set(texts(page)) == {"en", "de"}


@pytest.mark.parametrize("page", ENGLISH)
def test_each_language_has_all_texts(page: str) -> None:
    assert list(texts(page)["de"]) == list(ENGLISH[page])


@pytest.mark.parametrize("page", ENGLISH)
def test_each_language_shows_the_same_values(page: str) -> None:
    assert {key: values(text) for key, text in texts(page)["de"].items()} == {key: values(text) for key, text in ENGLISH[page].items()}


def test_each_thing_that_users_do_has_its_text_and_no_other_has() -> None:
    done = re.findall(r"(?:did|Act)\((\"\w+\"[^,){]*)|^REFUSED = (\"\w+\")", scripts("owner"), re.M)
    names = {name for found in done for name in re.findall(r"\"(\w+)\"", "".join(found))} - {"on", "password"}
    assert len(names) > 10
    assert {named(key, "act") for key in ENGLISH["owner"]} - {""} == names


@pytest.mark.parametrize("kind", ["reason", "cure"])
def test_each_cause_has_its_texts_and_no_other_has(kind: str) -> None:
    assert len(CAUSES) > 30
    assert {named(key, kind) for key in ENGLISH["owner"]} - {""} == set(CAUSES)


@pytest.mark.parametrize("cause", CAUSES)
def test_the_texts_of_a_cause_show_only_values_that_there_are(cause: str) -> None:
    shown = [values(text) for kind in ("reason", "cure") for key, text in ENGLISH["owner"].items() if named(key, kind) == cause]
    assert set().union(*shown) <= values(CAUSES[cause]) | OWN_VALUES


def test_each_refusal_has_its_text_and_no_other_has() -> None:
    assert len(REFUSALS) > 10
    assert {named(key, "refusal") for key in ENGLISH["owner"]} - {""} == REFUSALS


def test_a_refusal_shows_only_the_camera_that_is_in_the_way() -> None:
    shown = [values(text) for key, text in ENGLISH["owner"].items() if named(key, "refusal")]
    assert set().union(*shown) == {"other"}


def test_each_reason_of_a_guest_has_its_text_and_no_other_has() -> None:
    assert len(GUESTS_REASONS) > 10
    assert {named(key, "reason") for key in ENGLISH["share"]} - {""} == set(GUESTS_REASONS)


def test_in_german_no_camera_is_called_as_the_reader_is() -> None:
    """"Sie" and "Ihr" at the begin of a sentence are the reader."""
    about_cameras = ("reason.", "switch_off.", "unbind.", "forget.", "log.", "act.", "events.")
    german = texts("owner")["de"]
    assert [key for key in german if key.startswith(about_cameras) and re.match(r"(Sie|Ihre?) ", german[key])] == []


@pytest.mark.parametrize("page", ENGLISH)
def test_each_text_of_a_script_exists(page: str) -> None:
    used = re.findall(r"\bt\(\"([\w.]+)\"|data-text=\"(\w+)\"|show\(\"\w+\", \"(\w+)\"", scripts(page))
    assert {key for keys in used for key in keys if key} <= set(ENGLISH[page])


@pytest.mark.parametrize("page", ENGLISH)
def test_no_text_is_left_over(page: str) -> None:
    whole = {key for key in ENGLISH[page] if key.split(".")[0] not in PUT_TOGETHER and not key.endswith(".short")}
    assert {key for key in whole if f'"{key}"' not in scripts(page)} == set()
