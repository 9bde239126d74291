#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Compares the library's binary interface with what was released under its soname, or records it.

abi/SONAME/ has a list of names for each released node of the version script, and for each kind of machine the types of
all functions, as abidw writes them. LIBRARY has to contain debugging information.
"""

from __future__ import annotations

import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from library_file import version_nodes

PROJECT = Path(__file__).resolve().parent.parent.parent
# Only the interface: no paths of the build, and nothing that a caller does not see.
ABIDW = ["abidw", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--no-elf-needed", "--no-parameter-names",
         "--exported-interfaces-only", "--drop-private-types", "--type-id-style", "hash"]

ADVICE = """
Programs that were built with a released version would break. Keep what is released as it is, and add instead:
a function goes into a new node at the end of the version script, a changed record gets another name.
If it has to change, it is another library: raise the major version, and with it the soname (docs/versioning.md)."""


class Ledger:
    """The interface of a library, and its records."""

    def __init__(self, options: argparse.Namespace) -> None:
        read = [*ABIDW, "--headers-dir", options.headers, options.library]
        self.interface = subprocess.run(read, check=True, stdout=subprocess.PIPE, text=True).stdout
        self.nodes = version_nodes(options.script)
        architecture, soname = re.search(r"architecture='(\S+)' soname='(\S+)'", self.interface).groups()
        self.records = options.records / soname
        self.types = self.records / f"{architecture}.abi"

    def edited_nodes(self) -> list[str]:
        """What is wrong with the nodes that were released."""
        recorded = {path.stem: set(path.read_text().split()) for path in self.records.glob("*.names")}
        return [f"{node}: {name} is {'missing' if name in names else 'new'}" for node, names in sorted(recorded.items())
                for name in sorted(names ^ self.nodes.get(node, set()))]

    def changed_types(self) -> list[str]:
        """What abidiff reports, without what was added."""
        if not self.types.exists():
            return []
        with tempfile.NamedTemporaryFile("w", suffix=".abi") as now:
            now.write(self.interface)
            now.flush()
            result = subprocess.run(["abidiff", "--no-added-syms", self.types, now.name], stdout=subprocess.PIPE, text=True)
        return [result.stdout or "abidiff failed"] if result.returncode else []

    def is_compatible(self) -> bool:
        wrong = self.edited_nodes() + self.changed_types()
        if wrong:
            print(*wrong, ADVICE, sep="\n")
        return not wrong

    def check(self) -> bool:
        if not self.types.exists():
            print(f"{self.types} does not exist; CONTRIBUTING.md, \"A release\", describes how it is recorded")
            return False
        return self.is_compatible()

    def record(self) -> bool:
        if not self.is_compatible():
            return False
        self.records.mkdir(parents=True, exist_ok=True)
        self.types.write_text(self.interface)
        for node, names in self.nodes.items():
            (self.records / f"{node}.names").write_text("".join(f"{name}\n" for name in sorted(names)))
        return True


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("action", choices=["check", "record"])
    parser.add_argument("library", type=Path, metavar="LIBRARY")
    parser.add_argument("--script", type=Path, default=PROJECT / "src/libusbdevlib.map", help="its version script")
    parser.add_argument("--headers", type=Path, default=PROJECT / "include/usbdev", help="its public headers")
    parser.add_argument("--records", type=Path, default=PROJECT / "abi", help="the folder of the records")
    options = parser.parse_args()
    return not getattr(Ledger(options), options.action)()


if __name__ == "__main__":
    sys.exit(main())
