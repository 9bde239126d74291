# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Compiles the sources in the documents against the installed library."""

from __future__ import annotations

import subprocess
from pathlib import Path

from blocks import Block
from conftest import BUILD

WARNINGS = ["-Wall", "-Wextra", "-Werror"]


def whole_program(text: str) -> str:
    """A block without `main` is the body of one, after its includes."""
    if "main(" in text:
        return text
    includes = [line for line in text.splitlines() if line.startswith("#include")]
    body = [line for line in text.splitlines() if not line.startswith("#include")]
    return "\n".join([*includes, "int main(void) {", *body, "return 0; }", ""])


def compile_program(block: Block, prefix: Path, folder: Path) -> subprocess.CompletedProcess[str]:
    compiler, standard = {"c": ("cc", "-std=gnu11"), "cpp": ("c++", "-std=c++20")}[block.language]
    source = folder / f"block.{block.language}"
    source.write_text(whole_program(block.text))
    # What a fragment leaves for the reader to use.
    unused = [] if "main(" in block.text else ["-Wno-unused"]
    links = [f"-L{BUILD}", "-lusbdevlib", f"-Wl,-rpath-link,{BUILD}"]
    command = [compiler, standard, *WARNINGS, *unused, f"-I{prefix}/include", source, "-o", folder / "program", *links]
    return subprocess.run(command, capture_output=True, text=True)


def configure(block: Block, prefix: Path, folder: Path) -> subprocess.CompletedProcess[str]:
    """A block of CMake is a part of a project that has a program of its own, `app`."""
    (folder / "app.c").write_text("#include <usbdev/usbdev.h>\nint main(void) { return vl_create_log_shm() < 0; }\n")
    project = "cmake_minimum_required(VERSION 3.18)\nproject(app C)\nadd_executable(app app.c)\n"
    (folder / "CMakeLists.txt").write_text(project + block.text)
    command = ["cmake", "-S", folder, "-B", folder / "build", f"-DCMAKE_PREFIX_PATH={prefix}"]
    return subprocess.run(command, capture_output=True, text=True)


def compile_block(block: Block, prefix: Path, folder: Path) -> subprocess.CompletedProcess[str]:
    if block.language == "cmake":
        return configure(block, prefix, folder)
    return compile_program(block, prefix, folder)
