# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "sim"."""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from simlib.catalogue import camera_names, load_camera
from simlib.devicemanager import announce
from simlib.errors import SimError
from simlib.host import SimulatedHost
from simlib.topology import Bus


def main(arguments: list[str]) -> int:
    options = _parser().parse_args(arguments)
    try:
        return int(options.run(options))
    except SimError as problem:
        print(f"sim: {problem}", file=sys.stderr)
        return 1


def _plug(options: argparse.Namespace) -> int:
    plugged = SimulatedHost().plug(options.camera, options.port)
    return 0 if options.hardware_only else announce("plug", plugged)


def _unplug(options: argparse.Namespace) -> int:
    gone = SimulatedHost().unplug(options.port)
    if options.hardware_only:
        return 0
    return max((announce("unplug", plugged) for plugged in gone), default=0)


# To plug in a camera takes half as long as to load what makes one; only these two commands do.
def _import(options: argparse.Namespace) -> int:
    from simlib.importer import import_camera

    print(import_camera(Path(options.folder), options.name))
    return 0


def _capture(options: argparse.Namespace) -> int:
    from simlib.importer import capture_camera

    print(capture_camera(options.node, options.folder))
    return 0


def _list(_options: argparse.Namespace) -> int:
    names = camera_names()
    width = max(map(len, names))
    for name in names:
        camera = load_camera(name)
        print(f"{name:{width}} {camera.vendor_id}:{camera.product_id}  {camera.comment}")
    return 0


def _ports(_options: argparse.Namespace) -> int:
    for bus in SimulatedHost().machine().topology.buses.values():
        print(_bus_line(bus))
    return 0


def _bus_line(bus: Bus) -> str:
    place = f"behind {bus.bridges} PCI bridge{'s' if bus.bridges > 1 else ''}" if bus.bridges else "no PCI bridge"
    return f"{bus.number}-1 to {bus.number}-{bus.ports:<4} {bus.speed:5} Mbit/s  {place}  ({bus.controller})"


def _status(_options: argparse.Namespace) -> int:
    machine = SimulatedHost().machine()
    for slot in machine.hubs:
        print(f"{slot:10} hub")
    for slot, plugged in machine.cameras.items():
        nodes = " ".join(f"video{node}" for node in plugged.nodes)
        card = "" if plugged.card is None else f" card{plugged.card}"
        print(f"{slot:10} {plugged.camera.name:18} {nodes}{card}")
    return 0


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(prog="sim", description="Plugs simulated cameras into the sandboxed host.")
    commands = parser.add_subparsers(required=True, metavar="COMMAND")
    plug = commands.add_parser("plug", help="plug a camera in and call the library, as the device manager would")
    plug.add_argument("camera", metavar="CAMERA", help="one of those that 'sim list' shows, or a folder with a '/' in its path")
    plug.set_defaults(run=_plug)
    unplug = commands.add_parser("unplug", help="unplug a camera, or a hub with everything on it")
    unplug.set_defaults(run=_unplug)
    for command in (plug, unplug):
        command.add_argument("port", metavar="PORT", help="such as 3-1 or, on a hub, 3-1.2")
        command.add_argument("--hardware-only", action="store_true", help="do not call the library")
    importing = commands.add_parser("import", help="make a simulated camera from what tools printed about a real one")
    importing.add_argument("folder", metavar="FOLDER", help="the output, in files with the names of docs/simulator.md")
    importing.add_argument("name", metavar="NAME", help="the name of the new camera")
    importing.set_defaults(run=_import)
    capturing = commands.add_parser("capture", help="make a simulated camera from one that is plugged in")
    capturing.add_argument("node", metavar="NODE", help="such as /dev/video0")
    capturing.add_argument("folder", metavar="FOLDER", type=Path, nargs="?", help="default: a new one, named after the camera")
    capturing.set_defaults(run=_capture)
    commands.add_parser("list", help="show the cameras").set_defaults(run=_list)
    commands.add_parser("ports", help="show the ports of this host").set_defaults(run=_ports)
    commands.add_parser("status", help="show what is plugged in").set_defaults(run=_status)
    return parser
