# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The event log together with the cameras that came and went."""

from __future__ import annotations

import copy
import re
import sqlite3
import sys
from contextlib import closing
from datetime import datetime, timezone
from pathlib import Path
from typing import Any

import pytest

HOST = Path(__file__).resolve().parents[2] / "host"
sys.path[:0] = [str(HOST / "owner"), str(HOST / "services")]
from ownerlib.days import Days
from ownerlib.happenings import Cameras, Wish, newest
from ownerlib.history import REFUSED, Act, History, Known, Past, Stream
from ownerlib.log_lines import parse
from ownerlib.texts import LANGUAGES, texts
from statelib import event_log
from statelib.event_log import time_text

SETTINGS = HOST / "services/statelib/stream_settings.py"
KINDS = re.findall(r"\"(\w+)\": ", re.findall(r"^KINDS[^{]*\{(.*?)\}", SETTINGS.read_text(), re.M | re.S)[0])

CREATED = datetime.fromtimestamp(20).strftime("%Y-%m-%d %H:%M:%S")  # when the camera got its profile, in the time of the host
BEFORE, AT_ONCE = time_text(19), time_text(20)
STATE: dict[str, Any] = {
    "channels": [
        {"channel": 0, "port": "3-1", "profile": 1, "profile_name": "Door", "device": "USB Camera", "state": "plugged",
         "created": CREATED, "waits_for": None},
        {"channel": 1, "port": "3-1.2", "profile": None, "profile_name": None, "device": "HD Camera", "state": "plugged",
         "waits_for": None},
        {"channel": 2, "port": None, "profile": None, "profile_name": None, "device": None, "state": "free", "waits_for": None},
    ],
    "profiles": [],
    "usb": {"buses": []},
}
DOOR_ITSELF = ("USB Camera", "3-1")
DOOR, HD = {"name": "Door", "port": "3-1"}, {"name": "HD Camera", "port": "3-1.2"}


@pytest.mark.parametrize(
    ("line", "camera"),
    [
        ("Modified Channel 2 FPS: 24.00", DOOR),
        ("Modified Channel 2 channel name: Audio on Channel 1", DOOR),
        ("Enabled image mirror on Channel 2", DOOR),
        ("USB slot [3-1] has been enabled.", DOOR),
        ("USB slot [3-1.2] has been disabled.", HD),
        ("Modified Channel 1 FPS: 24.00", None),
        ("USB slot [5-1] has been disabled.", None),
        ("Somebody writes on Channel 2", None),
        ("Camera[3-1.2 HD Camera]: it has no channel. Forget one.", HD),
        ("Camera[5-1]: it has no channel. Forget one.", None),
        ("Modified Channel 1 USB device name: Gone (5-1)", {"name": "Gone", "port": "5-1"}),
        ("Camera[5-1 Gone] has image size over 60 fps. It may cause decode error.", {"name": "Gone", "port": "5-1"}),
    ],
)
def test_a_line_is_about_the_camera_that_it_names(line: str, camera: dict[str, str] | None) -> None:
    assert Cameras(STATE, Past()).of(parse(line), AT_ONCE) == camera


def test_no_line_is_about_a_camera_while_nothing_is_known() -> None:
    assert Cameras(None, Past()).of(parse("Modified Channel 2 FPS: 24.00"), AT_ONCE) is None


def test_what_was_before_a_camera_got_its_profile_is_not_about_it() -> None:
    assert Cameras(STATE, Past()).of(parse("Modified Channel 2 FPS: 24.00"), BEFORE) is None


@pytest.mark.parametrize("created", [None, "", "yesterday"])
def test_without_the_time_of_its_profile_nothing_is_about_a_camera(created: str | None) -> None:
    state = {**STATE, "channels": [{**STATE["channels"][0], "created": created}]}
    assert Cameras(state, Past()).of(parse("Modified Channel 2 FPS: 24.00"), AT_ONCE) is None


@pytest.mark.parametrize(
    ("second", "name"),
    [(9, None), (10, "Barn"), (11, "Barn"), (12, "Barn"), (13, "Barn"), (14, None), (15, "Shed"), (16, "Shed"), (17, None)],
)
def test_a_line_of_the_past_is_about_the_camera_that_streamed_before_and_after_it(second: int, name: str | None) -> None:
    spans = [("Barn", 10, 11), ("Barn", 13, 13), ("Shed", 15, 16)]
    streams = [Stream(1, time_text(begin), time_text(end), {"name": one, "port": "3-1"}) for one, begin, end in spans]
    told = Cameras(STATE, Past(streams=streams)).of(parse("Modified Channel 2 FPS: 24.00"), time_text(second))
    assert told == (name and {"name": name, "port": "3-1"})


def test_what_was_before_a_camera_came_to_a_port_is_not_about_it() -> None:
    cameras = Cameras(STATE, Past({"3-1.2": AT_ONCE}))
    assert cameras.of(parse("USB slot [3-1.2] has been disabled."), BEFORE) is None
    assert cameras.of(parse("USB slot [3-1.2] has been disabled."), AT_ONCE) == HD


@pytest.fixture
def history(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> History:
    """Door came at second 15 and the HD camera at second 20; the log has lines of the seconds 10, 30 and 40."""
    monkeypatch.setattr(event_log, "FILE", tmp_path / "event.db")
    with closing(sqlite3.connect(event_log.FILE)) as database, database:
        database.execute("CREATE TABLE event(id INTEGER PRIMARY KEY, time INTEGER, level INTEGER, text TEXT)")
        lines = [(1, 10, 0, "begun"), (2, 30, 1, "Modified Channel 2 FPS: 60.00"), (3, 40, 0, "USB slot [3-1.2] has been enabled.")]
        database.executemany("INSERT INTO event VALUES(?, ?, ?, ?)", lines)
    clock = [15]
    history = History(tmp_path / "history.db", lambda: clock[0])
    history.note({**STATE, "channels": STATE["channels"][:1]}, None)
    clock[0] = 20
    history.note(STATE, None)
    return history


def found(history: History, **wish: Any) -> list[tuple[str, str]]:
    return [(one["kind"], one["text"]) for one in newest(history, STATE, Wish(**{"limit": 10, **wish}))]


SLOT, RATE = ("log", "Port 3-1.2 switched on"), ("log", "Rate set to 60 pictures a second")
CAME, BEGUN = ("plugged", "Plugged in"), ("log", "begun")
BOTH = [CAME, CAME]  # HD and Door


def test_a_port_changes_when_a_camera_comes_or_goes(history: History) -> None:
    assert history.past(0, Known(), lambda _: True) == Past({"3-1": time_text(15), "3-1.2": AT_ONCE}, names={("USB Camera", "3-1"): "Door", ("HD Camera", "3-1.2"): "HD Camera"})


def test_both_are_one_list_newest_first(history: History) -> None:
    assert found(history) == [SLOT, RATE, *BOTH, BEGUN]


def test_the_list_goes_on_where_it_ended(history: History) -> None:
    assert found(history, limit=2) == [SLOT, RATE]
    assert found(history, limit=3, before=2) == [*BOTH, BEGUN]
    assert found(history, before=2, known=Known(turn=1)) == [BEGUN]


def test_a_camera_is_found_by_its_name_and_its_port(history: History) -> None:
    assert found(history, search="hd cam") == [SLOT, CAME]
    assert found(history, search="DOOR") == [RATE, CAME]
    assert found(history, search="3-1.2") == [SLOT, CAME]
    assert found(history, search="%") == []


def test_what_happened_is_found_as_it_is_told_and_as_it_was_logged(history: History) -> None:
    assert found(history, search="60 pictures") == found(history, search="fps: 60") == [RATE]
    assert found(history, search="plugged") == BOTH
    assert found(history, search="[3-1.2]") == [SLOT]
    assert found(history, search="60 pictures", language="de") == []
    assert found(history, search="anGESCHLOSSEN", language="de") == 2 * [("plugged", "Angeschlossen")]


def test_a_part_of_a_word_that_is_not_shown_finds_nothing(history: History) -> None:
    assert found(history, search="ann") == []  # as in "Channel"


def test_a_line_is_beside_its_words_and_one_that_is_not_known_is_told_as_it_is(history: History) -> None:
    lines = {one["text"]: one["lines"] for one in newest(history, STATE, Wish(10))}
    assert lines == {RATE[1]: ["Modified Channel 2 FPS: 60.00"], SLOT[1]: ["USB slot [3-1.2] has been enabled."], "begun": ["begun"], CAME[1]: []}


def test_of_an_earlier_camera_the_profile_is_told(history: History) -> None:
    assert newest(history, None, Wish(10, search="Rate"))[0]["text"] == "Profile 1: Rate set to 60 pictures a second"


def test_what_users_did_is_in_the_list(history: History) -> None:
    history.add(35, Act("renamed", "ann", DOOR_ITSELF, {"name": "Barn {x}", "before": "Shed"}))
    history.add(36, Act(REFUSED, None, values={"address": "192.0.2.7"}))
    history.add(37, Act("changed", "ann", DOOR_ITSELF, {"settings": {"width": 640, "height": 480, "flip": True, "sound": False}}))
    changed, refused, renamed = ("act", "Size: 640 × 480; Flip top and bottom: yes; Send sound: no"), (
        "act", "A sign-in from 192.0.2.7 was refused: user or password was wrong"), ("act", "Renamed: “Shed” is called “Barn {x}” now")
    assert found(history) == [SLOT, changed, refused, renamed, RATE, *BOTH, BEGUN]
    assert found(history, search="ANN") == [changed, renamed]
    assert found(history, severity="warning") == [refused, RATE]
    assert found(history, search="door", known=Known(act=3)) == [renamed, RATE, CAME]
    assert {one["text"]: one["user"] for one in newest(history, STATE, Wish(10))}[renamed[1]] == "ann"


VALUES = {"codec": "h264", "rate": 15.0, "sound_codec": "aac", "volume": 40, "width": 640, "height": 480}


@pytest.mark.parametrize("language", LANGUAGES)
@pytest.mark.parametrize("setting", sorted({*KINDS} - {"width", "height"}))
def test_each_setting_is_told_with_its_value(history: History, setting: str, language: str) -> None:
    history.add(50, Act("changed", "ann", DOOR_ITSELF, {"settings": {setting: VALUES.get(setting, True)}}))
    assert all(found(history, limit=1, language=language)[0][1].partition(": ")[::2])


@pytest.mark.parametrize(("flip", "mirror", "told"), [(True, True, "Turned: upside down"), (False, False, "Not turned")])
def test_a_picture_that_is_turned_is_one_thing(history: History, flip: bool, mirror: bool, told: str) -> None:
    history.add(50, Act("changed", "ann", DOOR_ITSELF, {"settings": {"flip": flip, "mirror": mirror}}))
    assert found(history, limit=1) == [("act", told)]


def test_what_was_logged_of_what_a_user_did_stands_once_and_is_found(history: History) -> None:
    slot = event_log.newest(1)[0]
    history.add(40, Act("switched_on", "ann", ("HD Camera", "3-1.2"), lines=[slot]))
    switched = ("act", "USB port switched on")
    assert found(history) == [switched, RATE, *BOTH, BEGUN]
    assert found(history, search="slot [3-1.2]") == [switched]
    assert newest(history, STATE, Wish(1))[0]["lines"] == [slot["text"]]


def test_a_new_log_with_the_same_numbers_is_told(history: History) -> None:
    slot = event_log.newest(1)[0]
    history.add(40, Act("switched_on", "ann", ("HD Camera", "3-1.2"), lines=[{**slot, "time": time_text(39)}]))
    assert SLOT in found(history)


def test_a_camera_is_found_by_its_present_name_also_before_it_had_it(history: History) -> None:
    line = "Modified Channel 2 USB device name: USB Camera (3-1)"
    with closing(sqlite3.connect(event_log.FILE)) as database, database:
        database.execute("INSERT INTO event VALUES(4, 16, 0, ?)", (line,))
    before = {**STATE["channels"][0], "profile_name": None, "profile": None}
    (Path(event_log.FILE).parent / "history.db").unlink()
    history.note({**STATE, "channels": [before]}, None)
    history.note(STATE, None)
    assert {("plugged", "Plugged in"), ("log", "Got profile 1")} <= set(found(history, search="door"))
    assert found(history, search="device name: USB") == [("log", "Got profile 1")]  # whose line has it


SHARED = [("root_port", "both are on USB port 3-1 of the host"), ("controller", "on one USB controller"), ("host", "one camera only")]


@pytest.mark.parametrize(("collision", "why"), SHARED)
def test_a_camera_that_waits_is_told_with_the_other_one_and_why(history: History, collision: str, why: str) -> None:
    channels = copy.deepcopy(STATE["channels"])
    channels[1] |= {"waits_for": 0, "switched_on": True, "reasons": [{"reason": "waits", "collision": collision}]}
    history.note({**STATE, "channels": channels}, None)
    history.note(STATE, None)
    no_more, waits = found(history, search="wait")
    assert waits[1].startswith("Waits for “Door”, port 3-1: ") and why in waits[1]
    assert no_more == ("waits_no_more", "No longer waits for “Door”, port 3-1")
    assert len(found(history, search="wartet", language="de")) == 2


def test_a_camera_that_streams_instead_of_another_one_is_found_by_the_button_and_by_waiting(history: History) -> None:
    history.add(50, Act("instead", "ann", ("HD Camera", "3-1.2"), DOOR))
    [(_, text)] = found(history, search="stream this one instead")
    assert text == "“Stream this one instead”: the USB port 3-1 of “Door” was switched off, so that this camera need not wait"
    assert found(history, search="wait") == [("act", text)]
    assert len(found(history, search="wartet auf diese kamera wechseln", language="de")) == 1


def test_all_words_have_to_be_there_wherever_they_are(history: History) -> None:
    assert found(history, search="rate door") == found(history, search="pictures  3-1 rate") == [RATE]
    assert found(history, search="rate hd") == []


AUGUST = int(datetime(2026, 8, 1, 22, 30, tzinfo=timezone.utc).timestamp())


@pytest.mark.parametrize(
    ("search", "language", "zone", "is_found"),
    [
        ("Aug 1", "en", "UTC", True), ("August 1, 2026", "en", "UTC", True), ("8/1/2026", "en", "UTC", True), ("2026-08-01", "en", "UTC", True),
        ("Aug 2", "en", "UTC", False), ("Aug 2", "en", "Europe/Berlin", True), ("02.08.2026", "de", "Europe/Berlin", True),
        ("2.8.", "de", "Europe/Berlin", True), ("2. August", "de", "Europe/Berlin", True), ("Aug 20", "en", "UTC", False), ("Aug 1", "en", "../x", True),
    ],
)  # fmt: skip
def test_a_day_is_found_by_its_words_where_somebody_is(history: History, search: str, language: str, zone: str, is_found: bool) -> None:
    history.add(AUGUST, Act("signed_in", "ann"))
    assert bool(found(history, search=search, language=language, zone=zone)) == is_found


def test_today_and_yesterday_are_days() -> None:
    days = Days(texts("en"), "UTC", datetime(2026, 8, 2, 1, tzinfo=timezone.utc))
    assert [days.words(f"2026-08-0{day}T22:00:00Z").split()[-1] for day in (1, 2)] == ["yesterday", "today"]


def test_nothing_that_came_or_went_is_a_warning(history: History) -> None:
    assert found(history, severity="warning") == [RATE]
    assert found(history, severity="information") == [SLOT, *BOTH, BEGUN]


def test_the_log_is_there_without_the_history(tmp_path: Path, history: History) -> None:
    (tmp_path / "history.db").write_bytes(b"damaged" * 1000)
    assert found(history) == [SLOT, RATE, BEGUN]
