"""A failure is never shown as a result: output that is not written."""

from __future__ import annotations

import subprocess
import pytest
from conftest import failing

EIO = 5
def usual(*command: str) -> str:
    return subprocess.run(["usbdevctl", *command], check=True, capture_output=True, text=True).stdout


@pytest.mark.parametrize("command", [["channels", "--json"], ["--help"], ["--version"], ["timeouts"]])
def test_output_that_cannot_be_written_is_a_failure(command: list[str]) -> None:
    with open("/dev/full", "w", encoding="ascii") as full:
        result = subprocess.run(["usbdevctl", *command], check=False, stdout=full, stderr=subprocess.PIPE, text=True)
    assert (result.returncode, result.stderr) == (1, "usbdevctl: the output cannot be written\n")


@pytest.mark.usefixtures("profile")
def test_output_that_cannot_be_kept_from_commands_is_a_failure() -> None:
    result = failing("fcntl", 1, EIO, "channels")
    assert (result.returncode, result.stderr) == (1, "usbdevctl: the output cannot be kept from commands\n")
