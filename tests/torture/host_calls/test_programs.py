# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Every call of the host's programs, and every piece of memory, fails, once and for ever; the file runs on a host of its own."""

from __future__ import annotations

import base64
import ctypes
import errno
import json
import os
import re
import shlex
import socket
import struct
import subprocess
import sys
import threading
from collections import Counter, defaultdict
from collections.abc import Iterator
from contextlib import contextmanager, suppress
from dataclasses import dataclass
from pathlib import Path
from urllib.request import urlopen

import pytest

sys.path[:0] = [str(Path(__file__).resolve().parent.parent)]

from failing_program import NEVER, Failure, Outcome, Runner  # noqa: E402
from scenarios import GROUPS, SETUP, UNSEEN, Scenario  # noqa: E402
from thoroughness import report, times  # noqa: E402
from world import SHARED, World, without_made_up, wrongs_of_files  # noqa: E402

NOTIFICATION = b"ORDA_VLM2_CFCG_N" + bytes(16) + struct.pack("=6i", 1, 4, -1, 0, 6, 0)
FEW = 1
ALLOWED = {0, 1, 2, 3}
# What a wrong command line ends with, and of usbdevctl also what finds nothing: a failure may not look like either.
NOT_A_FAILURE = {"usbdevctl": {2, 3}, "readcfg": {1, 2}, "gpuinfo_app": {1, 2}}
WAYS = [
    ("any", errno.EIO, "nothing"),
    ("any", errno.EIO, "alike"),
    ("any", errno.EINTR, "nothing"),
    ("memory", errno.ENOMEM, "nothing"),
    ("memory", errno.ENOMEM, "alike"),
]
SCENARIOS = GROUPS[os.environ["USBDEV_GROUP"]]
LOGIN = "http://127.0.0.1:58080/cgi-bin/authLogin.cgi"


@dataclass
class Usual:
    """What a scenario does when nothing fails."""

    outcome: Outcome
    stored: dict[str, object]


class Host:
    """The host of this file, which is put back before each run."""

    def __init__(self, folder: Path) -> None:
        self.seen: Counter[str] = Counter()
        self.world = World(ctypes.CDLL("libusbdevlib.so"))
        self.world.take()
        self.runner = Runner(folder)
        self._session = ""
        self._usual_of = ("", "")
        self._links = json.loads(_shown("share", "show", "0"))
        self.common_pieces = self.run(Scenario("usbdevctl --version"), Failure("memory", NEVER, errno.ENOMEM)).counted

    def run(self, scenario: Scenario, failure: Failure) -> Outcome:
        self.world.put_back()
        line = scenario.line.replace("SSID", self._links["ssid"]).replace("TOKEN", self._links["token"])
        line = line.replace(" SID ", f" {self._session} ")
        return self.runner.run(shlex.split(line), failure, scenario.given, scenario.until)

    def usual(self, scenario: Scenario, what: str) -> Usual:
        """Found out once for all the ways to fail, which come one after the other."""
        if self._usual_of != (scenario.name, what):
            self._usual = self._undisturbed(scenario, what)
            self._usual_of = (scenario.name, what)
        return self._usual

    def _undisturbed(self, scenario: Scenario, what: str) -> Usual:
        self._session = new_session() if " SID " in scenario.line else ""
        outcome = self.run(scenario, Failure(what, NEVER, errno.EIO))
        assert outcome.status == 0, outcome
        return Usual(outcome, self.world.stored())

    def numbers(self, scenario: Scenario, what: str, counted: int) -> list[int]:
        """Those of the pieces or calls that fail, one after the other; a few of them in a short run."""
        first = 1
        if what == "memory" and scenario.line.startswith("usbdevctl") and scenario.line != "usbdevctl --version":
            first = max(1, self.common_pieces - 100)  # the same up to there for every command
        numbers = range(first, counted + 1)
        step = times(max(1, len(numbers) // FEW), 1)
        return list(numbers[step // 2 :: step])


def new_session() -> str:
    """Logs in. The session ends when nobody has asked for it for half an hour."""
    with urlopen(f"{LOGIN}?user=ann&pwd={base64.b64encode(b'secret').decode()}") as page:
        return re.search(r"<authSid><!\[CDATA\[(.*)]]>", page.read().decode())[1]


@contextmanager
def login_service(folder: Path) -> Iterator[None]:
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as ready:
        ready.bind(str(folder / "ready"))
        ready.settimeout(20)
        service = subprocess.Popen(["login-service"], env={**os.environ, "NOTIFY_SOCKET": str(folder / "ready")})
        try:
            ready.recv(64)
            yield
        finally:
            service.terminate()
            service.wait()


@contextmanager
def sent_notifications() -> Iterator[None]:
    """Somebody notifies the manager again and again, for a program that waits for it."""
    over = threading.Event()

    def send() -> None:
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            while not over.wait(0.01):
                with suppress(OSError):
                    sender.sendto(NOTIFICATION, ("127.0.0.1", 10171))

    thread = threading.Thread(target=send)
    thread.start()
    try:
        yield
    finally:
        over.set()
        thread.join()


def _shown(*command: str) -> str:
    return subprocess.run(["usbdevctl", *command, "--json"], check=True, capture_output=True, text=True).stdout


@pytest.fixture(scope="module")
def host(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Host]:
    folder = tmp_path_factory.mktemp("host")
    SHARED.mkdir()
    subprocess.run(["sh", "-e", "-c", SETUP], check=True, capture_output=True)
    exported = json.loads((SHARED / "all").read_text())
    exported["cameras"] = [camera for camera in exported["cameras"] if camera["slot"] == "3-1.1"]
    (SHARED / "garden").write_text(json.dumps(exported))
    with login_service(folder), sent_notifications():
        host = Host(folder)
        yield host
    for what, count in sorted(host.seen.items()):
        report(f"host_calls: programs, {os.environ['USBDEV_GROUP']}, {what}: {count}")


def wrongs_of_end(scenario: Scenario, outcome: Outcome) -> Iterator[str]:
    """What no program may do, whatever fails."""
    if outcome.status is None:
        yield "hangs"
    elif outcome.status not in ALLOWED:
        yield f"ends with {outcome.status}"
    if outcome.status == 1 and scenario.has_messages and "usbdevctl: " not in outcome.err:
        yield "fails without a message"
    if outcome.out and "--json" in scenario.line and not is_json(outcome.out):
        yield "prints broken JSON"
    if outcome.left:
        yield f"leaves processes: {outcome.left}"


def wrongs_of_success(scenario: Scenario, usual: Usual, outcome: Outcome, stored: dict[str, object]) -> Iterator[str]:
    """What a program may only do where the failure may stay unseen."""
    if outcome.status == 0 and without_made_up(outcome.out) != without_made_up(usual.outcome.out):
        yield "output"
    if outcome.status == 0 and stored != usual.stored:
        yield "change"
    if outcome.status in NOT_A_FAILURE[scenario.line.split()[0]]:
        yield f"status {outcome.status}"


def is_json(text: str) -> bool:
    """Whether it is an object, or one in each line."""
    for parts in ([text], text.splitlines()):
        with suppress(ValueError):
            return [json.loads(part) for part in parts] != []
    return False


def unseen(scenario: Scenario, outcome: Outcome, wrong: str) -> str:
    """The reason for which the failure may be unseen; empty where there is none."""
    return next((u.reason for u in UNSEEN if u.covers(scenario.line, outcome.first_failed, wrong)), "")


@pytest.mark.parametrize(("what", "error", "then"), WAYS, ids=[f"{w}-{errno.errorcode[e]}-{t}" for w, e, t in WAYS])
@pytest.mark.parametrize("scenario", SCENARIOS, ids=[scenario.name for scenario in SCENARIOS])
def test_a_program_does_what_it_reports(host: Host, scenario: Scenario, what: str, error: int, then: str) -> None:
    usual = host.usual(scenario, what)
    wrongs = defaultdict(list)
    for number in host.numbers(scenario, what, usual.outcome.counted):
        failure = Failure(what, number, error, then)
        outcome = host.run(scenario, failure)
        host.seen["failures"] += 1
        found = [*wrongs_of_end(scenario, outcome), *wrongs_of_files()]
        for wrong in wrongs_of_success(scenario, usual, outcome, host.world.stored()):
            reason = unseen(scenario, outcome, wrong)
            host.seen[f"unseen, because {reason}"] += 1 if reason else 0
            found += [] if reason else [wrong]
        for wrong in found:
            wrongs[wrong, outcome.first_failed].append((number, outcome.status, outcome.err[-200:]))
    assert not wrongs, "\n".join(f"{key}: {len(where)} times, {where[:3]}" for key, where in wrongs.items())
