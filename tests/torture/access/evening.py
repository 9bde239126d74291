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
from contextlib import contextmanager
from pathlib import Path
from urllib.error import HTTPError, URLError
from urllib.request import Request, urlopen

LOGIN = "http://127.0.0.1:58080/cgi-bin/authLogin.cgi"
SHARE = "http://127.0.0.1:8080"
CONFIGURATION = Path("/etc/config/usbdev.conf")
PLAYLIST = Path("/mnt/ext/opt/apps/Velmora2/hls/channel1/playlist.m3u8")
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


@contextmanager
def share_page() -> Iterator[None]:
    page = subprocess.Popen(["share-page"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        until(listens)
        yield
    finally:
        page.terminate()
        page.wait()


def listens() -> bool:
    try:
        return bool(read(f"{SHARE}/share"))
    except URLError:
        return False


def main() -> None:
    session = log_in()
    run("sim", "plug", "usb2-camera", "3-1")
    names = [stream("640x480")]
    run("usbdevctl", "clear", "0")
    until(lambda: not PLAYLIST.exists())
    names.append(stream("320x240"))
    with share_page():
        links = share()
        for command in (("timeouts",), ("status",), ("log",), ("report",), ("sync",)):
            run("usbdevctl", *command)
        passwords = [PASSWORD, WRONG_PASSWORD]
        secrets = {
            "password of a user": passwords + [base64.b64encode(password.encode()).decode() for password in passwords],
            "session": [session],
            "password of a share link": [SHARE_PASSWORD],
            "token of a share link": [link["token"] for link in links],
            "id of a share link": [link["ssid"] for link in links],
            "hash of a share link": [link["hash"] for link in links],
            "name of a live link": names,
        }
        print(json.dumps(secrets), flush=True)
        sys.stdin.read()


main()
