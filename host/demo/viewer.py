# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A viewer of the streams: through the live links, and with share links on the share page."""

from __future__ import annotations

import json
import subprocess
import urllib.error
import urllib.request
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path

from host_view import is_live, live_link, run, wait_for


class ViewerError(Exception):
    """A viewer sees something wrong; the text describes it."""


def expect(truth: bool, otherwise: str) -> None:
    if not truth:
        raise ViewerError(otherwise)


class Viewer:
    """Remembers its share links. Each check returns lines about what the viewer sees."""

    def __init__(self, page: str) -> None:
        self._page = page
        self._live_links: dict[int, Path] = {}
        self._share_links: list[str] = []

    def watches(self, *profiles: int) -> list[str]:
        """Checks that the streams are where they were at the last check."""
        for profile in profiles:
            link = live_link(profile)
            expect(link == self._live_links.setdefault(profile, link), f"profile {profile} has another link than before")
            expect(is_live(profile), f"profile {profile} has no stream")
        return [f"profile {profile} is live at {self._live_links[profile].name}" for profile in profiles]

    def opens_the_newest_share_link(self, profile: int) -> list[str]:
        """Checks that the page plays it: what it sends to the browser is a stream."""
        link = json.loads(run("usbdevctl", "share", "show", str(profile), "--json"))["page"]
        self._share_links.append(link)
        answer = self._ask(link)
        expect(answer["outcome"] == "plays", f"the share link does not open: {answer}")
        expect(wait_for(lambda: self._is_there(answer["playlist"])), "the share link leads to no stream")
        return [f"{link}", "the stream plays"]

    def tries_the_link_before(self) -> list[str]:
        link = self._share_links[-2]
        answer = self._ask(link)
        expect(answer["outcome"] == "refused", f"the old share link still opens: {answer}")
        return [f"{link}", answer["sentence"]]

    @property
    def link(self) -> str:
        """Returns the newest share link."""
        return self._share_links[-1]

    @contextmanager
    def letting_others_in(self, address: str) -> Iterator[subprocess.Popen[bytes]]:
        """Connects the pages with a socket that is reachable from outside, as long as the process runs."""
        socket = Path("/tmp/pages")
        inside = "TCP:" + self._page.removeprefix("http://")
        with subprocess.Popen(["socat", f"UNIX-LISTEN:{socket},fork", inside]) as bridge:
            wait_for(socket.exists)
            Path("/tmp/address").write_text(address)
            yield bridge

    def _ask(self, link: str) -> dict[str, str]:
        question = dict(pair.split("=") for pair in link.partition("?")[2].split("&")) | {"password": ""}
        with urllib.request.urlopen(f"{self._page}/share/open", json.dumps(question).encode()) as answer:
            return json.load(answer)

    def _is_there(self, path: str) -> bool:
        try:
            with urllib.request.urlopen(self._page + path):
                return True
        except urllib.error.HTTPError:
            return False


@contextmanager
def viewer() -> Iterator[Viewer]:
    """Makes a viewer, and runs the owner's pages, which have the share page too, as long as it is used."""
    with subprocess.Popen(["owner-page"], stderr=subprocess.PIPE, text=True) as page:
        try:
            assert page.stderr is not None
            listening = next((line for line in page.stderr if "listening on " in line), None)
            if listening is None:
                raise SystemExit("demo: the pages do not start; run owner-page in `./dev shell` to see why")
            yield Viewer("http://" + listening.split()[-1])
        finally:
            page.terminate()
