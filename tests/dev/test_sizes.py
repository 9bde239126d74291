# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The table of `./dev sizes`."""

from __future__ import annotations

import pytest
from conftest import Machine

TRIPLETS = {"amd64": "x86_64-linux-gnu", "arm64": "aarch64-linux-gnu", "armhf": "arm-linux-gnueabihf"}
SECTIONS = "section size addr\n.text 48142 0\n.rodata 5217 0\nTotal 60000\n"


@pytest.fixture
def machine_with_libraries(machine: Machine) -> Machine:
    """A machine on which every package contains one library, each of seven bytes."""
    machine.script("apt-get", "case $* in *download*) : >libkmod2.deb ;; esac")
    machine.script("dpkg-deb", 'mkdir -p "$3/lib" && printf 7bytes. >"$3/lib/libkmod.so.2.4.0"')
    for triplet in TRIPLETS.values():
        machine.script(f"{triplet}-strip", 'printf 7bytes. >"$2"')
        machine.answers(f"{triplet}-size", ("*", SECTIONS, 0))
    return machine


def test_each_library_has_a_row_for_each_architecture(machine_with_libraries: Machine) -> None:
    outcome = machine_with_libraries.dev("sizes")
    assert outcome.status == 0
    rows = [line for line in outcome.output.splitlines() if line.startswith("| lib")]
    assert rows == [f"| {library} | {architecture} | 48142 | 5217 | 7 |"
                    for architecture in TRIPLETS for library in ["libkmod", "libusbdevlib"]]


def test_the_libraries_are_downloaded_and_not_installed(machine_with_libraries: Machine) -> None:
    machine_with_libraries.dev("sizes")
    calls = machine_with_libraries.called("apt-get")
    assert sum("download libgpiod2 libkmod2 libudev1 libusb-1.0-0" in call for call in calls) == 3
    assert all("--download-only" in call for call in calls if " install" in call)


def test_without_a_network_there_is_a_message(machine_with_libraries: Machine) -> None:
    machine_with_libraries.answers("apt-get", ("*download*", "E: no route\n", 100), ("*", "", 0))
    outcome = machine_with_libraries.dev("sizes")
    assert outcome.status == 1
    assert "E: no route\ndev: the packages for amd64 could not be downloaded, which needs a network" in outcome.output
