# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The demo judges each of its steps itself; what is left to see is its end, and the page that it lets others look at."""

from __future__ import annotations

import json
import os
import re
import signal
import subprocess
import urllib.request
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent.parent
DEMO = REPOSITORY / "host/demo/demo"
END = re.compile(r"Watch it at (http://127\.0\.0\.1:\d+/share\?\S+) ;")


def comparable(text: str) -> str:
    """Without the identifiers that are made anew in each run."""
    return re.sub(r"\b(?:[0-9a-f]{32}|\d{8})\b", "*", text)


def steps_in_the_readme() -> list[str]:
    block = re.search(r"what the demo prints -->\n```text\n(.*?)```", (REPOSITORY / "README.md").read_text(), re.DOTALL)
    assert block is not None
    return block[1].strip("\n").split("\n\n")


def sign_in(line: str) -> str:
    """Signs in at the owner's pages with what the line says."""
    address, user, password = re.search(r"Set it up at (\S+) ; sign in as (\w+), with the password (\w+)", line).groups()  # type: ignore[union-attr]
    body = json.dumps({"user": user, "password": password}).encode()
    login = urllib.request.Request(f"{address}/api/v1/session", body, {"Content-Type": "application/json"})
    with urllib.request.urlopen(login, timeout=20) as answer:
        return str(json.load(answer)["user"])


def test_everything_is_as_it_should_be_and_a_browser_outside_reaches_the_pages() -> None:
    """Also, the part of its output that the README shows is as there."""
    printed: list[str] = []
    link = None
    with subprocess.Popen([DEMO, "--browser"], stdout=subprocess.PIPE, text=True, start_new_session=True) as demo:
        assert demo.stdout is not None
        for line in demo.stdout:
            printed.append(line)
            if link := END.match(line):
                break
        if link is not None:
            try:
                with urllib.request.urlopen(link[1], timeout=10) as page:
                    assert b"<title>Shared camera</title>" in page.read()
                assert sign_in(printed[-3]) == "owner"
            finally:
                os.killpg(demo.pid, signal.SIGINT)
    assert link is not None
    assert demo.returncode == 0
    output = comparable("".join(printed))
    assert [step for step in steps_in_the_readme() if comparable(step) not in output] == []
