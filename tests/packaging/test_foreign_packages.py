# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The Debian packages for ARM: Debian has what they need there, and with that and nothing else their programs run, in an emulator
of the processor. Their scripts are those of the machine's own packages; test_packages.py runs them."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from conftest import REPOSITORY
from fresh_root import run

BUILT = REPOSITORY / "build/packages"
EMULATORS = {"arm64": "qemu-aarch64", "armhf": "qemu-arm"}
TRIPLETS = {"arm64": "aarch64-linux-gnu", "armhf": "arm-linux-gnueabihf"}
NAMES = ("libusbdevlib1", "usbdevctl", "usbdev-host")
HOST_LIBRARIES = "/usr/share/usbdev-host/built"


class ForeignRoot:
    """The packages, and whatever they depend on, unpacked. Of what the host needs only the libraries are."""

    def __init__(self, folder: Path, architecture: str) -> None:
        self._root, self._emulator, self.triplet = folder / "root", EMULATORS[architecture], TRIPLETS[architecture]
        quickly = {**os.environ, "DEB_BUILD_OPTIONS": "noautodbgsym nocheck"}
        run(REPOSITORY / "dev", "--yes", "package", "--arch", architecture, env=quickly)
        library, program, host = (next((BUILT / architecture).glob(f"{name}_*.deb")) for name in NAMES)
        needs = map(str.strip, run("dpkg-deb", "--field", host, "Depends").split(","))
        libraries = [need.partition(" ")[0] for need in needs if need.startswith("lib") and not need.startswith(NAMES)]
        archives = folder / "archives"
        (archives / "partial").mkdir(parents=True)
        run("apt-get", "-qq", "--yes", "--download-only", f"--option=Dir::Cache::Archives={archives}", "install", library, program,
            *libraries, env={**os.environ, "APT_CONFIG": str(REPOSITORY / f"build/apt/{architecture}/config")})  # fmt: skip
        for package in (*archives.glob("*.deb"), library, program, host):
            run("dpkg-deb", "--extract", package, self._root)

    def run(self, program: str, *arguments: str) -> str:
        """The emulator looks in the root first for whatever the program opens."""
        path = f"LD_LIBRARY_PATH={HOST_LIBRARIES}"
        return run(self._emulator, "-L", self._root, "-E", path, f"{self._root}{program}", *arguments)


@pytest.fixture(scope="module", params=EMULATORS)
def machine(request: pytest.FixtureRequest, tmp_path_factory: pytest.TempPathFactory) -> ForeignRoot:
    return ForeignRoot(tmp_path_factory.mktemp(request.param), request.param)


def test_the_program_finds_the_library_and_all_that_both_need(machine: ForeignRoot) -> None:
    program, library = machine.run("/usr/libexec/usbdevctl", "--version").splitlines()
    version = program.removeprefix("usbdevctl ")
    assert library == f"libusbdevlib {version} (/usr/lib/{machine.triplet}/libusbdevlib.so.{version})"


def test_the_hosts_tools_run(machine: ForeignRoot) -> None:
    asked = ("System", "Model", "-d", "none", "-f", "/usr/share/usbdev-host/view/etc/Tundrel.conf")
    assert machine.run(f"{HOST_LIBRARIES}/readcfg", *asked) == "none\n"
