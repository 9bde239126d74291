# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How ./dev builds and tests for other architectures than the machine's own."""

from __future__ import annotations

import pytest
from conftest import Machine


@pytest.fixture
def cross(machine: Machine) -> Machine:
    """A machine whose apt-get downloads one package, which contains one header."""
    machine.script("apt-get", """
case $* in *--download-only*) : >"$(dirname "$APT_CONFIG")/cache/archives/some-dev.deb" ;; esac""")
    machine.script("dpkg-deb", 'mkdir -p "$3/usr/include" && : >"$3/usr/include/some.h"')
    return machine


@pytest.mark.parametrize("architecture", ["armhf", "arm64"])
def test_the_packages_of_an_architecture_are_unpacked_before_its_build(cross: Machine, architecture: str) -> None:
    outcome = cross.dev("build", architecture)
    assert outcome.status == 0
    assert (cross.tree / f"build/sysroot/{architecture}/usr/include/some.h").exists()
    assert f'Architecture "{architecture}"' in (cross.tree / f"build/apt/{architecture}/config").read_text()
    assert cross.called("ninja") == [f"-C build/{architecture}"]
    assert "the machine itself stays as it is" in outcome.output


def test_nothing_is_installed_for_another_architecture(cross: Machine) -> None:
    cross.dev("build", "armhf")
    assert all("--download-only" in call for call in cross.called("apt-get") if " install" in call)
    assert cross.called("dpkg") == []


def test_the_compilers_and_the_emulator_are_installed_like_every_package(cross: Machine) -> None:
    cross.lacks("qemu-user")
    assert "missing packages: qemu-user" in cross.dev("build", "armhf").output
    assert any(call.endswith("install qemu-user") for call in cross.called("apt-get"))


def test_packages_are_unpacked_once(cross: Machine) -> None:
    cross.dev("build", "armhf")
    cross.dev("build", "armhf")
    assert len(cross.called("dpkg-deb")) == 1


def test_packages_are_unpacked_again_when_their_list_changes(cross: Machine) -> None:
    cross.dev("build", "armhf")
    list_of_packages = cross.tree / "tools/dev/sysroot.sh"
    list_of_packages.write_text(list_of_packages.read_text().replace("libgtest-dev", "libgtest-dev some-other-dev"))
    cross.dev("build", "armhf")
    assert len(cross.called("dpkg-deb")) == 2
    assert "some-other-dev" in [call for call in cross.called("apt-get") if "install" in call][-1]


def test_without_a_network_the_packages_of_an_architecture_get_a_message(cross: Machine) -> None:
    cross.answers("apt-get", ("*update*", "E: no route\n", 100), ("*", "noise\nE: no such package\n", 100))
    outcome = cross.dev("build", "armhf")
    assert outcome.status == 1 and cross.called("cmake") == []
    assert "not every list of packages for armhf could be read" in outcome.output
    assert "E: no such package\ndev: the packages for armhf could not be downloaded, which needs a network" in outcome.output
    assert "noise" not in outcome.output


def test_a_package_that_cannot_be_unpacked_is_not_taken_for_unpacked(cross: Machine) -> None:
    cross.script("dpkg-deb", 'mkdir -p "$3/usr"; exit 2')
    assert cross.dev("build", "armhf").status != 0
    assert cross.called("cmake") == []
    assert not (cross.tree / "build/sysroot/armhf").exists()


def test_tests_for_another_architecture_are_those_that_call_the_library(cross: Machine) -> None:
    outcome = cross.dev("test", "--arch", "armhf")
    assert cross.called("ninja") == ["-C build/armhf tests/abi/all tests/contract/all tests/cpp/all tests/python/all tests/unit/all"]
    assert ["build/armhf" in call and "--tests-regex ^(abi|contract|cpp|python|unit)[._]" in call for call in cross.called("ctest")] == [True]
    assert outcome.status == 0 and outcome.output.splitlines()[-1] == "7 passed, 0 failed"


def test_an_unknown_architecture_is_refused(cross: Machine) -> None:
    outcome = cross.dev("test", "--arch", "mips")
    assert outcome.status == 2
    assert outcome.output == "dev: 'mips' is not an architecture; there are armhf and arm64\n"
