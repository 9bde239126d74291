# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Signing in and out."""

from __future__ import annotations

from itertools import count

import pytest
from client import PASSWORD, USER, Client
from conftest import Service
from ownerlib.login import LONGEST

ADDRESSES = (f"127.0.1.{number}" for number in count(1))  # a visitor at one may be wrong five times a minute

pytestmark = pytest.mark.usefixtures("server")


def test_a_user_of_the_host_is_signed_in_until_signing_out() -> None:
    client = Client()
    assert client.sign_in().json["user"] == USER
    assert client.get("/session") == {"user": USER, "csrf": client.csrf}
    assert client.ask("DELETE", "/session").status == 204
    assert client.ask("GET", "/session").error == "signed_out"


def test_the_cookie_is_for_this_site_only_and_no_script_reads_it() -> None:
    cookie = str(Client().sign_in().headers["Set-Cookie"])
    assert {"HttpOnly", "SameSite=Strict", "Path=/"} <= set(cookie.split("; "))


@pytest.mark.parametrize(
    ("user", "password"),
    [
        (USER, "wrong"), ("bob", PASSWORD), ("", ""), (USER, ""), ("-h", PASSWORD), ("--timeout=0", PASSWORD),
        (USER, f"{PASSWORD}\n{PASSWORD}"), (USER, (LONGEST + 1) * "x"), (f"{USER}&pwd=", PASSWORD),
    ],
)  # fmt: skip
def test_who_does_not_know_user_and_password_is_not_signed_in(user: str, password: str) -> None:
    client = Client(next(ADDRESSES))
    assert client.sign_in(user, password).error == "wrong_password"
    assert client.ask("GET", "/session").error == "signed_out"


def test_after_five_wrong_attempts_an_address_has_to_pause() -> None:
    client = Client(next(ADDRESSES))
    for _ in range(5):
        assert client.sign_in(password="wrong").error == "wrong_password"
    answer = client.sign_in()
    assert (answer.error, answer.headers["Retry-After"]) == ("too_many", str(answer.json["seconds"]))
    assert Client(next(ADDRESSES)).sign_in().status == 200


@pytest.mark.parametrize("body", ["", "{", "[]", "{}", {"user": USER}, {"user": USER, "password": 1}, {"user": "\0", "password": "x"},
                                  {"user": USER, "password": PASSWORD, "more": 1}, "9" * 4000, "[" * 4000, "\xff"])  # fmt: skip
def test_a_body_that_is_no_login_is_refused(body: object) -> None:
    assert Client().ask("POST", "/session", body).error == "invalid"


def test_a_login_service_that_does_not_answer_signs_nobody_in(login_service: Service) -> None:
    client = Client(next(ADDRESSES))
    login_service.end()
    try:
        assert client.sign_in().error == "wrong_password"
    finally:
        login_service.start()
    assert client.sign_in().status == 200
