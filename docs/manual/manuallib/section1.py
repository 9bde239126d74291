# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Manual pages of usbdevctl, in Markdown: what its help prints, and the chapters of docs/usbdevctl.md."""

from __future__ import annotations

import re
from collections.abc import Iterator

from manuallib.page_values import literal
from manuallib.program import Command
from manuallib.reference import REPOSITORY

GUIDE = REPOSITORY / "docs/usbdevctl.md"
# The chapters of the guide that concern every command, with their headlines in the page usbdevctl(1).
CHAPTERS = {"Naming a camera": "CAMERAS", "Exit status": "EXIT STATUS", "Output": "OUTPUT"}


def chapters(level: str) -> dict[str, str]:
    """The texts of the guide below the headlines of a level, without links, which lead nowhere in a manual page."""
    text = re.sub(r"\[([^]]+)\]\([^)]+\)", r"\1", GUIDE.read_text())
    parts = re.split(rf"^{level} (.*)\n", text, flags=re.MULTILINE)
    return {title: re.split(r"^#+ ", body, flags=re.MULTILINE)[0].strip() for title, body in zip(parts[1::2], parts[2::2])}


def paragraphs(text: str) -> Iterator[str]:
    """Those of a chapter; a code block is one, whatever lines it has."""
    for part in re.split(r"(^```.*?^```$)", text, flags=re.MULTILINE | re.DOTALL):
        yield from [part] if part.startswith("```") else filter(None, map(str.strip, part.split("\n\n")))


def concerns(command: str, all_commands: set[str], paragraph: str) -> bool:
    """Does a paragraph of a chapter on several commands name this one, or none of them?"""
    named = set(re.findall(r"(?:`|usbdevctl )([a-z]+)\b", paragraph)) & all_commands
    return not named or command in named


def guide_to(command: str) -> str:
    """What the chapters whose headlines name the command, or commands below it, state about it."""
    told = []
    for title, text in chapters("###").items():
        commands = {name.split()[0] for name in title.split(", ")}
        if command in commands:
            told += [part for part in paragraphs(text) if concerns(command, commands, part)]
    return "\n\n".join(told)


def name_of(command: Command) -> str:
    return "-".join(["usbdevctl", *command.words])


def lowered(text: str) -> str:
    return text[:1].lower() + text[1:].rstrip(".")


def synopsis(command: Command) -> str:
    program, *rest = command.usage.split(" ")
    shown = " ".join(rest[len(command.words):])
    return f"**{' '.join([program, *command.words])}** {literal(shown)}"


def arguments(command: Command) -> Iterator[str]:
    for name, text in command.arguments:
        shown = name.removesuffix(" REQUIRED")
        word, _, kind = shown.partition(" ")
        required = " (required)" if shown != name and word.startswith("-") else ""
        yield f"**{literal(word)}** {literal(kind)}{required}\n:   {literal(text)}"


def listed(commands: list[Command]) -> str:
    return "\n\n".join(f"**{name_of(one)}**(1)\n:   {literal(one.description)}" for one in commands)


def below(command: Command) -> Iterator[str]:
    for one in command.below:
        yield f"## {one.words[-1]}\n\n{synopsis(one)}\n\n{literal(one.description)}."
        yield from arguments(one)


def command_page(command: Command) -> str:
    description = [f"{literal(command.description)}.", guide_to(command.words[0])]
    # How many options a command has that has others below it does not matter: it is --help alone.
    parts = [
        "# NAME",
        f"{name_of(command)} - {literal(lowered(command.description))}",
        "# SYNOPSIS",
        *(synopsis(one) for one in command.below or [command]),
        "# DESCRIPTION",
        *filter(None, description),
        *(["# COMMANDS", *below(command)] if command.below else ["# OPTIONS", *arguments(command)]),
        "# EXIT STATUS",
        literal(command.ending.removeprefix("Exit status: ")),
        "# SEE ALSO",
        "**usbdevctl**(1), **usbdevlib**(7)",
    ]
    return "\n\n".join(parts)


def program_page(program: Command) -> str:
    texts = chapters("##")
    parts = [
        "# NAME",
        f"usbdevctl - {literal(lowered(program.description))}",
        "# SYNOPSIS",
        "**usbdevctl** *COMMAND* [*OPTIONS*]",
        "**usbdevctl** *COMMAND* **--help**",
        "**usbdevctl** **--version**",
        "# DESCRIPTION",
        f"{literal(program.description)} Run it on the host itself, or in the sandbox of the project.",
        "# COMMANDS",
        *(part for group, commands in program.commands.items() for part in (f"## {group}", listed(commands))),
        *(part for title, headline in CHAPTERS.items() for part in (f"# {headline}", texts[title])),
        "# SEE ALSO",
        "**usbdevlib**(7), **usbdev.conf**(5), **usbdev-notification**(5)",
    ]
    return "\n\n".join(parts)


def pages(program: Command) -> dict[str, str]:
    """The Markdown of each page, by the name of its file."""
    texts = {f"{name_of(one)}.1": command_page(one) for one in program.below}
    return {"usbdevctl.1": program_page(program)} | texts
