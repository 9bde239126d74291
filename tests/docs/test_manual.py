# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The manual that is made from the headers, the program's help and the documents."""

from __future__ import annotations

import re
import subprocess
from pathlib import Path

import pytest
from conftest import BUILD, REPOSITORY
from links import broken_links, reachable, remote_parts

HOST_PROGRAMS = ("usbdev-demo", "usbdev-sandbox")  # what the reference host installs in the search path


@pytest.fixture(scope="module")
def manual(tmp_path_factory: pytest.TempPathFactory) -> Path:
    folder = tmp_path_factory.mktemp("manual")
    subprocess.run([REPOSITORY / "docs/manual/make-manual", BUILD / "usbdevctl", folder], check=True)
    return folder


@pytest.fixture(scope="module")
def pages(manual: Path) -> list[Path]:
    return sorted(manual.glob("man/man*/*"))


def messages(*command: str | Path) -> list[str]:
    done = subprocess.run(command, capture_output=True, text=True)
    return (done.stdout + done.stderr).splitlines()


def names(pages: list[Path], section: str) -> set[str]:
    return {path.name.removesuffix(f".{section}") for path in pages if path.name.endswith(f".{section}")}


def test_every_name_that_the_library_exports_has_a_page(pages: list[Path]) -> None:
    exported = set(re.findall(r"^ +(\w+);", (REPOSITORY / "src/libusbdevlib.map").read_text(), re.MULTILINE))
    assert exported - names(pages, "3usbdev") == set()


def test_every_record_has_a_page(pages: list[Path]) -> None:
    records = re.findall(r"^typedef struct (\w+)", (REPOSITORY / "include/usbdev/records.h").read_text(), re.MULTILINE)
    assert set(records) - names(pages, "3usbdev") == set()


def test_every_command_that_the_help_lists_has_a_page(pages: list[Path]) -> None:
    help_text = subprocess.run([BUILD / "usbdevctl", "--help"], capture_output=True, text=True, check=True).stdout
    commands = re.findall(r"^  ([a-z]+)  ", help_text, re.MULTILINE)
    assert len(commands) > 20
    assert names(pages, "1") == {"usbdevctl", *HOST_PROGRAMS} | {f"usbdevctl-{command}" for command in commands}


def test_the_pages_of_files_describe_every_channel_key(manual: Path) -> None:
    page = (manual / "man/man5/usbdev.conf.5").read_text()
    table = (REPOSITORY / "src/core/channel_keys.def").read_text()
    keys = re.findall(r'^CHANNEL_KEY\(.*?"(\w+)", (?:"(\w+)"|nullptr)', table, re.MULTILINE)
    paths = {f"{group}/{key}" if key else group for group, key in keys} | {"video/vcodec"}
    assert len(paths) > 30
    assert {path for path in paths if f"\n{path}\n" not in page and f"\n{path}@" not in page} == set()


def test_a_manual_finds_the_pages_by_their_names(pages: list[Path]) -> None:
    found = messages("lexgrog", *pages)
    assert [line for line in found if not re.search(r': "\S+ - .*"$', line)] == []


def test_groff_sets_the_pages_without_a_message(pages: list[Path]) -> None:
    found = messages("groff", "-ww", "-z", "-t", "-mandoc", "-Tutf8", "-Kutf8", *pages)
    # One after the other they fill sheets, and a table may begin at the end of one.
    assert [line for line in found if "will not fit on one page" not in line] == []


@pytest.mark.parametrize("width", [78, 117])
def test_the_cells_of_tables_fit_on_the_sheets_of_their_page(pages: list[Path], width: int) -> None:
    with_tables = [page for page in pages if ".TS\n" in page.read_text()]
    options = ["-ww", "-z", "-t", "-mandoc", "-Tutf8", "-Kutf8", "-rcR=1", f"-rLL={width}n"]
    assert {page.name: said for page in with_tables if (said := messages("groff", *options, page))} == {}


def test_the_first_line_of_a_page_shows_its_name_on_both_sides(pages: list[Path]) -> None:
    of_section_3 = [path for path in pages if path.name.endswith(".3usbdev")]
    set_by_groff = ["groff", "-rLL=78n", "-P-cbou", "-mandoc", "-Tutf8", *of_section_3]
    lines = set(subprocess.run(set_by_groff, capture_output=True, text=True, check=True).stdout.splitlines())
    titles = [f"{path.stem.upper()}(3usbdev)" for path in of_section_3]
    fitting = [title for title in titles if 2 * len(title) < 78]
    assert len(fitting) >= len(titles) - 1
    assert [title for title in fitting if not any(line.startswith(f"{title} ") and line.endswith(f" {title}") for line in lines)] == []


@pytest.mark.parametrize(("page", "program"), {
    "usbdev-demo": ["host/demo/demo"],
    "usbdev-sandbox": ["host/sandbox/sandbox", "run"],
    "usbdev-sandbox reboot": ["host/sandbox/sandbox", "reboot"],
}.items())  # fmt: skip
def test_the_pages_of_the_hosts_programs_have_their_options(manual: Path, page: str, program: list[str]) -> None:
    help_text = subprocess.run([REPOSITORY / program[0], *program[1:], "--help"], capture_output=True, text=True, check=True).stdout
    options = set(re.findall(r"--[a-z]+", help_text)) - {"--help"}
    text = (manual / f"man/man1/{page.split()[0]}.1").read_text().replace("\\-", "-")
    assert options and {option for option in options if option not in text} == set()


def test_mandoc_finds_no_mistake_in_the_pages(pages: list[Path]) -> None:
    # The pages have the version instead of a date, so that two builds make the same.
    found = messages("mandoc", "-T", "lint", "-W", "warning", *pages)
    assert [line for line in found if "missing date" not in line] == []


def test_a_page_of_section_3_states_the_header_the_result_the_lock_and_the_threads(manual: Path) -> None:
    page = subprocess.run(
        ["man", "-l", manual / "man/man3/mn_set_usbdev_hotplug.3usbdev"],
        env={"MANWIDTH": "500", "LC_ALL": "C.UTF-8", "PATH": "/usr/bin:/bin"},
        capture_output=True, text=True, check=True,
    ).stdout
    stated = ("#include <usbdev/hotplug.h>", "returns the channel, or -1", "Takes the lock. Runs commands.", "only one at a time")
    assert [text for text in stated if text not in page] == []


def test_every_link_of_the_site_leads_somewhere(manual: Path) -> None:
    assert broken_links(manual / "site") == []


def test_every_page_of_the_site_is_reached_from_the_first(manual: Path) -> None:
    pages = {path.name for path in (manual / "site").glob("*.html")}
    assert pages - reachable(manual / "site", "index.html") == set()


def test_the_site_loads_nothing_from_elsewhere(manual: Path) -> None:
    assert remote_parts(manual / "site") == []


def test_a_page_of_a_command_states_nothing_about_another_of_its_chapter(manual: Path) -> None:
    pages = {name: (manual / f"man/man1/usbdevctl-{name}.1").read_text() for name in ("status", "timeouts")}
    assert "A playlist is" in pages["status"].replace("\n", " ")
    assert "playlist" not in pages["timeouts"]


def test_options_in_the_pages_can_be_pasted(pages: list[Path]) -> None:
    """An unprotected dash is a hyphen, another character than that of an option."""
    assert [path.name for path in pages if re.search(r"^[^.'\n].*(?<![\\\w])--\w", path.read_text(), re.MULTILINE)] == []


def test_pages_name_nothing_that_was_not_filled_in(manual: Path) -> None:
    made = [*manual.glob("man/man*/*"), *manual.glob("site/*.html")]
    assert [path.name for path in made if re.search(r"\{\{[a-z]+\}\}", path.read_text())] == []
