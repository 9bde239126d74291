# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the ledger of the binary interface accepts and refuses, with a small library; and that the real one agrees with it."""

from __future__ import annotations

import os
import re
import subprocess
from pathlib import Path
from typing import Callable

import pytest

HERE = Path(__file__).resolve().parent
REPOSITORY = HERE.parent.parent

HEADER = """
typedef struct { int width; int height; } size;
int area(const size *of);
int side(const size *of);
"""
SOURCE = """
#include "small.h"
int area(const size *of) { return of->width * of->height; }
int side(const size *of) { return of->width; }
"""
SCRIPT = """
SMALL_1.0 {
  global:
    area;
    side;
  local:
    *;
};
"""


class SmallLibrary:
    """A library of two functions, which a test changes by replacing words of it."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder
        self.texts = {"small.h": HEADER, "small.c": SOURCE, "small.map": SCRIPT}
        self.soname = "libsmall.so.1"

    def replace(self, name: str, old: str, new: str) -> None:
        assert old in self.texts[name]
        self.texts[name] = self.texts[name].replace(old, new)

    def add_function(self, name: str) -> None:
        self.texts["small.h"] += f"int {name}(void);\n"
        self.texts["small.c"] += f"int {name}(void) {{ return 1; }}\n"

    def ledger(self, action: str) -> subprocess.CompletedProcess[str]:
        for name, text in self.texts.items():
            (self.folder / name).write_text(text)
        library = self.folder / "libsmall.so"
        subprocess.run(["gcc", "-g", "-shared", "-fPIC", f"-Wl,-soname,{self.soname},--version-script={self.folder}/small.map",
                        self.folder / "small.c", "-o", library], check=True)
        return subprocess.run([HERE / "ledger.py", action, library, "--script", self.folder / "small.map", "--headers",
                               self.folder, "--records", self.folder / "abi"], stdout=subprocess.PIPE, text=True)


@pytest.fixture
def released(tmp_path: Path) -> SmallLibrary:
    library = SmallLibrary(tmp_path)
    assert library.ledger("record").returncode == 0
    return library


def add_a_function_in_a_new_node(library: SmallLibrary) -> None:
    library.add_function("sum")
    library.texts["small.map"] += "SMALL_1.1 {\n  global:\n    sum;\n} SMALL_1.0;\n"


def add_a_record(library: SmallLibrary) -> None:
    library.texts["small.h"] += "typedef struct { int left; } corner;\n"


def add_a_function_to_a_released_node(library: SmallLibrary) -> None:
    library.add_function("sum")
    library.replace("small.map", "side;", "side;\n    sum;")


def remove_a_function(library: SmallLibrary) -> None:
    library.replace("small.map", "    side;\n", "")


def move_a_function_to_another_node(library: SmallLibrary) -> None:
    remove_a_function(library)
    library.texts["small.map"] += "SMALL_1.1 {\n  global:\n    side;\n} SMALL_1.0;\n"


def rename_the_node(library: SmallLibrary) -> None:
    library.replace("small.map", "SMALL_1.0", "SMALL_1.2")


def let_a_record_grow(library: SmallLibrary) -> None:
    library.replace("small.h", "int height;", "int height; int depth;")


def exchange_two_fields(library: SmallLibrary) -> None:
    library.replace("small.h", "int width; int height;", "int height; int width;")


def change_a_result(library: SmallLibrary) -> None:
    for name in ("small.h", "small.c"):
        library.replace(name, "int area", "long area")


def change_an_argument(library: SmallLibrary) -> None:
    for name in ("small.h", "small.c"):
        library.replace(name, "side(const size *of)", "side(const size *of, int which)")


Change = Callable[[SmallLibrary], None]


@pytest.mark.parametrize("change", [add_a_function_in_a_new_node, add_a_record])
def test_an_addition_is_accepted(released: SmallLibrary, change: Change) -> None:
    change(released)
    result = released.ledger("check")
    assert (result.stdout, result.returncode) == ("", 0)


INCOMPATIBLE = {
    add_a_function_to_a_released_node: "SMALL_1.0: sum is new",
    remove_a_function: "SMALL_1.0: side is missing",
    move_a_function_to_another_node: "SMALL_1.0: side is missing",
    rename_the_node: "SMALL_1.0: area is missing",
    let_a_record_grow: "type size changed from 64 to 96",
    exchange_two_fields: "offset changed from",
    change_a_result: "return type changed",
    change_an_argument: "parameter 2 of type 'int' was added",
}


@pytest.mark.parametrize("change", INCOMPATIBLE)
def test_an_incompatible_change_is_refused_with_advice(released: SmallLibrary, change: Change) -> None:
    change(released)
    result = released.ledger("check")
    assert INCOMPATIBLE[change] in result.stdout
    assert "a new node" in result.stdout and "soname" in result.stdout
    assert result.returncode == 1


def test_an_incompatible_change_is_not_recorded(released: SmallLibrary) -> None:
    let_a_record_grow(released)
    assert released.ledger("record").returncode == 1
    assert "96" in released.ledger("check").stdout


def test_an_edited_node_is_not_recorded_for_another_kind_of_machine(released: SmallLibrary) -> None:
    next(released.folder.glob("abi/*/*.abi")).unlink()
    add_a_function_to_a_released_node(released)
    assert released.ledger("record").returncode == 1


def test_an_addition_is_part_of_the_ledger_once_it_is_recorded(released: SmallLibrary) -> None:
    add_a_function_in_a_new_node(released)
    assert released.ledger("record").returncode == 0
    released.texts["small.map"] = SCRIPT
    assert "SMALL_1.1: sum is missing" in released.ledger("check").stdout


def test_another_soname_begins_another_ledger(released: SmallLibrary) -> None:
    let_a_record_grow(released)
    released.soname = "libsmall.so.2"
    assert "does not exist" in released.ledger("check").stdout
    assert released.ledger("record").returncode == 0
    assert released.ledger("check").returncode == 0


def test_the_library_agrees_with_its_ledger() -> None:
    library = Path(os.environ["USBDEV_BUILD_DIR"]) / "tests/abi/with_types/libusbdevlib.so"
    assert subprocess.run([HERE / "ledger.py", "check", library]).returncode == 0


def test_the_library_contains_the_types_of_all_its_functions() -> None:
    """Otherwise a change of one would not be found."""
    records = REPOSITORY / "abi/libusbdevlib.so.1"
    names = {name for file in records.glob("*.names") for name in file.read_text().split()}
    for types in records.glob("*.abi"):
        assert set(re.findall(r"<.*-decl name='(\w+)'.* elf-symbol-id=", types.read_text())) == names, types


def test_no_list_of_names_was_edited_after_its_release() -> None:
    """In the history, as far as this clone has it."""
    git = ["git", "-C", REPOSITORY]
    tags = subprocess.run([*git, "tag", "--list", "v*", "--merged"], check=True, capture_output=True, text=True).stdout.split()
    for tag in tags:
        edited = subprocess.run([*git, "diff", "--name-only", "--diff-filter=a", tag, "--", "abi/*.names"], check=True,
                                capture_output=True, text=True).stdout
        assert edited == "", tag


def test_a_program_that_was_linked_without_versions_still_runs(tmp_path: Path) -> None:
    library = SmallLibrary(tmp_path)
    library.texts["program.c"] = '#include "small.h"\nint main(void) { size it = {6, 7}; return area(&it) - 42; }\n'
    versioned, library.texts["small.map"] = SCRIPT, SCRIPT.replace("SMALL_1.0 {", "{")
    library.ledger("record")
    subprocess.run(["gcc", tmp_path / "program.c", "-o", tmp_path / "program", f"-L{tmp_path}", "-lsmall"], check=True)
    library.texts["small.map"] = versioned
    library.ledger("record")
    (tmp_path / "libsmall.so.1").symlink_to("libsmall.so")
    ran = subprocess.run([tmp_path / "program"], env={"LD_LIBRARY_PATH": str(tmp_path)}, capture_output=True, text=True)
    assert (ran.returncode, ran.stderr) == (0, "")
