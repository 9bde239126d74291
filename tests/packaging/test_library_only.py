# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The library alone, on a machine that has a compiler and CMake, and none of the packages that the rest is made of."""

from __future__ import annotations

import shutil
import subprocess
import sys
from pathlib import Path

import pytest
from conftest import BUILD, REPOSITORY, VERSION, BareMachine, passed


def printed(*command: str) -> str:
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def musl_headers() -> list[str]:
    """The options by which g++ reads musl's headers before any others. Its own C++ headers ask for the usual C library's
    version."""
    machine, version = printed("g++", "-dumpmachine"), printed("g++", "-dumpversion")
    folders = [f"/usr/include/c++/{version}", f"/usr/include/{machine}/c++/{version}",
               f"/usr/include/{machine.replace('gnu', 'musl')}", printed("g++", "-print-file-name=include")]
    return ["'-D__GLIBC_PREREQ(major,minor)=0'", "-nostdinc", *(f"-isystem {folder}" for folder in folders)]


COMPILERS = {
    "gcc": ("cc", "c++", []),
    "clang": ("clang", "clang++", []),
    "musl": ("musl-gcc", "g++", musl_headers()),
}


@pytest.fixture(scope="module", params=COMPILERS)
def built(request: pytest.FixtureRequest, bare_machine: BareMachine, tmp_path_factory: pytest.TempPathFactory) -> Path:
    """The build folder of a release with one of the compilers, in which a warning is an error."""
    c, cxx, flags = COMPILERS[request.param]
    build = tmp_path_factory.mktemp(request.param)
    bare_machine.build(build, f"-DCMAKE_C_COMPILER={c}", f"-DCMAKE_CXX_COMPILER={cxx}", f"-DCMAKE_CXX_FLAGS={' '.join(flags)}")
    return build


@pytest.mark.parametrize("property", ["exports", "versions", "soname", "needed_libraries", "heap", "relocations"])
def test_every_compiler_makes_the_library_that_the_whole_tree_makes(built: Path, property: str) -> None:
    check = [sys.executable, REPOSITORY / "tests/abi/library_file.py", property]
    assert subprocess.run([*check, built / "libusbdevlib.so", REPOSITORY / "src/libusbdevlib.map"]).returncode == 0


def test_nothing_but_the_library_is_installed(built: Path, bare_machine: BareMachine, tmp_path: Path) -> None:
    assert passed(bare_machine.run("cmake", "--install", built, "--prefix", tmp_path))
    libraries = {path.name for path in tmp_path.rglob("*.so*")}
    assert libraries == {"libusbdevlib.so", "libusbdevlib.so.1", f"libusbdevlib.so.{VERSION}"}


def installed_library(bare_machine: BareMachine, build: Path, prefix: Path) -> bytes:
    assert passed(bare_machine.run("cmake", "--install", build, "--prefix", prefix))
    return (prefix / "lib/libusbdevlib.so").read_bytes()


@pytest.mark.parametrize("built", ["gcc"], indirect=True)
def test_the_same_sources_in_another_folder_make_the_same_bytes(
    built: Path, bare_machine: BareMachine, tmp_path: Path
) -> None:
    # The same folder every time, so that ccache knows it.
    tree, build = BUILD / "tests/packaging/a copy of the sources", tmp_path / "build"
    shutil.rmtree(tree, ignore_errors=True)
    tree.mkdir(parents=True)
    shutil.copy(REPOSITORY / "CMakeLists.txt", tree)
    for part in ("cmake", "include", "packaging", "platform", "src"):
        shutil.copytree(REPOSITORY / part, tree / part)
    c, cxx, _ = COMPILERS["gcc"]
    assert passed(bare_machine.run("cmake", "-S", tree, "-B", build, "-G", "Ninja", "-DUSBDEV_LIBRARY_ONLY=ON",
                                   "-DCMAKE_INSTALL_LIBDIR=lib", f"-DCMAKE_C_COMPILER={c}", f"-DCMAKE_CXX_COMPILER={cxx}"))
    assert passed(bare_machine.run("cmake", "--build", build))
    assert passed(bare_machine.run("cmake", "-DCMAKE_INSTALL_LIBDIR=lib", built))
    ours = installed_library(bare_machine, built, tmp_path / "ours")
    assert installed_library(bare_machine, build, tmp_path / "theirs") == ours


def test_the_library_names_no_folder_to_load_the_host_libraries_from(built: Path) -> None:
    entries = printed("readelf", "--dynamic", str(built / "libusbdevlib.so"))
    assert "RPATH" not in entries and "RUNPATH" not in entries


@pytest.fixture
def source_with_a_warning(tmp_path: Path) -> list[str]:
    """The options that make every source compile with a warning."""
    header = tmp_path / "warning.h"
    header.write_text("#warning of what a later compiler finds\n")
    return [f"-DCMAKE_CXX_FLAGS=-include {header}"]


ONE_SOURCE = "src/CMakeFiles/usbdevlib.dir/records_layout.cpp.o"


def test_a_warning_stops_no_stranger(bare_machine: BareMachine, tmp_path: Path, source_with_a_warning: list[str]) -> None:
    assert passed(bare_machine.configure(tmp_path / "build", *source_with_a_warning))
    compiled = bare_machine.run("cmake", "--build", tmp_path / "build", "--target", ONE_SOURCE)
    assert passed(compiled) and "what a later compiler finds" in compiled.stdout


def test_a_warning_stops_who_builds_with_a_preset(
    bare_machine: BareMachine, tmp_path: Path, source_with_a_warning: list[str]
) -> None:
    assert passed(bare_machine.configure(tmp_path / "build", "--preset", "release", *source_with_a_warning))
    assert not passed(bare_machine.run("cmake", "--build", tmp_path / "build", "--target", ONE_SOURCE))


def test_a_build_without_a_type_is_a_release(bare_machine: BareMachine, tmp_path: Path) -> None:
    assert passed(bare_machine.configure(tmp_path / "build"))
    assert "-D_FORTIFY_SOURCE=2" in (tmp_path / "build/compile_commands.json").read_text()
