# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The version of the project is written in CMakeLists.txt; the changelog's first entry is about it, and no other file has it."""

from __future__ import annotations

import datetime
import os
import re
import subprocess
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent.parent
BUILD = Path(os.environ["USBDEV_BUILD_DIR"])
STATED = re.search(r"^project\(usbdevlib VERSION (\d+\.\d+\.\d+) ", (REPOSITORY / "CMakeLists.txt").read_text(), re.MULTILINE)
assert STATED is not None
VERSION = STATED[1]
MAY_HAVE_IT = {"CMakeLists.txt", "CHANGELOG.md"}


def git(*command: str) -> list[str]:
    return subprocess.run(["git", *command], cwd=REPOSITORY, check=True, capture_output=True, text=True).stdout.splitlines()


def test_no_other_file_states_the_version() -> None:
    stated = rf"(^|[^0-9.]){re.escape(VERSION)}([^0-9.]|$)"
    # The list of JavaScript packages has versions of others.
    found = set(git("grep", "-IlE", "--untracked", stated, "--", ":!*package-lock.json", ":!LICENSES"))
    assert found <= MAY_HAVE_IT, "take it from the build instead"


def test_the_first_entry_of_the_changelog_is_about_it() -> None:
    entries = re.findall(r"^## \[(.*)\] - (.*)$", (REPOSITORY / "CHANGELOG.md").read_text(), re.MULTILINE)
    assert entries[0][0] == VERSION
    versions = [tuple(map(int, version.split("."))) for version, _ in entries]
    days = [datetime.date.fromisoformat(day) for _, day in entries]
    assert versions == sorted(set(versions), reverse=True) and days == sorted(days, reverse=True)


def test_the_library_and_its_soname_have_it() -> None:
    major = VERSION.split(".")[0]
    assert (BUILD / "libusbdevlib.so").resolve().name == f"libusbdevlib.so.{VERSION}"
    assert (BUILD / "libusbdevlib.so").readlink() == Path(f"libusbdevlib.so.{major}")


def test_the_newest_symbol_version_is_not_newer() -> None:
    script = (REPOSITORY / "src/libusbdevlib.map").read_text()
    nodes = [tuple(map(int, node.split("."))) for node in re.findall(r"^LIBUSBDEVLIB_(\d+\.\d+) {", script, re.MULTILINE)]
    assert nodes == sorted(nodes) and nodes[-1] <= tuple(map(int, VERSION.split(".")[:2]))


def test_a_release_has_the_tag_of_its_version() -> None:
    assert {tag for tag in git("tag", "--points-at", "HEAD", "--list", "v*")} <= {f"v{VERSION}"}
