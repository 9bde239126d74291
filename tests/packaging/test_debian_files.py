# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the packages are made from says the same as the rest of the project; building them takes minutes."""

from __future__ import annotations

import re
import subprocess
from pathlib import Path

from conftest import REPOSITORY, VERSION

DEBIAN = REPOSITORY / "packaging/debian"


def changelog(tmp_path: Path, *fields: str) -> list[str]:
    """What Debian's own tool reads in the changelog that is made from CHANGELOG.md."""
    file = tmp_path / "changelog"
    file.write_text(subprocess.run([REPOSITORY / "packaging/debian-changelog"], check=True, capture_output=True, text=True).stdout)
    options = [word for field in fields for word in ("-S", field)]
    done = subprocess.run(["dpkg-parsechangelog", "-l", file, *options], check=True, capture_output=True, text=True)
    assert done.stderr == ""
    return done.stdout.splitlines()


def test_the_newest_entry_has_the_version_of_the_project(tmp_path: Path) -> None:
    assert changelog(tmp_path, "Source") == ["libusbdevlib"]
    assert changelog(tmp_path, "Version") == [f"{VERSION}-1"]


def test_every_point_of_the_newest_release_is_in_its_entry(tmp_path: Path) -> None:
    released = re.split(r"^## \[\d.*$", (REPOSITORY / "CHANGELOG.md").read_text(), flags=re.MULTILINE)[1]
    points = re.findall(r"^- (\S+ \S+ \S+)", released, re.MULTILINE)
    entry = " ".join(changelog(tmp_path, "Changes"))
    assert points and all(point.replace("`", "") in entry for point in points)


def test_the_symbols_are_those_of_the_library_with_their_nodes() -> None:
    nodes = re.findall(r"^(LIBUSBDEVLIB_\S+) \{(.*?)^\}", (REPOSITORY / "src/libusbdevlib.map").read_text(), re.M | re.S)
    exported = {f"{name}@{node}" for node, body in nodes for name in [node, *re.findall(r"^ +(\w+);", body, re.M)]}
    assert set(re.findall(r"^ (\S+@\S+) ", (DEBIAN / "libusbdevlib1.symbols").read_text(), re.M)) == exported


def test_an_override_has_a_reason() -> None:
    for file in DEBIAN.glob("*lintian-overrides"):
        *comments, override = file.read_text().strip().splitlines()
        assert override and comments[-1].startswith("# ") and "SPDX" not in comments[-1]


def test_a_real_machine_needs_the_packages_that_its_document_names_and_no_others_of_the_project() -> None:
    named = set(re.findall(r"\./(\S+)_\*\.deb", (REPOSITORY / "docs/real-machine.md").read_text()))
    packages = dict(re.findall(r"^Package: (\S+)\n(.*?)(?=^Package: |\Z)", (DEBIAN / "control").read_text(), re.M | re.S))
    needed = {other for name in named for other in packages if re.search(rf"^ {other} \(=", packages[name], re.MULTILINE)}
    assert named == needed | {"usbdev-host"}
