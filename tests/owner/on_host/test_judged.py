# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What Lighthouse has to say against each page, as the server sends it: how fast it is on a slow phone and on a desk, whether
everybody can use it, and how it is made."""

from __future__ import annotations

import json
import subprocess
import time
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
FIRST_PAINT = {"desk": 1000, "phone": 2000}  # milliseconds; the phone has a slow network
# Other programs make a page slower, and never faster. So each figure of its speed is the best of its tries, of which there
# are more, after these seconds, only as long as they are needed.
PAUSES = (2, 4, 8, 16, 32)
PAGES = ["", "profile/0", "sharing", "events", "charts", "host"]
Page = tuple[str, str]  # the device and the address
Verdict = dict[str, Any]


def judge(pages: list[Page]) -> list[Verdict]:
    words = [word for page in pages for word in page]
    done = subprocess.run(["node", JUDGE / "judge.js", str(PORT), *words], stdout=subprocess.PIPE, text=True, check=True)
    return [json.loads(line) for line in done.stdout.splitlines()]


def better_of(one: Verdict, other: Verdict) -> Verdict:
    """The page as fast as the faster verdict found it in each respect; the rest is the same in both, unless one has failed."""
    if "problem" in one or "problem" in other:
        return other if "problem" in one else one
    speed = {name: max(one["speed"][name], other["speed"][name], key=lambda found: found["score"] or 0) for name in one["speed"]}
    return {**one, "firstPaint": min(one["firstPaint"], other["firstPaint"]), "speed": speed}


def said_of_its_speed(page: Page, verdict: Verdict) -> Verdict:
    speed = verdict["speed"].values()
    score = sum(one["weight"] * (one["score"] or 0) for one in speed) / sum(one["weight"] for one in speed)
    paint = verdict["firstPaint"]
    slow = {} if score >= LEAST else {"performance": score, "found": [one["said"] for one in speed]}
    return slow if paint and paint < FIRST_PAINT[page[0]] else {**slow, "first paint": paint}


def said_against(page: Page, verdict: Verdict) -> Verdict:
    if "problem" in verdict:
        return {"not judged": verdict["problem"]}
    made = {name: one for name, one in verdict["categories"].items() if (one["score"] or 0) < LEAST}
    return {**made, **said_of_its_speed(page, verdict)}


def judged_until_fast(pages: list[Page]) -> dict[Page, Verdict]:
    """What is said against the pages."""
    verdicts = dict(zip(pages, judge(pages), strict=True))
    for pause in PAUSES:
        slow = [page for page, verdict in verdicts.items() if said_of_its_speed(page, verdict)]
        for page in slow:
            print("slow:", *page, said_of_its_speed(page, verdicts[page]), flush=True)  # shown if the test fails
        if slow:
            time.sleep(pause)
            verdicts |= {page: better_of(verdicts[page], again) for page, again in zip(slow, judge(slow), strict=True)}
    return {page: said_against(page, verdict) for page, verdict in verdicts.items()}


def on_both(*addresses: str) -> list[Page]:
    return [(device, ORIGIN + address) for address in addresses for device in FIRST_PAINT]


@pytest.fixture(scope="module")
def verdicts(server: Service) -> dict[Page, dict[str, Any]]:
    run("for port in 1-1 3-1.1 3-1.2; do sim plug usb2-camera $port; done; usbdevctl assign 1-1 0; usbdevctl assign 3-1.1 1")
    link = json.loads(run("echo secret | usbdevctl share on 0 --password-stdin --json"))["page"]
    with browsing(f"--remote-debugging-port={PORT}") as chrome:
        signed_out = judged_until_fast(on_both("/", link))
        owner = Owner(chrome, ORIGIN)
        owner.open()
        owner.sign_in(USER, PASSWORD)
        owner.sees("Free channels")
        owner.browser.get("about:blank")
        return {**signed_out, **judged_until_fast(on_both(*(f"/#/{page}" for page in PAGES)))}


def test_nothing_is_said_against_any_page(verdicts: dict[Page, dict[str, Any]]) -> None:
    assert len(verdicts) == 16
    assert {page: found for page, found in verdicts.items() if found} == {}
