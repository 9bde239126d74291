# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Who is still signed in when the server was started again, and what its file is good for."""

from __future__ import annotations

import asyncio
import json
import os
import sys
from pathlib import Path

import pytest

HOST = Path(__file__).resolve().parents[2] / "host"
sys.path[:0] = [str(HOST / "owner"), str(HOST / "services")]
from ownerlib import sessions
from loginlib.users import UserError, Users
from ownerlib.sessions import IDLE_SECONDS, KEEP_SECONDS, MOST_SESSIONS, Sessions, stamp, token
from ownerlib.sessions_file import Kept, KeptSession, SessionsFile

HASH = 64 * "0"


class Place:
    """A machine with a clock, users, and a file; each server that is started on it has a clock of its own."""

    def __init__(self, folder: Path) -> None:
        self.file = folder / "sessions"
        self.now = 1_800_000_000.0
        self.users: int | None = 1

    def start(self) -> Sessions:
        began = self.now
        return Sessions(SessionsFile(self.file), lambda: self.users, lambda: self.now - began, lambda: self.now)

    def sign_in(self, user: str = "ann") -> tuple[Sessions, str]:
        server = self.start()
        name = server.begin(user, self.users)
        asyncio.run(server.keep())
        return server, name

    def lets_in(self, name: str) -> bool:
        return self.start().is_open(name)


@pytest.fixture
def place(tmp_path: Path) -> Place:
    return Place(tmp_path)


def test_a_session_outlives_the_server_with_its_user_and_its_token(place: Place) -> None:
    _, name = place.sign_in()
    found = place.start().find(name)
    assert found and found.user == "ann"
    assert token(name) == token(name) != token(f"{name}x")


def test_a_session_ends_half_an_hour_after_its_last_use_also_without_a_server(place: Place) -> None:
    _, name = place.sign_in()
    place.now += IDLE_SECONDS - 2
    assert place.lets_in(name)
    place.now += 2
    assert not place.lets_in(name)


def test_use_is_stored_every_few_minutes(place: Place) -> None:
    server, name = place.sign_in()

    async def story() -> None:
        pauses = iter([600.0, None])

        async def pause(seconds: float) -> None:
            assert seconds == KEEP_SECONDS
            if (passed := next(pauses)) is None:
                raise asyncio.CancelledError
            place.now += passed
            server.find(name)

        await server.keep_often(pause)

    with pytest.raises(asyncio.CancelledError):
        asyncio.run(story())
    place.now += IDLE_SECONDS - 100
    assert place.lets_in(name)


def test_what_nobody_uses_is_not_stored_again(place: Place) -> None:
    server, _ = place.sign_in()
    place.file.unlink()
    pauses = iter([True, False])

    async def pause(_: float) -> None:
        if not next(pauses):
            raise asyncio.CancelledError

    with pytest.raises(asyncio.CancelledError):
        asyncio.run(server.keep_often(pause))
    assert not place.file.exists()


def test_who_signs_out_stays_out(place: Place) -> None:
    server, name = place.sign_in()
    server.end(name)
    asyncio.run(server.keep())
    assert not place.lets_in(name)


def test_who_signs_out_stays_out_even_if_nothing_can_be_stored(
    place: Place, monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]
) -> None:
    server, name = place.sign_in()
    server.end(name)

    def refuse(*_: object) -> None:
        raise OSError(28, "No space left on device")

    monkeypatch.setattr(os, "fsync", refuse)
    asyncio.run(server.keep())
    assert not place.lets_in(name)
    assert list(place.file.parent.iterdir()) == []
    assert "who is signed in cannot be stored: No space left on device" in capsys.readouterr().err


def test_all_sessions_end_when_the_hosts_users_change(place: Place) -> None:
    server, name = place.sign_in()
    place.users = 2
    assert not server.is_open(name)
    assert not place.lets_in(name)


def await_next_moment(folder: Path) -> None:
    """Several changes of a file within some milliseconds have the same time."""
    probe = folder / "probe"
    probe.touch()
    began = probe.stat().st_mtime_ns
    while probe.stat().st_mtime_ns == began:
        probe.touch()


@pytest.mark.parametrize("seen", ["users", "."])
def test_a_user_who_is_added_or_removed_or_gets_a_password_changes_the_hosts_users(tmp_path: Path, seen: str) -> None:
    folder = tmp_path / "login"
    folder.mkdir()
    users, stamps = Users(folder / "users"), [stamp(folder / seen)]
    for change in (lambda: users.add("bob", b"secret"), lambda: users.add("bob", b"another"), lambda: users.remove("bob")):
        await_next_moment(tmp_path)
        change()
        stamps.append(stamp(folder / seen))
    await_next_moment(tmp_path)
    with pytest.raises(UserError):
        users.remove("ann")
    assert stamp(folder / seen) == stamps[-1]
    assert len(set(stamps)) == len(stamps)


def test_a_session_of_a_password_that_was_changed_while_it_was_checked_does_not_begin(place: Place) -> None:
    server, before = place.start(), place.users
    place.users = 2
    assert not server.is_open(server.begin("ann", before))


def test_the_oldest_session_ends_if_there_are_too_many(place: Place) -> None:
    server, first = place.sign_in()
    second = server.begin("ann", place.users)
    for _ in range(MOST_SESSIONS - 1):
        server.begin("ann", place.users)
    asyncio.run(server.keep())
    assert [place.lets_in(name) for name in (first, second)] == [False, True]


def test_nothing_in_the_file_lets_anybody_in(place: Place) -> None:
    _, name = place.sign_in()
    content = place.file.read_text()
    assert name not in content and token(name) not in content
    hashes = [one["hash"] for one in json.loads(content)["sessions"]]
    assert [place.lets_in(one) for one in hashes] == [False]


def test_the_file_is_for_the_server_alone_and_nothing_is_left_beside_it(place: Place) -> None:
    os.umask(0)
    place.sign_in()
    place.sign_in("bob")
    assert [(one.name, one.stat().st_mode & 0o777) for one in place.file.parent.iterdir()] == [("sessions", 0o600)]


@pytest.mark.parametrize("mode", [0o640, 0o604, 0o660, 0o400])
def test_a_file_of_another_mode_is_ignored(place: Place, mode: int) -> None:
    _, name = place.sign_in()
    place.file.chmod(mode)
    assert not place.lets_in(name)


def test_a_file_of_another_user_is_ignored(place: Place, monkeypatch: pytest.MonkeyPatch) -> None:
    _, name = place.sign_in()
    monkeypatch.setattr(os, "geteuid", lambda: 54321)
    assert not place.lets_in(name)


def test_a_link_to_a_file_is_ignored(place: Place) -> None:
    _, name = place.sign_in()
    place.file.symlink_to(place.file.rename(place.file.with_name("other")))
    assert not place.lets_in(name)


def test_a_pipe_in_its_place_is_ignored_and_nobody_waits_for_it(place: Place) -> None:
    os.mkfifo(place.file, 0o600)
    assert not place.lets_in("any")


def test_a_file_that_was_cut_anywhere_is_ignored(place: Place) -> None:
    _, name = place.sign_in()
    content = place.file.read_bytes()
    for length in range(len(content)):
        place.file.write_bytes(content[:length])
        assert not place.lets_in(name), length


@pytest.mark.parametrize(
    "content",
    [
        "null", "[]", "{}", "7", '"x"', "[" * 5000, '{"users": 1}', '{"users": 1, "sessions": null}', '{"users": 1, "sessions": [1]}',
        '{"users": "1", "sessions": []}', '{"users": 1, "sessions": [{}]}',
    ],
)  # fmt: skip
def test_a_foreign_file_is_ignored(place: Place, content: str) -> None:
    place.file.write_text(content)
    place.file.chmod(0o600)
    assert SessionsFile(place.file).read() is None


@pytest.mark.parametrize(
    "session",
    [
        {"hash": 63 * "0"}, {"hash": 64 * "G"}, {"hash": None}, {"user": ""}, {"user": 65 * "x"}, {"user": None}, {"used": "1"},
        {"used": None}, {"used": 1.5},
    ],
)  # fmt: skip
def test_a_session_that_cannot_be_makes_the_file_a_foreign_one(place: Place, session: dict[str, object]) -> None:
    good = {"hash": HASH, "user": "ann", "used": 1}
    for one, expected in ((good, Kept(1, [KeptSession(**good)])), ({**good, **session}, None)):  # type: ignore[arg-type]
        place.file.write_text(json.dumps({"users": 1, "sessions": [one]}))
        place.file.chmod(0o600)
        assert SessionsFile(place.file).read() == expected


def test_a_session_of_the_future_is_none(place: Place) -> None:
    """Its clock or this one is wrong, and nobody knows how long it was not used."""
    _, name = place.sign_in()
    place.now -= 60
    assert not place.lets_in(name)


def test_a_server_that_is_killed_while_it_stores_leaves_the_file_as_it_was(place: Place, monkeypatch: pytest.MonkeyPatch) -> None:
    server, name = place.sign_in()
    server.begin("bob", place.users)

    class Killed(BaseException):
        pass

    def kill(*_: object) -> None:
        raise Killed

    monkeypatch.setattr(os, "replace", kill)
    monkeypatch.setattr(SessionsFile, "_remove", lambda _: None)  # which a process that was killed does not do
    with pytest.raises(Killed):
        asyncio.run(server.keep())
    assert place.lets_in(name)


def test_an_id_has_so_much_chance_in_it_that_its_plain_hash_hides_it() -> None:
    assert sessions.ID_BYTES >= 32
