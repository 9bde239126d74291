# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The installed library, as other programs find it through pkg-config and through CMake, wherever it was installed."""

from __future__ import annotations

import os
import shlex
import shutil
import subprocess
from pathlib import Path
from typing import NamedTuple

import pytest
from conftest import BUILD, REPOSITORY, VERSION, BareMachine, passed

PROGRAM = """
#include <stdio.h>
#include <usbdev/usbdev.h>

int main(void) {
  char text[] = "  found  ";
  puts(trim(text));
  return 0;
}
"""

PROJECT = """
cmake_minimum_required(VERSION 3.18)
project(consumer C CXX)
find_package(usbdevlib 1.0 REQUIRED)
message("found version ${usbdevlib_VERSION}")
foreach(language c cpp)
  add_executable(in_${language} program.${language})
  target_link_libraries(in_${language} usbdevlib::usbdevlib)
endforeach()
"""

COMPILERS = {"c": "gcc", "cpp": "g++"}
EXAMPLES = {"list_channels", "follow_notifications", "set_stream", "share_link"}


class Folders(NamedTuple):
    """Where the library is installed; ROOT is the test's own folder. Relative ones are below the prefix."""

    prefix: str = "ROOT/prefix"
    libraries: str = "lib"
    headers: str = "include"


PLACES = {
    "the usual folders": Folders(),
    "a folder for the machine": Folders(libraries="lib/some/machine"),
    "a prefix with a space": Folders(prefix="ROOT/my programs"),
    "libraries outside the prefix": Folders(libraries="ROOT/libraries"),
    "headers outside the prefix": Folders(headers="ROOT/headers"),
    "both outside the prefix": Folders(libraries="ROOT/libraries", headers="ROOT/headers"),
}


@pytest.fixture(scope="module")
def build(bare_machine: BareMachine, tmp_path_factory: pytest.TempPathFactory) -> Path:
    """A build folder with the library."""
    folder = tmp_path_factory.mktemp("build")
    bare_machine.build(folder)
    return folder


@pytest.fixture(scope="module", params=PLACES.values(), ids=PLACES)
def installed(
    request: pytest.FixtureRequest, bare_machine: BareMachine, build: Path, tmp_path_factory: pytest.TempPathFactory
) -> tuple[Path, Path]:
    """The prefix and the library's folder of an installed library. The prefix is chosen only when it is installed."""
    root = tmp_path_factory.mktemp("installed")
    prefix, libraries, headers = (folder.replace("ROOT", str(root)) for folder in request.param)
    assert passed(bare_machine.configure(build, f"-DCMAKE_INSTALL_LIBDIR={libraries}", f"-DCMAKE_INSTALL_INCLUDEDIR={headers}"))
    assert passed(bare_machine.run("cmake", "--install", build, "--prefix", prefix))
    return Path(prefix), Path(prefix) / libraries


def pkg_config(libraries: Path, *questions: str, **environment: str) -> list[str]:
    """What pkg-config prints about the library that is installed in the folder."""
    asked = questions or ("--cflags", "--libs")
    found = subprocess.run(["pkg-config", *asked, "usbdevlib"], check=True, capture_output=True, text=True,
                           env=os.environ | {"PKG_CONFIG_LIBDIR": f"{libraries}/pkgconfig"} | environment)
    return shlex.split(found.stdout)


def output(program: Path, libraries: Path) -> str:
    """What the program prints on a host, whose libraries are those in the tree's build folder."""
    environment = os.environ | {"LD_LIBRARY_PATH": f"{libraries}:{BUILD}"}
    return subprocess.run([program], check=True, env=environment, capture_output=True, text=True).stdout


@pytest.mark.parametrize("language", COMPILERS)
def test_pkg_config_finds_it(installed: tuple[Path, Path], tmp_path: Path, language: str) -> None:
    _, libraries = installed
    source, program = tmp_path / f"program.{language}", tmp_path / "program"
    source.write_text(PROGRAM)
    subprocess.run([COMPILERS[language], source, "-o", program, *pkg_config(libraries)], check=True)
    assert output(program, libraries) == "found\n"
    assert pkg_config(libraries, "--modversion") == [VERSION]


@pytest.fixture(scope="module")
def project(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """A project that uses the library. It is configured for every place anew, and has to find its compilers only once."""
    folder = tmp_path_factory.mktemp("project")
    (folder / "CMakeLists.txt").write_text(PROJECT)
    for language in COMPILERS:
        (folder / f"program.{language}").write_text(PROGRAM)
    return folder


def test_cmake_finds_it(bare_machine: BareMachine, installed: tuple[Path, Path], project: Path) -> None:
    prefix, libraries = installed
    configured = bare_machine.run("cmake", "-S", project, "-B", project / "build", "-G", "Ninja", "-U", "usbdevlib_DIR",
                                  f"-DCMAKE_PREFIX_PATH={prefix};{libraries}/cmake/usbdevlib")
    assert passed(configured) and f"found version {VERSION}\n" in configured.stdout
    assert passed(bare_machine.run("cmake", "--build", project / "build", "--clean-first"))
    assert [output(project / f"build/in_{language}", libraries) for language in COMPILERS] == ["found\n"] * 2
    assert f"{libraries}/" in (project / "build/build.ninja").read_text().replace("$ ", " ")


def test_the_examples_build_against_it(bare_machine: BareMachine, build: Path) -> None:
    # The same folder every time, so that ccache knows it.
    folder = BUILD / "tests/packaging/examples"
    shutil.rmtree(folder, ignore_errors=True)
    assert passed(bare_machine.configure(build, "-DCMAKE_INSTALL_LIBDIR=lib", "-DCMAKE_INSTALL_INCLUDEDIR=include"))
    assert passed(bare_machine.run("cmake", "--install", build, "--prefix", folder / "prefix"))
    assert passed(bare_machine.run("cmake", "-S", REPOSITORY / "examples", "-B", folder / "build", "-G", "Ninja",
                                   f"-DCMAKE_PREFIX_PATH={folder}/prefix"))
    assert passed(bare_machine.run("cmake", "--build", folder / "build"))
    built = {str(path.relative_to(folder / "build")) for path in folder.glob("build/c*/*") if path.name in EXAMPLES}
    assert built == {f"{language}/{example}" for language in COMPILERS for example in EXAMPLES}


def test_a_staged_library_names_the_folders_it_will_be_in(bare_machine: BareMachine, build: Path, tmp_path: Path) -> None:
    assert passed(bare_machine.configure(build, "-DCMAKE_INSTALL_LIBDIR=lib", "-DCMAKE_INSTALL_INCLUDEDIR=include"))
    assert passed(bare_machine.run("cmake", "-E", "env", f"DESTDIR={tmp_path}", "cmake", "--install", build, "--prefix", "/opt/it"))
    libraries = tmp_path / "opt/it/lib"
    assert pkg_config(libraries)[:2] == ["-I/opt/it/include", "-L/opt/it/lib"]
    assert pkg_config(libraries, PKG_CONFIG_SYSROOT_DIR=str(tmp_path))[:2] == [
        f"-I{tmp_path}/opt/it/include", f"-L{tmp_path}/opt/it/lib"]
    assert not [path for path in libraries.rglob("usbdevlib*") if path.is_file() and str(tmp_path) in path.read_text()]
