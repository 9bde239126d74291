# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Shows the story, step by step, and ends with status 1 as soon as something is wrong.

Runs inside the sandbox, beside the host's services.
"""

from __future__ import annotations

import argparse
import subprocess

import host_view
from host_view import Channel, EventLog, Manager
from painting import Painter
from story import STORY, Step
from viewer import Viewer, ViewerError, viewer

OWNER = "owner"  # name and password of the one who may sign in


def changes(before: dict[str, str], now: dict[str, str]) -> list[str]:
    return [f"{key}: {before.get(key, '')} -> {text}" for key, text in sorted(now.items()) if before.get(key) != text]


def begins(lines: list[str], expected: list[str]) -> bool:
    return len(lines) == len(expected) and all(map(str.startswith, lines, expected))


def mismatches(step: Step, now: list[Channel], stored: list[str], manager: list[str], log: list[str]) -> list[str]:
    """Returns one sentence for each thing that is not as the step expects."""
    wrong = [
        f"channel {number}: {name} is {now[number][name]!r}, not {value!r}"
        for number, fields in step.channels.items()
        for name, value in fields.items()
        if now[number][name] != value
    ]
    if step.stored and not begins(stored, step.stored):
        wrong.append(f"stored {stored}, not {step.stored}")
    if not begins(manager, step.manager):
        wrong.append(f"manager {manager}, not {step.manager}")
    if len(log) != len(step.log) or not all(map(str.__contains__, log, step.log)):
        wrong.append(f"log {log}, not {step.log}")
    return wrong


def look(step: Step, watching: Viewer) -> list[str]:
    try:
        return [line for one in step.looks for line in one(watching)]
    except ViewerError as problem:
        raise SystemExit(f"demo: this is wrong: {problem}") from problem


class Show:
    def __init__(self, paint: Painter, watching: Viewer) -> None:
        self._paint = paint
        self._watching = watching
        self._manager = Manager()
        self._event_log = EventLog()
        self._channels = host_view.channels()
        self._stored = host_view.stored_keys()

    def play(self, number: int, step: Step) -> None:
        self._paint.title(f"{number}. {step.title}")
        for command in step.commands:
            self._paint.command(command)
            answer = host_view.run(*command.split())
            if step.answers:
                self._paint.answer(answer)
        manager = self._manager.fresh(len(step.manager))
        log = self._event_log.fresh()
        now = host_view.channels()
        stored = host_view.stored_keys()
        changed = changes(self._stored, stored)
        if step.channels:
            self._paint.channels(self._channels, now)
        if step.stored:
            self._paint.stored(changed)
        self._paint.event_log(log)
        self._paint.manager(manager)
        wrong = mismatches(step, now, changed, manager, log)
        if wrong:
            raise SystemExit("demo: this is wrong: " + "; ".join(wrong))
        self._paint.viewer(look(step, self._watching))
        self._channels, self._stored = now, stored


def stay(paint: Painter, watching: Viewer, origin: str) -> None:
    """Shows where the owner's pages are and waits until the user ends the whole sandbox with Ctrl-C."""
    subprocess.run(["login-users", "add", OWNER], input=f"{OWNER}\n", text=True, check=True)
    with watching.letting_others_in(origin) as bridge:
        paint.title(f"Set it up at {origin} ; sign in as {OWNER}, with the password {OWNER}.")
        paint.title(f"Watch it at {origin}{watching.link} ; Ctrl-C ends the demo.")
        bridge.wait()


def main() -> None:
    arguments = argparse.ArgumentParser(description="The demo; runs inside the sandbox, with its services.")
    arguments.add_argument("--colour", action="store_true")
    arguments.add_argument("--browser", metavar="PORT", help="let a browser open the page through this TCP port, until Ctrl-C")
    options = arguments.parse_args()
    paint = Painter(options.colour)
    with viewer() as watching:
        show = Show(paint, watching)
        for number, step in enumerate(STORY, 1):
            show.play(number, step)
        paint.title("Everything is as it should be.")
        if options.browser:
            stay(paint, watching, f"http://127.0.0.1:{options.browser}")


if __name__ == "__main__":
    main()
