# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A tool of the host that is replaced by one that behaves badly, or taken away."""

from __future__ import annotations

import os
import signal
import time
from collections.abc import Callable
from contextlib import suppress
from pathlib import Path

from thoroughness import times

PATIENCE = 20
# Nothing that a row replaces.
OWN = "/usr/host-bin"
FLOOD = times(10_000_000, 100_000_000)
PLACES = {name: Path(f"/usr/sbin/{name}") for name in ("readcfg", "udevadm")}
PLACES |= {name: Path(f"/usr/bin/{name}") for name in ("v4l2-ctl", "ps", "cat", "ls", "awk", "grep", "ln", "rm")}
PLACES |= {name: Path(f"/usr/bin/{name}") for name in ("gpuinfo_app", "hwinfo_app", "sh")}
ASKED, GO = Path("/tmp/neighbour-asked"), Path("/tmp/neighbour-go")
# Lines of a tool that keeps its caller waiting until the row is over.
TELL = f"echo $$ >{ASKED}.new; {OWN}/mv {ASKED}.new {ASKED}"
HANG = f"read word <{GO}"
WAIT = f"{TELL}; {HANG}"
STOP = f"{TELL}; kill -STOP $$"

Placing = Callable[[Path], None]


def nothing(_: Path) -> None:
    """The tool is missing."""


def folder(place: Path) -> None:
    place.mkdir()


def dangling(place: Path) -> None:
    place.symlink_to("/nowhere")


def for_another_machine(place: Path) -> None:
    place.write_bytes(b"\x7fELF\x02\x01\x01" + bytes(57))
    place.chmod(0o755)


def not_executable(place: Path) -> None:
    place.write_text(f"#!{OWN}/dash\necho 1\n")
    place.chmod(0o644)


def without_interpreter(place: Path) -> None:
    place.write_text("#!/nowhere/sh\necho 1\n")
    place.chmod(0o755)


def acting(*acts: bytes | str) -> Placing:
    """A script: words are printed as they are, a text is a line of it."""

    def place_script(place: Path) -> None:
        lines = [f"#!{OWN}/dash"]
        for number, act in enumerate(acts):
            if isinstance(act, bytes):
                words = Path(f"/tmp/neighbour-words-{number}")
                words.write_bytes(act)
                act = f"{OWN}/cat {words}"
            lines.append(act)
        place.write_text("\n".join(lines) + "\n")
        place.chmod(0o755)

    return place_script


def flooding(line: str) -> Placing:
    return acting(f"{OWN}/yes '{line}' | {OWN}/head -c {FLOOD}")


def never_ending(line: str) -> Placing:
    """Prints the line again and again until nobody reads any more, or the row is over."""
    return acting(f"{TELL}; exec {OWN}/yes '{line}'")


class Tool:
    """The tool of that name, replaced."""

    def __init__(self, name: str, *acts: bytes | str | Placing) -> None:
        self.name = name
        self._place = acts[0] if acts and callable(acts[0]) else acting(*acts)  # type: ignore[arg-type]

    def begin(self) -> None:
        place = PLACES[self.name]
        self._target = place.readlink()
        place.unlink()
        self._place(place)
        ASKED.unlink(missing_ok=True)
        GO.unlink(missing_ok=True)
        os.mkfifo(GO)
        self._go = os.open(GO, os.O_RDWR)

    def await_call(self) -> None:
        deadline = time.monotonic() + PATIENCE
        while not ASKED.exists():
            assert time.monotonic() < deadline, "the tool was not asked"
            time.sleep(0.002)

    def leave(self) -> None:
        """Ends every wait: that for a word, of a tool that is stopped, and for the end of one that never ends."""
        os.write(self._go, b"\n" * 99)
        with suppress(ProcessLookupError, FileNotFoundError):
            process = int(ASKED.read_text())
            os.kill(process, signal.SIGCONT)
            if self._prints_for_ever(process):
                os.kill(process, signal.SIGKILL)

    @staticmethod
    def _prints_for_ever(process: int) -> bool:
        return Path(f"/proc/{process}/comm").read_text() == "yes\n"

    def end(self) -> None:
        os.write(self._go, b"\n" * 9)  # for what the library left behind
        os.close(self._go)
        place = PLACES[self.name]
        if place.is_dir() and not place.is_symlink():
            place.rmdir()
        place.unlink(missing_ok=True)
        place.symlink_to(self._target)
