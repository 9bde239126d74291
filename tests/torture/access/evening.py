# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""An evening on a host: everything that has to do with a secret happens once. Prints the secrets as a JSON object when all
of it has happened and everything runs, and ends the evening when its standard input is closed."""

from __future__ import annotations

import base64
import json
import re
import subprocess
import sys
import time
from collections.abc import Callable, Iterator
from contextlib import contextmanager, suppress
from http.cookiejar import CookieJar
from pathlib import Path
from urllib.error import HTTPError, URLError
from urllib.request import HTTPCookieProcessor, Request, build_opener, urlopen

LOGIN = "http://127.0.0.1:58080/cgi-bin/authLogin.cgi"
PAGES = "http://127.0.0.1:8080"
# The pages for guests alone have the same port.
SHARE_ADDRESS = "127.0.0.2"
SHARE = f"http://{SHARE_ADDRESS}:8080"
CONFIGURATION = Path("/etc/config/usbdev.conf")
PLAYLIST = Path("/mnt/ext/opt/apps/Velmora2/hls/channel1/playlist.m3u8")
SHOWN = ("/state", "/channels/0/formats", "/channels/0/assignment?profile=0", "/profiles/0/share", "/profiles/0/playlist.m3u8",
         "/events", "/charts?days=7", "/host", "/report")  # fmt: skip
PASSWORD, WRONG_PASSWORD, SHARE_PASSWORD = "Right-Password-1", "Wrong-Password-2", "Share-Password-3"


def run(*command: str, given: str = "", fails: bool = False) -> str:
    done = subprocess.run(command, input=given, check=not fails, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    return done.stdout


def read(address: str, body: bytes | None = None) -> str:
    try:
        with urlopen(Request(address, body), timeout=20) as answer:
            return answer.read().decode(errors="replace")
    except HTTPError as refusal:
        return refusal.read().decode()


def until(condition: Callable[[], bool]) -> None:
    limit = time.monotonic() + 20
    while not condition():
        assert time.monotonic() < limit, "it never happened"
        time.sleep(0.05)


def log_in() -> str:
    """Returns the session that is still open."""
    run("login-users", "add", "ann", given=PASSWORD)
    run("usbdevctl", "login", "ann", given=PASSWORD)
    run("usbdevctl", "login", "ann", given=WRONG_PASSWORD, fails=True)
    in_path = base64.b64encode(PASSWORD.encode()).decode()
    session = re.search(r"<authSid><!\[CDATA\[(.*?)]]>", read(f"{LOGIN}?user=ann&pwd={in_path}"))[1]
    run("usbdevctl", "session", "-", given=session)
    return session


def stream(size: str) -> str:
    """Returns the name of the live link. A stream begins when a setting changes."""
    run("usbdevctl", "assign", "3-1", "0")
    run("usbdevctl", "stream", "set", "0", "--size", size)
    until(PLAYLIST.exists)
    return re.search(r"<hlspath>(\w+)</hlspath>", CONFIGURATION.read_text())[1]


def share() -> list[dict[str, str]]:
    """Returns both links, the first of which was renewed."""
    first = json.loads(run("usbdevctl", "share", "on", "0", "--password-stdin", "--json", given=SHARE_PASSWORD))
    second = json.loads(run("usbdevctl", "share", "renew", "0", "--json"))
    for link in (first, second):
        run("usbdevctl", "share", "check", link["ssid"], "-", given=link["token"], fails=True)
        for password in ("", WRONG_PASSWORD, SHARE_PASSWORD):
            question = {"ssid": link["ssid"], "token": link["token"], "password": password}
            answer = json.loads(read(f"{SHARE}/share/open", json.dumps(question).encode()))
    assert "#EXTM3U" in read(SHARE + answer["playlist"])
    return [first, second]


def own() -> list[str]:
    """Signs in to the owner's pages, and asks for everything that they show. Returns the session and its token."""
    jar = CookieJar()
    browser = build_opener(HTTPCookieProcessor(jar))

    def ask(path: str, method: str = "GET", **body: object) -> str:
        headers = {"Content-Type": "application/json", "X-CSRF-Token": token}
        request = Request(f"{PAGES}/api/v1{path}", json.dumps(body).encode() if body else None, headers, method=method)
        with browser.open(request, timeout=60) as answer:
            return str(answer.read().decode())

    token = ""
    with suppress(HTTPError):
        ask("/session", "POST", user="ann", password=WRONG_PASSWORD)
    token = json.loads(ask("/session", "POST", user="ann", password=PASSWORD))["csrf"]
    for path in SHOWN:
        ask(path)
    ask("/profiles/0/share", "PUT", on=True, password=SHARE_PASSWORD)
    ask("/profiles/0/stream", "PATCH", rate=15.0)
    return [token, *(str(cookie.value) for cookie in jar)]


@contextmanager
def serving(address: str, *command: str) -> Iterator[None]:
    page = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        until(lambda: listens(address))
        yield
    finally:
        page.terminate()
        page.wait()


def listens(address: str) -> bool:
    try:
        return bool(read(f"{address}/share"))
    except URLError:
        return False


def main() -> None:
    session = log_in()
    run("sim", "plug", "usb2-camera", "3-1")
    names = [stream("640x480")]
    run("usbdevctl", "clear", "0")
    until(lambda: not PLAYLIST.exists())
    names.append(stream("320x240"))
    with serving(SHARE, "share-page", "--address", SHARE_ADDRESS), serving(PAGES, "owner-page"):
        links = share()
        sessions = [session, *own()]
        for command in (("timeouts",), ("status",), ("log",), ("report",), ("sync",)):
            run("usbdevctl", *command)
        passwords = [PASSWORD, WRONG_PASSWORD]
        secrets = {
            "password of a user": passwords + [base64.b64encode(password.encode()).decode() for password in passwords],
            "session": sessions,
            "password of a share link": [SHARE_PASSWORD],
            "token of a share link": [link["token"] for link in links],
            "id of a share link": [link["ssid"] for link in links],
            "hash of a share link": [link["hash"] for link in links],
            "name of a live link": names,
        }
        print(json.dumps(secrets), flush=True)
        sys.stdin.read()


main()
