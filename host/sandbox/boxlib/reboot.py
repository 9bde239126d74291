# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "sandbox reboot": switches the host off, changes its hardware, and switches it on again."""

from __future__ import annotations

import argparse
import os
import signal
from collections.abc import Sequence

from simlib.catalogue import load_camera
from simlib.devicemanager import start_up
from simlib.host import Change, SimulatedHost
from simlib.machine import Machine
from simlib.ports import parse_port


def reboot_here(changes: Sequence[Sequence[str]]) -> int:
    """Reboots the host that this runs on; returns the status of its start-up."""
    SimulatedHost().reboot([hardware_change(*words) for words in changes])
    status = start_up()
    _restart_services()
    return status


def _restart_services() -> None:
    """Restarts the services that run together with the host's commands, if any."""
    services = os.environ.get("HOST_SERVICES_PID")
    if services is not None:
        os.kill(int(services), signal.SIGUSR1)


def add_changes(parser: argparse.ArgumentParser) -> None:
    """Adds the options for the changes while the host is off; the changes keep their order."""
    for option, places, meaning in (
        ("--plug", ("CAMERA", "PORT"), "plug a camera in"),
        ("--unplug", ("PORT",), "unplug a camera, or a hub with everything on it"),
        ("--move", ("PORT", "TO"), "unplug it, and plug it in elsewhere"),
        ("--swap", ("PORT", "OTHER"), "exchange what is in two ports"),
    ):
        parser.add_argument(
            option, dest="changes", action=_Append, nargs=len(places), metavar=places, default=[], help=meaning
        )


class _Append(argparse.Action):
    def __call__(self, parser, options, values, option_string=None) -> None:  # type: ignore[no-untyped-def]
        setattr(options, self.dest, [*getattr(options, self.dest), [option_string, *values]])


def hardware_change(option: str, *words: str) -> Change:
    """Makes the change of an option, such as "--move", "3-1", "1-2"."""
    def change(machine: Machine) -> None:
        if option == "--plug":
            machine.plug(load_camera(words[0]), parse_port(words[1]))
        else:
            getattr(machine, option.removeprefix("--"))(*map(parse_port, words))

    return change
