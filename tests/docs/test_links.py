# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The links of the documents lead to files and headings that exist."""

from __future__ import annotations

import re
from pathlib import Path

from blocks import documents
from conftest import REPOSITORY
from links import document_links, heading_anchors, is_local

# Addresses outside the project are not fetched; who adds one adds it here.
EXTERNAL = {
    "https://keepachangelog.com/en/1.1.0/",
    "https://semver.org/spec/v2.0.0.html",
}
# Pages of the manual's site, which guides link to.
PAGES_OF_THE_SITE = re.compile(
    r"^(usbdev|usbdev\.conf|usbdev-notification|core|devices|hostinfo|hotplug|profiles|records|web)\.html"
)


def target_of(document: Path, link: str) -> tuple[Path, str]:
    path, _, anchor = link.partition("#")
    return (document.parent / path).resolve() if path else document, anchor


def leads_nowhere(document: Path, link: str) -> bool:
    if document.parent.name == "manual" and PAGES_OF_THE_SITE.match(link):
        return False  # docs.manual checks the links of the site
    target, anchor = target_of(document, link)
    if not target.exists():
        return True
    return bool(anchor) and target.suffix == ".md" and anchor not in heading_anchors(target.read_text(encoding="utf-8"))


def links() -> list[tuple[Path, str]]:
    return [(document, link) for document in documents() for link in document_links(document.read_text(encoding="utf-8"))]


def test_every_link_between_documents_leads_to_a_file_and_its_heading() -> None:
    broken = [f"{path.relative_to(REPOSITORY)}: {link}" for path, link in links() if is_local(link) and leads_nowhere(path, link)]
    assert broken == []


def test_every_address_outside_the_project_is_listed() -> None:
    outside = {link for _, link in links() if not is_local(link)}
    assert outside - EXTERNAL == set()
