# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the login service is made of: the users' file, the sessions, the query, the log."""

from __future__ import annotations

import asyncio
import json
import os
import stat
import subprocess
from errno import ENOSPC
from pathlib import Path

import pytest
from conftest import REPOSITORY
from loginlib import query, service
from loginlib.request_log import RequestLog
from loginlib.sessions import IDLE_SECONDS, Sessions
from loginlib.users import LONGEST, UserError, Users
from servicelib import lifecycle


@pytest.fixture
def file(tmp_path: Path) -> Path:
    return tmp_path / "users"


def login_users(file: Path, *arguments: str, password: bytes = b"") -> tuple[int, str, str]:
    command = [REPOSITORY / "host/services/login-users", "--users", file, *arguments]
    done = subprocess.run(command, input=password, capture_output=True, check=False, timeout=30)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


class TestTheUsersFile:
    def test_holds_salted_hashes_and_no_password(self, file: Path) -> None:
        users = Users(file)
        users.add("ann", b"secret")
        users.add("bob", b"secret")
        (ann, hash_of_ann), (bob, hash_of_bob) = (line.split(":") for line in file.read_text().splitlines())
        assert (ann, bob) == ("ann", "bob")
        assert hash_of_ann.startswith("$argon2id$") and hash_of_bob.startswith("$argon2id$")
        assert hash_of_ann != hash_of_bob
        assert "secret" not in file.read_text()

    def test_is_the_owners_alone(self, file: Path) -> None:
        Users(file).add("ann", b"secret")
        assert stat.S_IMODE(file.stat().st_mode) == 0o600
        assert [path.name for path in file.parent.iterdir()] == ["users"]

    @pytest.mark.parametrize("call", ["fsync", "replace"])
    def test_stays_as_it_is_and_alone_when_it_cannot_be_stored(
        self, file: Path, call: str, monkeypatch: pytest.MonkeyPatch
    ) -> None:
        def fail(*_: object) -> None:
            raise OSError(ENOSPC, "no space")

        Users(file).add("ann", b"secret")
        before = file.read_bytes()
        monkeypatch.setattr(os, call, fail)
        with pytest.raises(OSError, match="no space"):
            Users(file).add("bob", b"secret")
        assert [(path, path.read_bytes()) for path in file.parent.iterdir()] == [(file, before)]

    def test_is_read_anew_each_time(self, file: Path) -> None:
        service = Users(file)
        assert not service.accepts("ann", b"secret")
        Users(file).add("ann", b"secret")
        assert service.accepts("ann", b"secret")
        assert not service.accepts("ann", b"secret ")

    def test_a_damaged_hash_lets_nobody_in(self, file: Path) -> None:
        file.write_text("ann:secret\nbob:\n")
        assert not Users(file).accepts("ann", b"secret")
        assert not Users(file).accepts("bob", b"")

    def test_a_second_password_replaces_the_first(self, file: Path) -> None:
        users = Users(file)
        users.add("ann", b"old")
        users.add("ann", b"new")
        assert (users.names(), users.accepts("ann", b"old"), users.accepts("ann", b"new")) == (["ann"], False, True)

    @pytest.mark.parametrize("name", ["", "a:b", "a&b", "50%", "a\nb", "a" * (LONGEST + 1), "ü" * (LONGEST // 2 + 1)])
    def test_takes_no_name_that_a_login_cannot_carry(self, file: Path, name: str) -> None:
        with pytest.raises(UserError):
            Users(file).add(name, b"secret")
        assert not file.exists()

    @pytest.mark.parametrize("password", [b"", b"a\0b", b"a" * (LONGEST + 1)])
    def test_takes_no_password_that_a_login_cannot_carry(self, file: Path, password: bytes) -> None:
        with pytest.raises(UserError):
            Users(file).add("ann", password)
        assert not file.exists()


class TestTheUsersCommand:
    def test_adds_lists_and_removes(self, file: Path) -> None:
        assert login_users(file, "list") == (0, "", "")
        for name in ("bob", "ann"):
            assert login_users(file, "add", name, password=b"the secret\nnot this") == (0, "", "")
        assert login_users(file, "list") == (0, "ann\nbob\n", "")
        assert Users(file).accepts("ann", b"the secret")
        assert login_users(file, "remove", "ann") == (0, "", "")
        assert login_users(file, "list") == (0, "bob\n", "")

    def test_reports_what_it_cannot_do(self, file: Path) -> None:
        assert login_users(file, "remove", "ann") == (1, "", "login-users: there is no user 'ann'\n")
        assert login_users(file, "add", "ann") == (1, "", "login-users: a password has 1 to 64 bytes\n")

    def test_has_no_argument_for_a_password(self, file: Path) -> None:
        status, _, _ = login_users(file, "add", "ann", "secret")
        assert (status, file.exists()) == (2, False)


class TestASession:
    def setup_method(self) -> None:
        self.now = 1000.0
        self.sessions = Sessions(lambda: self.now)
        self.session = self.sessions.open()

    def test_ends_when_nobody_asked_for_it_for_a_while(self) -> None:
        self.now += IDLE_SECONDS
        assert not self.sessions.use(self.session)

    def test_stays_open_while_it_is_asked_for(self) -> None:
        for _ in range(3):
            self.now += IDLE_SECONDS - 1
            assert self.sessions.use(self.session)

    def test_can_be_closed_once(self) -> None:
        assert self.sessions.close(self.session)
        assert not self.sessions.close(self.session)
        assert not self.sessions.use(self.session)

    def test_has_a_name_of_its_own(self) -> None:
        assert len({self.sessions.open() for _ in range(100)} | {self.session}) == 101


class TestTheQuery:
    def test_keeps_a_plus_and_decodes_the_escapes(self) -> None:
        assert query.parse(b"user=a+b%2Fc%7Ed%20e&pwd=x==") == {"user": b"a+b/c~d e", "pwd": b"x=="}

    def test_the_first_of_two_values_counts(self) -> None:
        assert query.text(query.parse(b"sid=one&sid=two"), "sid") == "one"

    def test_a_password_is_base64(self) -> None:
        assert query.password({"pwd": b"Pz4+Lw=="}) == b"?>>/"
        assert query.password({"pwd": b"Pz4+Lw="}) is None
        assert query.password({"pwd": b"not base64"}) is None
        assert query.password({}) is None

    def test_bytes_that_are_not_text_are_not_a_user_name(self) -> None:
        assert query.text({"user": b"\xff"}, "user") is None


def test_a_user_name_with_a_line_feed_makes_no_line_of_the_log(tmp_path: Path) -> None:
    log = tmp_path / "new" / "log"
    RequestLog(log).add("127.0.0.1", "/", 200, {"user": 'ann"\n{}'})
    (line,) = log.read_text().splitlines()
    assert json.loads(line)["user"] == 'ann"\n{}'
    assert stat.S_IMODE(log.stat().st_mode) == 0o600


def test_the_log_of_requests_can_be_the_standard_output(capfd: pytest.CaptureFixture[str]) -> None:
    RequestLog(Path("-")).add("127.0.0.1", "/", 200, {"user": "ann"})
    assert json.loads(capfd.readouterr().out)["user"] == "ann"


@pytest.mark.parametrize(("names", "said"), [([], 1), (["ann"], 0)])
def test_the_service_says_at_its_start_if_there_are_no_users(
    file: Path, names: list[str], said: int, monkeypatch: pytest.MonkeyPatch, capfd: pytest.CaptureFixture[str]
) -> None:
    async def end(_: str) -> None: ...

    monkeypatch.setattr(service, "port", lambda: 0)  # any that is free
    monkeypatch.setattr(lifecycle, "serve_until_stopped", end)
    for name in names:
        Users(file).add(name, b"secret")
    asyncio.run(service.serve(file, file.with_name("log")))
    assert capfd.readouterr().err.count("'login-users add NAME' adds a user") == said
