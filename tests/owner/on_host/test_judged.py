# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What Lighthouse has to say against each page, as the server sends it: how fast it is on a slow phone and on a desk, whether
everybody can use it, and how it is made."""

from __future__ import annotations

import json
import subprocess
from pathlib import Path
from typing import Any

import pytest
from browser import Owner
from client import ORIGIN, PASSWORD, USER
from conftest import Service, run
from viewer import browsing

JUDGE = Path(__file__).resolve().parents[1] / "judge"
PORT = 9333  # of the browser's developer tools
LEAST = 0.95
TRIES = 3  # a page is slower while other programs run
FIRST_PAINT = {"desk": 1000, "phone": 2000}  # milliseconds; the phone has a slow network
PAGES = ["", "profile/0", "sharing", "events", "charts", "host"]
Page = tuple[str, str]  # the device and the address
Verdict = dict[str, Any]


def judge(pages: list[Page]) -> list[Verdict]:
    words = [word for page in pages for word in page]
    done = subprocess.run(["node", JUDGE / "judge.js", str(PORT), *words], stdout=subprocess.PIPE, text=True, check=True)
    return [json.loads(line) for line in done.stdout.splitlines()]


def said_against(page: Page, verdict: Verdict) -> dict[str, Any]:
    found = {name: one for name, one in verdict["categories"].items() if (one["score"] or 0) < LEAST}
    paint = verdict["firstPaint"]
    late = {} if paint and paint < FIRST_PAINT[page[0]] else {"first paint": paint}
    return {**found, **late}


def judged_until_well(pages: list[Page]) -> dict[Page, dict[str, Any]]:
    """What is said against the pages, the last time."""
    found: dict[Page, dict[str, Any]] = {page: {"not": "judged"} for page in pages}
    for _ in range(TRIES):
        wanted = [page for page in pages if found[page]]
        for page, verdict in zip(wanted, judge(wanted) if wanted else []):
            found[page] = said_against(page, verdict)
            print(*page, found[page] or "well", flush=True)  # shown if the test fails
    return found


def on_both(*addresses: str) -> list[Page]:
    return [(device, ORIGIN + address) for address in addresses for device in FIRST_PAINT]


@pytest.fixture(scope="module")
def verdicts(server: Service) -> dict[Page, dict[str, Any]]:
    run("for port in 1-1 3-1.1 3-1.2; do sim plug usb2-camera $port; done; usbdevctl assign 1-1 0; usbdevctl assign 3-1.1 1")
    link = json.loads(run("echo secret | usbdevctl share on 0 --password-stdin --json"))["page"]
    with browsing(f"--remote-debugging-port={PORT}") as chrome:
        signed_out = judged_until_well(on_both("/", link))
        owner = Owner(chrome, ORIGIN)
        owner.open()
        owner.sign_in(USER, PASSWORD)
        owner.sees("Free channels")
        owner.browser.get("about:blank")
        return {**signed_out, **judged_until_well(on_both(*(f"/#/{page}" for page in PAGES)))}


def test_nothing_is_said_against_any_page(verdicts: dict[Page, dict[str, Any]]) -> None:
    assert len(verdicts) == 16
    assert {page: found for page, found in verdicts.items() if found} == {}
