# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""login and session."""

from __future__ import annotations

import os
import pty
import re
import select
import socket
import struct
import subprocess
import threading
from collections.abc import Iterator
from contextlib import suppress
from pathlib import Path
from urllib.request import urlopen

import pytest
from conftest import document, usbdevctl

PAGES = "http://127.0.0.1:58080/cgi-bin"
REFUSED = "usbdevctl: the host did not accept this user and password, or has no login service\n"


@pytest.mark.usefixtures("login_service")
def test_the_host_accepts_the_right_password() -> None:
    result = usbdevctl("login", "ann", given="secret\n")
    assert (result.stdout, result.returncode) == ("", 0)


@pytest.mark.usefixtures("login_service")
def test_the_host_does_not_accept_another_password() -> None:
    result = usbdevctl("login", "ann", given="Secret\n")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr.endswith(REFUSED)


def test_a_host_without_a_login_service_accepts_no_user() -> None:
    result = usbdevctl("login", "ann", given="secret\n")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr.endswith(REFUSED)


@pytest.mark.parametrize(
    ("given", "complaint"),
    [
        ("", "there is no password"),
        ("\n", "there is no password"),
        ("x" * 65, "the password is longer than 64 bytes"),
        ("a\0b\n", "the password has a zero byte"),
    ],
)
def test_a_password_that_cannot_be_one_is_not_sent(given: str, complaint: str) -> None:
    result = usbdevctl("login", "ann", given=given)
    assert (result.stdout, result.stderr, result.returncode) == ("", f"usbdevctl: {complaint}\n", 2)


@pytest.mark.usefixtures("login_service")
def test_a_terminal_does_not_show_the_password() -> None:
    terminal, inner = pty.openpty()
    command = ["usbdevctl", "login", "ann"]
    with subprocess.Popen(command, stdin=inner, stdout=inner, stderr=inner, start_new_session=True) as process:
        os.close(inner)
        shown = read_until(terminal, b"Password: ")
        os.write(terminal, b"secret\n")
        shown += read_until(terminal, b"authentication OK")
        assert process.wait(timeout=20) == 0
    os.close(terminal)
    assert b"secret" not in shown


def read_until(terminal: int, awaited: bytes) -> bytes:
    shown = b""
    while awaited not in shown:
        assert select.select([terminal], [], [], 20)[0], f"{awaited!r} did not come, but {shown!r}"
        shown += os.read(terminal, 1024)
    return shown


@pytest.mark.usefixtures("login_service")
def test_a_session_is_open_until_it_is_logged_out() -> None:
    with urlopen(f"{PAGES}/authLogin.cgi?user=ann&pwd=c2VjcmV0") as answer:
        found = re.search(r"<authSid><!\[CDATA\[(.*)]]>", answer.read().decode())
    assert found is not None
    session = found[1]
    assert document("session", session) == {"open": True}
    assert usbdevctl("session", session).returncode == 0
    assert usbdevctl("session", "-", given=session + "\n").returncode == 0
    urlopen(f"{PAGES}/authLogout.cgi?logout=1&sid={session}").close()
    assert document("session", session) == {"open": False}
    assert usbdevctl("session", session).returncode == 3
    assert usbdevctl("session", "-", given=session + "\n").returncode == 3


def test_a_session_that_nobody_gives_is_not_asked_for() -> None:
    result = usbdevctl("session", "-", given="\n")
    assert (result.stderr, result.returncode) == ("usbdevctl: there is no session\n", 2)


@pytest.fixture
def silent_server() -> Iterator[None]:
    """In the login service's place, a server that takes a request and never answers."""
    with socket.create_server(("127.0.0.1", 58080)):
        yield


def usbdevctl_processes() -> list[str]:
    names = []
    for process in Path("/proc").glob("[0-9]*/comm"):
        with suppress(OSError):
            names.append(process.read_text().strip())
    return [name for name in names if name == "usbdevctl"]


@pytest.mark.usefixtures("silent_server")
@pytest.mark.parametrize("command", [("login", "ann"), ("session", "0123", "--json")])
def test_a_login_service_that_does_not_answer_is_a_failure_and_nothing_is_left(command: tuple[str, ...]) -> None:
    result = usbdevctl(*command, "--timeout", "1", given="secret\n")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr.endswith("usbdevctl: the login service did not answer within 1 seconds\n")
    assert usbdevctl_processes() == []


@pytest.fixture
def rude_server() -> Iterator[None]:
    """In the login service's place, a server that breaks the connection in the middle of the request."""

    def serve() -> None:
        connection, _ = listener.accept()
        connection.recv(1)
        connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        connection.close()

    with socket.create_server(("127.0.0.1", 58080)) as listener:
        server = threading.Thread(target=serve)
        server.start()
        yield
        server.join()


@pytest.mark.usefixtures("rude_server")
@pytest.mark.parametrize("command", [("login", "ann"), ("session", "0123", "--json")])
def test_a_login_service_that_breaks_off_is_a_failure(command: tuple[str, ...]) -> None:
    result = usbdevctl(*command, given="secret\n")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr.endswith("usbdevctl: the login service broke off\n")
