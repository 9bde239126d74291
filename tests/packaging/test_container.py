# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The recipe of the container image fits the packages. docs/container.md states how it was built and run as a whole."""

from __future__ import annotations

import re

from conftest import REPOSITORY

RECIPE = (REPOSITORY / "packaging/Containerfile").read_text()


def control() -> dict[str, str]:
    """The fields of each package, as one text."""
    parts = re.split(r"^Package: ", (REPOSITORY / "packaging/debian/control").read_text(), flags=re.MULTILINE)[1:]
    return {part.splitlines()[0]: part for part in parts}


def copied() -> set[str]:
    return set(re.findall(r"(\S+)_\*\.deb", RECIPE))


def test_it_takes_the_host_and_everything_of_this_project_that_the_host_needs() -> None:
    packages = control()
    wanted, found = ["usbdev-host"], set()
    while wanted:
        found.add(name := wanted.pop())
        wanted += [other for other in packages if other not in found and re.search(rf"^ {other}\b(?!-)", packages[name], re.MULTILINE)]
    assert copied() == found


def test_it_runs_a_program_of_the_host_as_an_ordinary_user() -> None:
    assert re.findall(r"^(?:USER|CMD) (.*)$", RECIPE, re.MULTILINE) == ["visitor", '["usbdev-demo"]']
    assert "usbdev-demo" in (REPOSITORY / "packaging/debian/usbdev-host.install").read_text()


def test_its_base_is_the_release_that_the_packages_are_built_for() -> None:
    base = re.search(r"^ARG BASE=debian:(\d+)-slim$", RECIPE, re.MULTILINE)
    readme = (REPOSITORY / "README.md").read_text()
    assert base is not None and f"Debian {base[1]}" in readme
