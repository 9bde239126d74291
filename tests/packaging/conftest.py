# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the tests of building and installing share: a machine with a compiler and CMake, and nothing else."""

from __future__ import annotations

import os
import re
import shutil
import subprocess
from pathlib import Path

import pytest

REPOSITORY = Path(__file__).resolve().parent.parent.parent
BUILD = Path(os.environ["USBDEV_BUILD_DIR"])
STATED = re.search(r"VERSION (\d+\.\d+\.\d+) ", (REPOSITORY / "CMakeLists.txt").read_text())
assert STATED is not None
VERSION = STATED[1]
PROGRAMS = "sh cmake ninja cc c++ gcc g++ clang clang++ musl-gcc as ld ar nm ranlib objcopy objdump readelf strip"
# With ccache, if the other builds use it, nothing is compiled again in the next run.
CACHE = {name: value for name, value in os.environ.items() if re.fullmatch("HOME|CCACHE_.*|CMAKE_.*_COMPILER_LAUNCHER", name)}


class BareMachine:
    """Programs for compiling in one folder, and no others; nothing is looked for in the system's folders."""

    def __init__(self, folder: Path) -> None:
        self.programs = folder / "bin"
        self.programs.mkdir()
        for name in (*PROGRAMS.split(), *(["ccache"] if "CMAKE_CXX_COMPILER_LAUNCHER" in CACHE else [])):
            program = shutil.which(name)
            assert program, f"{name} is not installed"
            (self.programs / name).symlink_to(program)

    def run(self, *command: str | Path) -> subprocess.CompletedProcess[str]:
        environment = {"PATH": str(self.programs), "PKG_CONFIG_LIBDIR": "/nonexistent", "REALGCC": "gcc", "LC_ALL": "C", **CACHE}
        return subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)

    def configure(self, build: Path, *options: str) -> subprocess.CompletedProcess[str]:
        return self.run("cmake", "-S", REPOSITORY, "-B", build, "-G", "Ninja", "-DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF",
                        "-DUSBDEV_LIBRARY_ONLY=ON", *options)

    def build(self, folder: Path, *options: str) -> None:
        """Builds the library, by default as the presets do: ccache then knows what they have compiled."""
        assert passed(self.configure(folder, "-DCMAKE_COMPILE_WARNING_AS_ERROR=ON", *options))
        assert passed(self.run("cmake", "--build", folder))


@pytest.fixture(scope="session")
def bare_machine(tmp_path_factory: pytest.TempPathFactory) -> BareMachine:
    return BareMachine(tmp_path_factory.mktemp("bare-machine"))


def passed(result: subprocess.CompletedProcess[str]) -> bool:
    print(result.stdout)
    return result.returncode == 0
