# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The files of the pages, which are public: they contain nothing about the host.

The page names its files by an address that contains their version, and they name each other relative to that. So a
browser keeps them for good, and asks for none of them again before there is another version."""

from __future__ import annotations

import hashlib
from pathlib import Path, PurePosixPath
from typing import Any

from sharelib.routes import WEB
from tornado.web import HTTPError

from ownerlib.answers import OwnersAnswer

PAGE = Path(__file__).resolve().parent.parent / "page"
SHARED = ("colours.js", "design.css", "favicon.svg", "live-player.js", "texts.js")  # with the share page
LIBRARIES = WEB / "libraries"
TYPES = {".js": "text/javascript", ".css": "text/css", ".json": "application/json", ".svg": "image/svg+xml"}
FOR_GOOD = "max-age=31536000, immutable"


def _read() -> dict[str, bytes]:
    """Returns the files by their addresses. All are read before the first is sent, so that they fit each other."""
    found = {f"page/{file.relative_to(PAGE)}": file for file in PAGE.rglob("*") if file.suffix in TYPES}
    found |= {f"page/{name}": WEB / name for name in SHARED}
    found |= {f"libraries/{file.name}": file for file in LIBRARIES.glob("*") if file.suffix in (".js", ".css")}
    return {address: file.read_bytes() for address, file in sorted(found.items())}


FILES = _read()
INDEX = (PAGE / "index.html").read_text(encoding="utf-8")
VERSION = hashlib.sha256(b"".join(address.encode() + content for address, content in FILES.items())).hexdigest()[:16]


class Page(OwnersAnswer):
    """Sends the page; what it shows is in the part of its address that browsers keep for themselves."""

    def get(self) -> None:
        self.set_header("Cache-Control", "no-cache")
        self.write(INDEX.replace('="/', f'="/files/{VERSION}/'))

    head = get


class PageFile(OwnersAnswer):
    """Sends a file. A page that was opened before there was another version gets the file as it is now."""

    def get(self, version: str | None, address: str) -> None:
        if address not in FILES:
            raise HTTPError(404)
        self.set_header("Cache-Control", FOR_GOOD if version == VERSION else "no-cache")
        self.set_header("Content-Type", TYPES[PurePosixPath(address).suffix])
        self.write(FILES[address])

    head = get


def routes() -> list[Any]:
    return [(r"/", Page), (r"/(?:files/([0-9a-f]+)/)?((?:page|libraries)/.+)", PageFile)]
