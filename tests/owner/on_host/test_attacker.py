# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Somebody who wants what belongs to the owner, and gets nothing."""

from __future__ import annotations

import json
import socket
import threading
from collections.abc import Iterator
from itertools import count
from pathlib import Path
from typing import Any

import pytest
from client import API, DOCUMENT, PASSWORD, Client
from conftest import Service, run
from sharelib.answers import LONGEST_BODY

FOLDER = Path("/mnt/ext/opt/apps/Velmora2/hls/channel1")
SESSIONS = Path("/etc/config/owner-sessions")
SCRIPT = "</script><script>alert(1)</script>"
GUESSES = (f"127.0.3.{number}" for number in count(1))

# Each request that changes something, with a body that would do it.
BODIES: dict[str, Any] = {
    "put /channels/{channel}/profile": {"profile": 1},
    "put /channels/{channel}/switch": {"on": False},
    "put /profiles/{profile}/name": {"name": "taken"},
    "post /profiles/{profile}/move": {"channel": 1},
    "patch /profiles/{profile}/stream": {"rate": 5},
    "put /profiles/{profile}/share": {"on": True},
}
CHANGES = [
    (method.upper(), path.format(channel=0, profile=0), BODIES.get(f"{method} {path}"))
    for path, operations in DOCUMENT["paths"].items()
    for method in operations
    if method in ("post", "put", "patch", "delete") and (method, path) != ("post", "/session")
]


@pytest.fixture(scope="module", autouse=True)
def cameras() -> None:
    """Two, one of them with profile 0."""
    run("sim plug usb2-camera 1-1; sim plug usb2-camera 3-1; usbdevctl assign 1-1 0")


@pytest.fixture
def untouched(owner: Client) -> Iterator[None]:
    """Nothing is changed when the test is over; but others have signed in."""
    before = {**owner.get("/state"), "events": None, "happened": None}
    yield
    assert {**owner.get("/state"), "events": None, "happened": None} == before


@pytest.mark.usefixtures("untouched")
@pytest.mark.parametrize(("method", "path", "body"), CHANGES)
def test_another_site_changes_nothing_in_the_owners_name(owner: Client, method: str, path: str, body: Any) -> None:
    other = Client()
    other.sign_in()
    for headers in (
        {"X-CSRF-Token": ""}, {"X-CSRF-Token": "x"}, {"X-CSRF-Token": other.csrf}, {"X-CSRF-Token": owner.csrf[:-1]},
        {"Origin": "http://example.org"}, {"Origin": "null"}, {"Origin": "http://127.0.0.1:8081"},
        {"Origin": "http://127.0.0.1:8080.example.org"}, {"Origin": "http://example.org", "Host": "127.0.0.1:8080"},
    ):  # fmt: skip
        assert owner.ask(method, path, body, **headers).error == "csrf", headers
    assert Client().ask(method, path, body).error == "signed_out"


@pytest.mark.usefixtures("untouched")
@pytest.mark.parametrize("kind", ["text/plain", "application/x-www-form-urlencoded", "multipart/form-data", ""])
def test_a_form_of_another_site_is_no_request(owner: Client, kind: str) -> None:
    answer = owner.ask("PUT", "/profiles/0/name", '{"name": "taken"}', **{"Content-Type": kind})
    assert answer.error == "invalid"


@pytest.mark.usefixtures("untouched")
def test_a_request_says_itself_what_it_is(owner: Client) -> None:
    for name in ("X-HTTP-Method-Override", "X-HTTP-Method", "X-Method-Override"):
        assert owner.ask("GET", "/profiles/0/share", **{name: "PUT"}).json["on"] is False
    assert owner.request("POST", f"{API}/profiles/0/share?_method=PUT", '{"on": true}', Cookie=owner.cookie).status == 403


def test_a_session_that_somebody_else_chose_is_never_used() -> None:
    victim = Client()
    victim.cookie = "usbdev_session=chosen"
    assert victim.sign_in().status == 200
    assert "chosen" not in victim.cookie
    stranger = Client()
    stranger.cookie = "usbdev_session=chosen"
    assert stranger.ask("GET", "/session").error == "signed_out"


def test_who_signs_in_again_ends_the_session_before() -> None:
    client = Client()
    client.sign_in()
    before = Client()
    before.cookie = client.cookie
    client.sign_in()
    assert before.ask("GET", "/session").error == "signed_out"
    assert client.ask("GET", "/session").status == 200


def test_what_is_stored_of_a_session_is_for_the_server_alone_and_opens_none() -> None:
    client = Client()
    client.sign_in()
    content = SESSIONS.read_text()
    assert SESSIONS.stat().st_mode & 0o777 == 0o600
    assert client.cookie.partition("=")[2] not in content and client.csrf not in content
    for guess in json.loads(content)["sessions"][-1].values():
        stranger = Client()
        stranger.cookie = f"usbdev_session={guess}"
        assert stranger.ask("GET", "/session").error == "signed_out"


def test_a_session_that_somebody_else_stored_is_not_taken_by_a_server_that_runs() -> None:
    content = SESSIONS.read_text()
    Client().sign_in()
    SESSIONS.write_text(content.replace('"hash": "', '"hash": "' + 64 * "0", 1))
    assert Client().sign_in().status == 200
    assert 64 * "0" not in SESSIONS.read_text()


def test_names_are_texts_and_never_pages(owner: Client) -> None:
    run(f"usbdevctl rename 0 '{SCRIPT}'")
    answer = owner.ask("GET", "/state")
    assert answer.json["channels"][0]["profile_name"] == SCRIPT
    assert answer.headers["Content-Type"] == "application/json; charset=UTF-8"
    assert answer.headers["X-Content-Type-Options"] == "nosniff"
    assert SCRIPT.encode() not in Client().request("GET", "/").content


@pytest.mark.parametrize("path", ["/", "/page/main.js", "/libraries/preact.js", "/nothing", f"{API}/state", f"{API}/nothing"])
def test_no_answer_lets_a_foreign_or_inline_script_run(path: str) -> None:
    policy = str(Client().request("GET", path).headers["Content-Security-Policy"]).split("; ")
    assert {"default-src 'self'", "frame-ancestors 'none'", "base-uri 'none'", "form-action 'self'"} <= set(policy)
    assert not [part for part in policy if "unsafe" in part or "*" in part or "http" in part]


@pytest.mark.parametrize("inside", ["/page/{}", "/libraries/{}", "/files/0/page/{}", "/{}", f"{API}/profiles/0/{{}}", f"/{32 * '0'}/{{}}"])
@pytest.mark.parametrize(
    "to", ["../ownerlib/host.py", "..%2fownerlib%2fhost.py", "%2e%2e/ownerlib/host.py", "....//host.py", "/etc/passwd",
           "%2fetc%2fpasswd", "..\\host.py", "main.js%00.css", "../api/openapi.yaml", ".gitignore", "package-lock.json"]
)  # fmt: skip
def test_no_other_file_is_given_out(owner: Client, inside: str, to: str) -> None:
    assert owner.request("GET", inside.format(to), Cookie=owner.cookie).status == 404


@pytest.mark.usefixtures("untouched")
@pytest.mark.parametrize(("method", "path", "body"), CHANGES)
def test_a_body_that_is_too_long_is_refused(owner: Client, method: str, path: str, body: Any) -> None:
    if body is not None:
        assert owner.ask(method, path, json.dumps(body) + LONGEST_BODY * " ").error == "too_large"


def test_a_thousand_connections_do_not_keep_the_owner_out(owner: Client) -> None:
    visits = []
    for _ in range(1000):
        visit = socket.create_connection(("127.0.0.1", 8080), timeout=20)
        visit.sendall(f"GET {API}/state HTTP/1.1\r\nHost: h\r\nX: ".encode())
        visits.append(visit)
    assert owner.ask("GET", "/state").status == 200
    for visit in visits:
        visit.close()


def test_guessing_a_password_does_not_get_faster_with_other_headers() -> None:
    client = Client(next(GUESSES))
    for number in range(5):
        body = {"user": "ann", "password": f"guess {number}"}
        assert client.ask("POST", "/session", body, **{"X-Forwarded-For": f"10.0.0.{number}"}).error == "wrong_password"
    for name in ("X-Forwarded-For", "X-Real-Ip", "Forwarded", "Client-Ip"):
        body = {"user": "ann", "password": PASSWORD}
        assert client.ask("POST", "/session", body, **{name: "10.0.0.9"}).error == "too_many"


def test_guesses_at_once_are_counted_one_by_one() -> None:
    address, errors = next(GUESSES), list[str]()
    threads = [threading.Thread(target=lambda: errors.append(Client(address).sign_in(password="guess").error)) for _ in range(12)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert sorted(errors) == 7 * ["too_many"] + 5 * ["wrong_password"]


def command_lines(seen: set[bytes], over: threading.Event) -> None:
    """Everything that the process list shows until it is over."""
    while not over.is_set():
        for process in Path("/proc").iterdir():
            if process.name.isdigit():
                try:
                    seen.add((process / "cmdline").read_bytes() + (process / "environ").read_bytes())
                except OSError:
                    pass


def test_no_secret_is_in_a_log_or_in_a_command_line(server: Service) -> None:
    seen, over, client = set[bytes](), threading.Event(), Client(next(GUESSES))
    watching = threading.Thread(target=command_lines, args=(seen, over))
    watching.start()
    client.sign_in(password="wrong secret")
    client.sign_in()
    page = client.ask("PUT", "/profiles/0/share", {"on": True, "password": "of the link"}).json["page"]
    token = page.partition("token=")[2]
    client.request("GET", f"{API}/nothing?secret={client.csrf}", Cookie=client.cookie)
    client.ask("PUT", "/profiles/0/share", {"on": False})
    over.set()
    watching.join()
    secrets = [PASSWORD, "wrong secret", "of the link", client.csrf, client.cookie.partition("=")[2], token]
    logs = b"".join(path.read_bytes() for path in (server.log, *Path("/var/log/vl").iterdir()) if path.is_file())
    assert any(b"usbdevctl\0login" in line for line in seen)
    assert [secret for secret in secrets if secret.encode() in logs or any(secret.encode() in line for line in seen)] == []
