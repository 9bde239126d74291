# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Help, and command lines that are wrong. None of this reaches the library."""

from __future__ import annotations

import re
import subprocess

import pytest
from conftest import REPOSITORY, USBDEVCTL, help_of

CAMERA = "plug --type camera --node 0 --slot 3-1 --name Cam"
WRONG = [
    "",
    "frobnicate",
    "plug",
    "plug --type camera --slot 3-1 --name Cam",
    f"{CAMERA} --type toaster",
    CAMERA.replace("--node 0", "--node -1"),
    CAMERA.replace("--node 0", "--node 99999999999"),
    CAMERA.replace("3-1", "''"),
    CAMERA.replace("3-1", 128 * "3"),
    "formats",
    "formats one",
    "watch --count 0",
    "watch --timeout -1",
    "log --lines 0",
    "channels --colour",
    "stream",
    "stream show",
    "stream show 4",
    "stream set",
    "stream set 0 --codec vp9",
    "stream set 0 --size 640",
    "stream set 0 --size 0x480",
    "stream set 0 --fps fast",
    "stream set 0 --fps -5",
    "stream set 0 --fps nan",
    "stream set 0 --fps inf",
    "stream set 0 --fps 1e3",
    "stream set 0 --fps .",
    "login ann --timeout 0",
    "stream set 0 --overlay yes",
    "stream set 0 --volume 101",
    "caps",
    "caps -1",
    "devices all",
    "profiles 0",
    "free 0",
    "slot",
    "slot on",
    "slot off " + 128 * "3",
    "slot off 3-" + 126 * "1",
    "clear cam",
    "clear pf4",
    "clear ch10",
    "host",
    "host port",
    "completion",
]


@pytest.mark.parametrize("line", WRONG)
def test_a_wrong_command_line_is_refused(line: str) -> None:
    words = ["" if word == "''" else word for word in line.split()]
    done = subprocess.run([USBDEVCTL, *words], check=False, capture_output=True, text=True)
    assert (done.returncode, done.stdout) == (2, "")
    assert done.stderr
    assert all(error.startswith("usbdevctl: ") for error in done.stderr.splitlines())


@pytest.mark.parametrize(
    ("line", "complaint"),
    [
        ("clear 4", "camera: profile must be 0 to 3, not 4"),
        ("formats one", "camera: 'one' is not a port (3-1.2), channel (ch2), profile (pf1) or number"),
        ("slot on 10", "camera: channel must be 0 to 9, not 10"),
        ("stream set 0 --fps -5", "--fps: -5 is not a number of frames per second such as 30 or 7.5"),
        ("log --lines 0", "--lines: must be at least 1, not 0"),
        ("stream set 0 --size 640", "--size: 640 is not a picture size such as 1280x720"),
    ],
)
def test_a_wrong_value_is_named_with_what_it_should_be(line: str, complaint: str) -> None:
    done = subprocess.run([USBDEVCTL, *line.split()], check=False, capture_output=True, text=True)
    assert done.stderr.splitlines()[0] == f"usbdevctl: {complaint}"


@pytest.mark.parametrize("line", ["{}", "clear {}", "clear 0 {}", "completion {}", "stream set 0 --fps {}", "log --{}"])
def test_a_control_character_of_an_argument_is_not_echoed(line: str) -> None:
    words = [word.format("\x1b[2J\x07") for word in line.split()]
    done = subprocess.run([USBDEVCTL, *words], check=False, capture_output=True, text=True)
    assert done.returncode == 2
    assert "\\x1b[2J\\x07" in done.stderr
    assert not re.search(r"[\x00-\x09\x0b-\x1f]", done.stderr)


def test_a_mistyped_command_is_named_with_the_nearest_one() -> None:
    done = subprocess.run([USBDEVCTL, "chanels"], check=False, capture_output=True, text=True)
    assert done.stderr.splitlines()[0] == "usbdevctl: no command 'chanels'; did you mean 'channels'?"
    assert done.returncode == 2


def test_the_version_is_that_of_the_program_and_of_the_loaded_library() -> None:
    done = subprocess.run([USBDEVCTL, "--version"], check=True, capture_output=True, text=True)
    program, library = done.stdout.splitlines()
    found = re.search(r"project\(usbdevlib VERSION ([\d.]+)", (REPOSITORY / "CMakeLists.txt").read_text())
    assert found is not None
    assert program == f"usbdevctl {found[1]}"
    file = (USBDEVCTL.parent / "libusbdevlib.so").resolve()
    assert library == f"libusbdevlib {file.name.partition('.so.')[2]} ({file})"


def test_the_help_shows_the_commands_in_groups() -> None:
    text = str(help_of()["text"])
    headings = ["Channels and devices", "Profiles and streams", "Sharing", "Events and counters", "The host"]
    places = [text.index(f"\n{heading}:\n") for heading in headings]
    assert places == sorted(places)


def every_command(*group: str) -> list[tuple[str, ...]]:
    """The commands that the help names, those of each group after it."""
    commands = []
    for name in help_of(*group)["commands"]:
        commands += [(*group, name), *every_command(*group, name)]
    return commands


# Nothing is to be printed by these but a complaint.
SILENT = ["login", "completion"]


def test_every_command_has_help_that_shows_its_usage() -> None:
    commands = every_command()
    assert len(commands) > 30
    for command in commands:
        text = help_of(*command)["text"]
        assert f"Usage: usbdevctl {' '.join(command)} " in text
        assert text.splitlines()[0], "the first line states what the command does"


def test_every_command_that_shows_something_has_json() -> None:
    for command in every_command():
        if not help_of(*command)["commands"] and " ".join(command) not in SILENT:
            assert "--json" in help_of(*command)["options"], command


def test_a_wrong_command_line_shows_how_to_get_help() -> None:
    done = subprocess.run([USBDEVCTL], check=False, capture_output=True, text=True)
    assert done.stderr.splitlines()[-1] == "usbdevctl: try 'usbdevctl --help' or 'usbdevctl COMMAND --help'"
