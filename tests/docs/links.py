# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The links of a site, and of the documents."""

from __future__ import annotations

import re
from collections.abc import Iterator
from functools import cache
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit


class Page(HTMLParser):
    """What a page links to, what it loads, and what can be linked to in it."""

    def __init__(self) -> None:
        super().__init__()
        self.links: list[str] = []
        self.loaded: list[str] = []
        self.anchors: set[str] = set()

    def handle_starttag(self, tag: str, attributes: list[tuple[str, str | None]]) -> None:
        given = {name: value or "" for name, value in attributes}
        if "id" in given:
            self.anchors.add(given["id"])
        if tag == "a" and "href" in given:
            self.links.append(given["href"])
        elif "href" in given or "src" in given:
            self.loaded.append(given.get("href") or given["src"])


@cache
def read(path: Path) -> Page:
    page = Page()
    page.feed(path.read_text(encoding="utf-8"))
    return page


def is_local(link: str) -> bool:
    return not urlsplit(link).scheme and not link.startswith("//")


def leads_nowhere(path: Path, link: str) -> bool:
    parts = urlsplit(link)
    target = path.parent / unquote(parts.path) if parts.path else path
    if not target.is_file():
        return True
    return bool(parts.fragment) and unquote(parts.fragment) not in read(target).anchors


def broken_links(site: Path) -> list[str]:
    return [
        f"{path.name}: {link}"
        for path in sorted(site.glob("*.html"))
        for link in [*read(path).links, *read(path).loaded]
        if is_local(link) and leads_nowhere(path, link)
    ]


def remote_parts(site: Path) -> list[str]:
    loaded = [f"{path.name}: {link}" for path in site.glob("*.html") for link in read(path).loaded if not is_local(link)]
    styles = [path.name for path in site.glob("*.css") if re.search(r"url\(|@import", path.read_text())]
    return loaded + styles


def reachable(site: Path, first: str) -> set[str]:
    found, new = set(), {first}
    while new:
        found |= new
        linked = {urlsplit(link).path for name in new for link in read(site / name).links if is_local(link)}
        new = {name for name in linked if (site / name).is_file()} - found
    return found


def heading_anchors(text: str) -> set[str]:
    """As the pages that show a repository make them."""
    outside = re.sub(r"^```.*?^```", "", text, flags=re.MULTILINE | re.DOTALL)
    titles = re.findall(r"^#+ (.*)", outside, re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles}


def document_links(text: str) -> Iterator[str]:
    outside = re.sub(r"^```.*?^```|`[^`\n]*`", "", text, flags=re.MULTILINE | re.DOTALL)
    yield from re.findall(r"\]\(([^)\s]+)\)", outside)
