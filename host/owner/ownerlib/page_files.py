# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The files of the pages, which are public: they contain nothing about the host."""

from __future__ import annotations

from pathlib import Path
from typing import Any

from sharelib.answers import FileAnswer
from sharelib.routes import WEB

from ownerlib.answers import OwnersAnswer

PAGE = Path(__file__).resolve().parent.parent / "page"
LIBRARIES = WEB / "libraries"


class Page(OwnersAnswer):
    """Sends the page; what it shows is in the part of its address that browsers keep for themselves."""

    def get(self) -> None:
        self.set_header("Cache-Control", "no-cache")
        self.write((PAGE / "index.html").read_bytes())

    head = get


class PageFile(OwnersAnswer, FileAnswer):
    def set_extra_headers(self, path: str) -> None:
        self.set_header("Cache-Control", "no-cache")


def routes() -> list[Any]:
    return [
        (r"/", Page),
        (r"/page/(design\.css|favicon\.svg|live-player\.js|texts\.js)", PageFile, {"path": WEB}),
        (r"/page/((?:[a-z][a-z0-9_-]*/)*[A-Za-z][A-Za-z0-9_-]*\.(?:js|css|json|svg))", PageFile, {"path": PAGE}),
        (r"/libraries/([A-Za-z][A-Za-z0-9_.-]*\.(?:js|css))", PageFile, {"path": LIBRARIES}),
    ]
