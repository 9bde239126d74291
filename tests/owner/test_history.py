# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The history that the charts show."""

from __future__ import annotations

import sqlite3
import sys
from collections.abc import Callable, Set
from contextlib import closing
from pathlib import Path
from typing import Any

import pytest

HOST = Path(__file__).resolve().parents[2] / "host"
sys.path[:0] = [str(HOST / "owner"), str(HOST / "services")]
from ownerlib import history
from ownerlib.history import DAY, MOST_DAYS, REFUSED, Act, History, Known
from statelib.event_log import time_text

BEGIN = 1_800_000_000


def camera(number: int) -> dict[str, str]:
    """Camera 3 is called Door."""
    return {"name": "Door" if number == 3 else f"Camera {number}", "port": f"{number}-1"}


def channel(number: int, plugged: set[int], known: Set[int]) -> dict[str, Any]:
    """The first four have the profile of their number."""
    if number not in plugged | known:
        return {"channel": number, "state": "free", "port": None, "device": None, "profile": None, "profile_name": None, "waits_for": None}
    return {"channel": number, "waits_for": None, "switched_on": True, "reasons": [], "state": "plugged" if number in plugged else "unplugged", "port": f"{number}-1", "device": f"Camera {number}",
            "profile": number if number < 4 else None, "profile_name": "Door" if number == 3 else None}  # fmt: skip


def state(plugged: set[int], streaming: set[int], reserved: int, known: Set[int]) -> dict[str, Any]:
    return {
        "channels": [channel(number, plugged, known) for number in range(10)],
        "profiles": [{"profile": number, "streams": number in streaming} for number in range(4)],
        "usb": {"buses": [{"bus": 1, "reserved": 0, "speed": 480}, {"bus": 3, "reserved": reserved, "speed": 480}]},
    }


class Kept:
    """A history whose time is set."""

    def __init__(self, folder: Path) -> None:
        self.file = folder / "history.db"
        self.now = BEGIN
        self.start()

    def start(self) -> None:
        self.history = History(self.file, lambda: self.now)

    def note(
        self, plugged: set[int], streaming: set[int], counters: tuple[int, ...] | None = None, after: int = 60, reserved: int = 0,
        known: Set[int] = frozenset(),
    ) -> None:
        """`known` are those that are away, but not forgotten."""
        self.now += after
        self.history.note(state(plugged, streaming, reserved, known), counters)


@pytest.fixture
def kept(tmp_path: Path) -> Kept:
    return Kept(tmp_path)


def plugs(kept: Kept) -> list[tuple[str, str, int]]:
    """Which camera did what, and how long after the begin."""
    times = {time_text(BEGIN + 60 * minute): minute for minute in range(100)}
    return [(one["kind"], one["camera"]["name"], times[one["time"]]) for one in kept.history.since(1)["plugs"]]


def test_cameras_that_come_and_go_are_kept(kept: Kept) -> None:
    kept.note(set(), set())
    kept.note({0, 3}, set())
    kept.note({3}, set(), known={0})
    kept.note({3}, set())
    kept.note({0}, set())
    assert plugs(kept) == [
        ("plugged", "Camera 0", 2), ("plugged", "Door", 2), ("unplugged", "Camera 0", 3), ("unplugged", "Door", 5), ("plugged", "Camera 0", 5),
    ]  # fmt: skip


def test_what_came_or_went_while_the_server_did_not_run_has_the_time_of_its_start(kept: Kept) -> None:
    kept.note({0, 1}, set())
    kept.start()
    kept.note({1, 2}, set())
    assert plugs(kept) == [("plugged", "Camera 0", 1), ("plugged", "Camera 1", 1), ("unplugged", "Camera 0", 2), ("plugged", "Camera 2", 2)]


def test_a_camera_that_is_renamed_stays_one_and_has_its_last_name(kept: Kept) -> None:
    kept.note({3}, {3})
    renamed = state({3}, {3}, 0, set())
    renamed["channels"][3]["profile_name"] = "Barn"
    kept.now += 60
    kept.history.note(renamed, None)
    barn = {"name": "Barn", "port": "3-1"}
    assert [one["camera"] for one in kept.history.since(1)["plugs"]] == [barn]
    assert [(one["camera"], one["to"]) for one in kept.history.since(1)["up"]] == [(barn, None)]
    kept.note(set(), set())
    assert [one["camera"] for one in kept.history.since(1)["plugs"]] == [barn, barn]
    assert [one["camera"]["name"] for one in kept.history.past(10, Known(), lambda _: True).turns] == ["Barn", "Barn"]


def test_a_stream_is_of_the_camera_that_had_the_profile(kept: Kept) -> None:
    kept.note({0}, {0})
    moved = state({0, 5}, {0}, 0, set())
    moved["channels"][0]["profile"], moved["channels"][5]["profile"] = None, 0
    kept.now += 60
    kept.history.note(moved, None)
    assert [(one["profile"], one["camera"], one["to"]) for one in kept.history.since(1)["up"]] == [
        (0, camera(0), time_text(BEGIN + 120)), (0, camera(5), None)
    ]  # fmt: skip


def test_cameras_that_came_and_went_are_found_by_number_and_by_what_fits(kept: Kept) -> None:
    for plugged in (set[int](), {0}, {0, 3}, {3}, {3, 5}):
        kept.note(plugged, set())

    def found(limit: int = 10, before: int | None = None, fits: Callable[[dict[str, Any]], bool] = lambda _: True) -> list[dict[str, Any]]:
        return kept.history.past(limit, Known(before), fits).turns

    newest = found()
    assert [(one["kind"], one["camera"]["name"], one["camera"]["port"]) for one in newest] == [
        ("plugged", "Camera 5", "5-1"), ("unplugged", "Camera 0", "0-1"), ("plugged", "Door", "3-1"), ("plugged", "Camera 0", "0-1")
    ]  # fmt: skip
    assert found(1, newest[0]["id"]) == newest[1:2]
    assert found(1, fits=lambda one: one["camera"]["name"] == "Door") == newest[2:3]


def test_a_stream_is_kept_from_its_begin_to_its_end(kept: Kept) -> None:
    kept.note({1, 2}, {1})
    kept.note({1, 2}, {1, 2})
    kept.note({1, 2}, {2})
    assert kept.history.since(1)["up"] == [
        {"profile": 1, "camera": camera(1), "from": time_text(BEGIN + 60), "to": time_text(BEGIN + 180)},
        {"profile": 2, "camera": camera(2), "from": time_text(BEGIN + 120), "to": None},
    ]


def test_a_stream_whose_server_was_killed_ends_when_it_was_last_seen(kept: Kept) -> None:
    kept.note({1}, {1})
    kept.note({1}, {1})
    kept.start()
    kept.note({1}, {1}, after=DAY // 2)
    assert kept.history.since(1)["up"] == [
        {"profile": 1, "camera": camera(1), "from": time_text(BEGIN + 60), "to": time_text(BEGIN + 120)},
        {"profile": 1, "camera": camera(1), "from": time_text(kept.now), "to": None},
    ]


def test_the_reserved_bandwidth_of_a_bus_is_kept_as_long_as_it_is_the_same(kept: Kept) -> None:
    for reserved in (0, 197, 197, 394):
        kept.note(set(), set(), reserved=reserved)
    bus = {"bus": 3, "speed": 480}
    assert kept.history.since(1)["bandwidth"] == [
        {**bus, "reserved": 197, "from": time_text(BEGIN + 120), "to": time_text(BEGIN + 240)},
        {**bus, "reserved": 394, "from": time_text(BEGIN + 240), "to": None},
    ]
    kept.note(set(), set())
    assert kept.history.since(1)["bandwidth"][1]["to"] == time_text(BEGIN + 300)


def test_all_streams_end_when_the_host_cannot_be_read(kept: Kept) -> None:
    kept.note({0}, {1}, reserved=197)
    kept.now += 60
    kept.history.note(None, None)
    assert [kept.history.since(1)[kind][0]["to"] for kind in ("up", "bandwidth")] == [time_text(BEGIN + 120)] * 2
    kept.note({0}, {1})
    assert plugs(kept) == [("plugged", "Camera 0", 1)]


def test_time_outs_are_counted_since_the_time_before(kept: Kept) -> None:
    for counters in ((5, 0, 0, 0), (7, 0, 1, 0), (0, 0, 0, 0), (1, 0, 0, 0)):
        kept.note({0}, set(), counters)
    found = [(it["profile"], it["camera"], it["count"]) for it in kept.history.since(1)["timeouts"]]
    assert found == [(0, camera(0), 2), (2, None, 1), (0, camera(0), 1)]


def test_only_the_asked_days_are_shown_and_a_stream_begins_with_them(kept: Kept) -> None:
    kept.note({1}, {1})
    kept.note({0, 1}, {1}, after=2 * DAY)
    assert kept.history.since(1)["up"] == [{"profile": 1, "camera": camera(1), "from": time_text(kept.now - DAY), "to": None}]
    assert len(kept.history.since(1)["plugs"]) == 1


def note_wait(kept: Kept, waits_for: int | None, of: int = 1, **values: Any) -> None:
    """Of the cameras 0, 1 and 3 this one waits, for one with which it shares a controller."""
    kept.now += 60
    now = state({0, 1, 3}, set(), 0, set())
    reasons = [{"reason": "waits", "collision": "controller"}] if waits_for is not None else []
    now["channels"][of] |= {"waits_for": waits_for, "reasons": reasons, **values}
    kept.history.note(now, None)


def waits(kept: Kept) -> list[tuple[str, str, str]]:
    """Which camera waited for which, or waited no more."""
    turns = kept.history.past(100, Known(), lambda _: True).turns[::-1]
    return [(one["kind"], one["camera"]["name"], one["wait"]["name"]) for one in turns if one["wait"]]


def test_a_camera_that_waits_is_kept_with_the_other_one_and_why_until_it_need_not(kept: Kept) -> None:
    for waits_for in (None, 3, 3, None):
        note_wait(kept, waits_for)
    assert waits(kept) == [("waits", "Camera 1", "Door"), ("waits_no_more", "Camera 1", "Door")]
    first = kept.history.past(1, Known(), lambda one: one["kind"] == "waits").turns[0]
    assert (first["wait"], first["time"]) == ({**camera(3), "collision": "controller"}, time_text(BEGIN + 120))
    assert len(kept.history.since(1)["plugs"]) == 3  # which are what charts show


def test_a_camera_that_waits_for_another_one_than_before_begins_to(kept: Kept) -> None:
    for waits_for in (3, 0):
        note_wait(kept, waits_for)
    assert waits(kept) == [("waits", "Camera 1", "Door"), ("waits", "Camera 1", "Camera 0")]


def test_a_camera_that_is_away_or_off_does_not_wait(kept: Kept) -> None:
    note_wait(kept, 3, state="unplugged")
    note_wait(kept, 3, switched_on=False)
    assert waits(kept) == []


def test_a_camera_that_was_unplugged_did_not_get_its_turn(kept: Kept) -> None:
    note_wait(kept, 3)
    note_wait(kept, None, state="unplugged")
    assert waits(kept) == [("waits", "Camera 1", "Door")]


def test_a_camera_waits_on_when_the_server_starts_again(kept: Kept) -> None:
    note_wait(kept, 3)
    kept.start()
    note_wait(kept, 3)
    kept.now += (MOST_DAYS - 1) * DAY
    note_wait(kept, 3)
    assert waits(kept) == [("waits", "Camera 1", "Door")]


def test_what_was_logged_meanwhile_is_kept_with_what_users_did(kept: Kept) -> None:
    line = {"id": 7, "time": time_text(BEGIN), "severity": "information", "text": "USB slot [3-1] has been disabled."}
    kept.history.add(BEGIN, Act("switched_off", "ann", ("Camera 3", "3-1"), lines=[line]))
    past = kept.history.past(10, Known(), lambda _: True)
    assert past.acts[0]["lines"] == ["USB slot [3-1] has been disabled."]
    assert past.lines_of_acts == {(7, time_text(BEGIN))}
    kept.history.add(BEGIN, Act("switched_on", "bob", ("Camera 3", "3-1"), lines=[line]))  # at the same time
    assert [one["lines"] for one in kept.history.past(10, Known(), lambda _: True).acts] == [[], past.acts[0]["lines"]]


def acts(kept: Kept) -> list[str]:
    return [one["name"] for one in kept.history.past(100, Known(), lambda _: True).acts]


def test_what_users_did_is_kept_with_who_and_where(kept: Kept) -> None:
    kept.history.add(BEGIN, Act("moved", "ann", ("Camera 3", "3-1"), {"camera": "Barn"}))
    kept.note({3}, set())
    kept.history.add(BEGIN + 1, Act("signed_out", "ann"))
    out, moved = kept.history.past(10, Known(), lambda _: True).acts
    assert moved == {"id": 1, "time": time_text(BEGIN), "kind": "act", "name": "moved", "user": "ann", "values": {"camera": "Barn"},
                     "camera": {"name": "Door", "port": "3-1"}, "lines": []}  # fmt: skip
    assert (out["name"], out["camera"], out["values"]) == ("signed_out", None, {})


def test_whoever_is_refused_again_and_again_does_not_remove_what_users_did(kept: Kept, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(history, "MOST_ROWS", 10)
    monkeypatch.setattr(history, "MOST_REFUSALS", 3)
    kept.history.add(BEGIN, Act("signed_in", "ann"))
    for _ in range(50):
        kept.history.add(BEGIN, Act(REFUSED, None))
    assert acts(kept) == [*3 * [REFUSED], "signed_in"]


def test_what_happened_has_another_number_each_time(kept: Kept) -> None:
    numbers = [kept.history.happened()]
    for plugged in (set[int](), {0}, {0, 3}):
        kept.note(plugged, set())
        numbers.append(kept.history.happened())
    kept.history.add(BEGIN, Act("signed_in", "ann"))
    assert [*numbers, kept.history.happened()] == [0, 0, 1, 2, 3]


def rows(kept: Kept) -> dict[str, int]:
    with closing(sqlite3.connect(kept.file)) as database:
        return {table: database.execute(f"SELECT count(*) FROM {table}").fetchone()[0] for table in history.TABLES}


def test_what_is_too_old_is_removed_and_what_goes_on_is_not(kept: Kept) -> None:
    kept.note({0, 1}, {1, 2}, (0, 0, 0, 0))
    kept.history.add(kept.now, Act("signed_in", "ann"))
    kept.note({1}, {1}, (1, 0, 0, 0))
    assert rows(kept) == {"camera": 2, "waiting": 0, "turn": 3, "act": 1, "logged": 0, "stream": 2, "bandwidth": 0, "missed": 1}
    kept.note({1}, {1}, (1, 0, 0, 0), after=(MOST_DAYS + 1) * DAY)
    assert rows(kept) == {"camera": 1, "waiting": 0, "turn": 0, "act": 0, "logged": 0, "stream": 1, "bandwidth": 0, "missed": 0}
    assert kept.history.since(MOST_DAYS)["up"][0]["to"] is None
    kept.start()
    kept.note({1}, {1})
    assert kept.history.since(1)["plugs"] == []  # it has not come now


def test_there_is_a_largest_number_of_rows(kept: Kept, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(history, "MOST_ROWS", 5)
    for number in range(20):
        kept.note({number % 2}, {number % 2}, (number, 0, 0, 0), reserved=number)
        kept.history.add(kept.now, Act("signed_in", "ann"))
    assert max(rows(kept).values()) <= 5
    assert kept.history.since(1)["up"][-1]["to"] is None


def test_only_the_server_reads_who_did_what(kept: Kept) -> None:
    kept.note({0}, {1})
    assert oct(kept.file.stat().st_mode & 0o777) == "0o600"


def test_a_file_of_another_version_begins_anew(kept: Kept) -> None:
    with closing(sqlite3.connect(kept.file)) as database, database:
        database.execute("CREATE TABLE act(other TEXT)")
    kept.history.add(BEGIN, Act("signed_in", "ann"))
    kept.start()
    assert acts(kept) == ["signed_in"]


def test_a_folder_that_is_not_there_is_a_problem_of_the_database(tmp_path: Path) -> None:
    with pytest.raises(sqlite3.OperationalError):
        History(tmp_path / "none/history.db").happened()


def test_a_file_that_was_removed_is_made_again(kept: Kept) -> None:
    kept.note({0}, {0})
    kept.file.unlink()
    kept.note({0}, set())
    kept.note({0, 1}, set())
    assert plugs(kept) == [("plugged", "Camera 0", 2), ("plugged", "Camera 1", 3)]
