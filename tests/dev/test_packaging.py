# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What ./dev package and ./dev reproduce refuse, and what they print if something is missing."""

from __future__ import annotations

from pathlib import Path

import pytest
from conftest import Machine

LIBRARIES = "install-libraries: the libraries were not fetched, which takes a network once"


def add_program(path: Path, text: str) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(f"#!/bin/sh\n{text}\n")
    path.chmod(0o755)


@pytest.fixture
def packager(machine: Machine) -> Machine:
    """A machine for amd64, on which a commit contains an empty packaging/debian, and building a package makes one."""
    machine.answers("dpkg", ("--print-architecture", "amd64\n", 0))
    machine.answers("git", ("log*", "1795000000\n", 0), ("*", "", 0))
    machine.answers("lintian", ("*", "", 0))
    for name in ("cp", "ln", "ls", "readlink"):
        machine.script(name, f'/bin/{name} "$@"')
    machine.script("tar", 'mkdir -p "$3/packaging/debian" "$3/host/web"; '
                   'printf "#!/bin/sh\n" >"$3/packaging/debian-changelog"; /bin/chmod +x "$3/packaging/debian-changelog"')
    machine.script("dpkg-buildpackage", "echo built at $SOURCE_DATE_EPOCH; : >../usbdevctl.deb; : >../some.changes")
    add_program(machine.tree / "host/web/install-libraries", "mkdir -p host/web/libraries")
    add_program(machine.tree / "packaging/sbom", "")
    return machine


@pytest.mark.parametrize("words", ["armhf", "--arch", "--arch armhf arm64", "--architecture armhf", "--help"])
def test_package_takes_only_an_architecture(packager: Machine, words: str) -> None:
    outcome = packager.dev("package", *words.split())
    assert outcome == (2, "dev: package takes only --arch ARCHITECTURE\n")
    assert packager.called("dpkg-buildpackage") == []


@pytest.mark.parametrize("name", ["mips", "", "../..", "-armhf", "armhf/../../.."])
def test_an_unknown_architecture_is_refused_and_nothing_is_removed(packager: Machine, name: str) -> None:
    outcome = packager.dev("package", "--arch", name)
    assert outcome == (2, f"dev: '{name}' is not an architecture; there are amd64, armhf and arm64\n")
    assert (packager.tree / "dev").exists() and packager.called("dpkg-query") == []


@pytest.mark.parametrize("words", [[], ["--arch", "amd64"]], ids=["no words", "by name"])
def test_the_packages_of_the_machine_are_built_with_the_time_of_the_commit(packager: Machine, words: list[str]) -> None:
    outcome = packager.dev("package", *words)
    assert outcome.status == 0, outcome.output
    assert packager.called("dpkg-buildpackage") == ["--build=binary --no-sign --host-arch amd64"]
    folder = packager.tree / "build/packages/amd64"
    assert sorted(path.name for path in folder.iterdir()) == ["build.log", "some.changes", "usbdevctl.deb"]
    assert (folder / "build.log").read_text() == "built at 1795000000\n"
    assert [call.split()[-1] for call in packager.called("lintian")] == ["build/packages/amd64/some.changes"]


def test_what_another_architecture_needs_is_not_installed(packager: Machine) -> None:
    packager.script("apt-get", 'case $* in *--download-only*) : >"$(dirname "$APT_CONFIG")/cache/archives/a.deb" ;; esac')
    packager.script("dpkg-deb", '[ "$1" = --info ] || mkdir -p "$3"')
    outcome = packager.dev("package", "--arch", "arm64")
    assert outcome.status == 0, outcome.output
    assert packager.called("dpkg-buildpackage") == ["--build=binary --no-sign --no-check-builddeps --host-arch arm64"]


def test_a_package_that_cannot_be_built_ends_with_the_last_lines_of_the_log(packager: Machine) -> None:
    packager.script("dpkg-buildpackage", "/usr/bin/seq 50; exit 2")
    outcome = packager.dev("package")
    assert outcome.status == 1 and outcome.output.endswith("\n49\n50\n") and "\n10\n" not in outcome.output
    assert packager.called("lintian") == []


def test_what_lintian_finds_is_a_failure(packager: Machine) -> None:
    packager.answers("lintian", ("*", "E: usbdevctl: some-tag\n", 2))
    outcome = packager.dev("package")
    assert outcome.status != 0 and "E: usbdevctl: some-tag" in outcome.output


def test_lintian_does_not_run_for_packages_that_need_no_check(packager: Machine) -> None:
    assert packager.dev("package", DEB_BUILD_OPTIONS="noautodbgsym nocheck").status == 0
    assert packager.called("lintian") == []


def test_debians_variable_reaches_the_build(packager: Machine) -> None:
    packager.script("dpkg-buildpackage", 'echo "$DEB_BUILD_OPTIONS"; : >../usbdevctl.deb; : >../some.changes')
    assert packager.dev("package", DEB_BUILD_OPTIONS="noautodbgsym").status == 0
    assert (packager.tree / "build/packages/amd64/build.log").read_text().split()[1:] == ["noautodbgsym"]


@pytest.mark.parametrize("command", ["package", "reproduce"])
def test_without_a_network_the_web_libraries_are_missing_and_old_packages_stay(packager: Machine, command: str) -> None:
    packager.dev("package")
    packager.calls.write_text("")
    add_program(packager.tree / "host/web/install-libraries", f"echo '{LIBRARIES}' >&2; exit 1")
    outcome = packager.dev(command)
    assert outcome.status == 1 and outcome.output == f"{LIBRARIES}\n"
    assert packager.called("dpkg-buildpackage") == packager.called("reprotest") == []
    assert (packager.tree / "build/packages/amd64/usbdevctl.deb").exists()


@pytest.mark.parametrize(("command", "tool"), [("package", "lintian"), ("reproduce", "reprotest")])
def test_the_tools_are_installed_like_every_package(packager: Machine, command: str, tool: str) -> None:
    packager.lacks(tool)
    assert f"missing packages: {tool}" in packager.dev(command).output


def test_reproduce_takes_no_arguments(packager: Machine) -> None:
    assert packager.dev("reproduce", "armhf") == (2, "dev: reproduce takes no arguments\n")


def test_reproduce_takes_root(packager: Machine) -> None:
    packager.answers("id", ("*", "1000\n", 0))
    outcome = packager.dev("reproduce")
    assert outcome.status == 1 and outcome.output.startswith("dev: reproduce takes root")
    assert packager.called("reprotest") == packager.called("dpkg-query") == []


def test_two_builds_that_differ_end_with_the_last_lines_of_the_log(packager: Machine) -> None:
    packager.answers("reprotest", ("*", "usbdevctl.deb differs\n", 1))
    outcome = packager.dev("reproduce")
    assert outcome == (1, "usbdevctl.deb differs\n")


def test_two_builds_that_agree_end_with_their_checksums(packager: Machine) -> None:
    packager.answers("reprotest", ("*", "Reproduction successful\n", 0))
    assert packager.dev("reproduce") == (0, "Reproduction successful\n")
