# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The manual as a site: the guides, the headers, the files, and the documents of the project."""

from __future__ import annotations

import re
import shutil
from pathlib import Path

from manuallib.header_page import header_page
from manuallib.page_values import fill, page_of
from manuallib.pandoc import pandoc
from manuallib.reference import REPOSITORY, Reference, version

MANUAL = REPOSITORY / "docs/manual"
DOCS = REPOSITORY / "docs"


def guides(reference: Reference) -> dict[str, str]:
    pages = {"index.html": "index.md", "integrate.html": "integrate.md", "threads.html": "threads.md"}
    return {page: fill((MANUAL / source).read_text(), reference) for page, source in pages.items()}


def headers(reference: Reference) -> dict[str, str]:
    ordered = sorted(reference.headers, key=lambda header: header.name != "usbdev/usbdev.h")
    return {page_of(header.name): header_page(header, reference) for header in ordered}


def _lower(headline: re.Match[str]) -> str:
    return f"#{headline[1]} {headline[2].capitalize()}"


def files(reference: Reference) -> dict[str, str]:
    """The manual pages of section 5: their chapters are one level lower here."""
    pages = {}
    for path in sorted((MANUAL / "pages").glob("*.5.md")):
        name = path.name.removesuffix(".5.md")
        lowered = re.sub(r"^(#+) (.*)", _lower, path.read_text(), flags=re.MULTILINE)
        pages[f"{name}.html"] = f"# {name}\n\n{fill(lowered, reference)}"
    return pages


def page_name(document: Path) -> str:
    """The README of a folder has the folder's name, that of the project is the first page."""
    if document.stem != "README":
        return f"{document.stem}.html"
    return f"{document.parent.name}.html" if document.parent.name.isalpha() else "index.html"


def documents() -> dict[str, str]:
    examples = REPOSITORY.glob("examples/README.md")
    others = sorted(path for path in REPOSITORY.glob("*.md") if path.stem != "README")
    return {page_name(path): path.read_text() for path in [*examples, *sorted(DOCS.glob("*.md")), *others]}


def linked(text: str, pages: set[str]) -> str:
    """Links between documents, as links between pages. What is not in the site is named without a link."""

    def page(found: re.Match[str]) -> str:
        shown, target, anchor = found[1], found[2], found[3] or ""
        if re.match(r"\w+:", target) or (not target and anchor):
            return found[0]
        if Path(target).suffix in (".svg", ".png"):
            return f"[{shown}](pictures/{Path(target).name}{anchor})"
        name = page_name(Path(target)) if target.endswith(".md") else target
        return f"[{shown}]({name}{anchor})" if name in pages else shown

    return re.sub(r"\[([^]]*)\]\(([^)#\s]*)(#[^)\s]*)?\)", page, text)


def title_of(text: str) -> str:
    return re.search(r"^# (.*)", text, re.MULTILINE)[1].split(" {")[0].replace("`", "")


def navigation(groups: dict[str, dict[str, str]]) -> str:
    return "\n".join(
        f"<h2>{group}</h2>\n<ul>"
        + "".join(f'<li><a href="{page}">{title_of(text)}</a></li>' for page, text in pages.items())
        + "</ul>"
        for group, pages in groups.items()
    )


def write_page(folder: Path, name: str, text: str, menu: str) -> None:
    variables = {"navigation": menu, "version": version(), "toc": "yes"}
    options = [word for key, value in variables.items() for word in ("--variable", f"{key}={value}")]
    options += ["--metadata", f"title={title_of(text)}", "--toc", "--toc-depth=3", "--no-highlight"]
    options += ["--template", str(MANUAL / "site/page.html"), "--output", str(folder / name)]
    pandoc(text, "-f", "markdown-smart+gfm_auto_identifiers", "-t", "html5", *options)


def write(folder: Path, reference: Reference) -> None:
    """Writes all pages, the pictures and the style."""
    groups = {
        "Guides": guides(reference),
        "Headers": headers(reference),
        "Files": files(reference),
        "The project": documents(),
    }
    pages = {name: text for group in groups.values() for name, text in group.items()}
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for name, text in pages.items():
        write_page(folder, name, linked(text, set(pages)), navigation(groups))
    (folder / "pictures").mkdir()
    for path in [*DOCS.glob("*.svg"), *DOCS.glob("pictures/*")]:
        shutil.copy(path, folder / "pictures")
    shutil.copy(MANUAL / "site/style.css", folder)
