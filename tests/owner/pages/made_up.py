# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Cameras of every kind, which no real host has at the same time."""

from __future__ import annotations

import time
from typing import Any

NOTHING = {
    "state": "free", "port": None, "device": None, "node": None, "profile": None, "profile_name": None, "switched_on": None,
    "waits_for": None, "supported": False, "streams": False, "shared": False, "codec": None, "width": None, "height": None,
    "rate": None, "flip": None, "mirror": None, "overlay": None, "sound": None, "created": None, "reasons": [],
}  # fmt: skip
NOW = 1_785_578_400  # 1 August 2026, 10:00, for the browser too
STREAM = {"codec": "h264", "width": 1280, "height": 720, "rate": 15, "flip": False, "mirror": True, "overlay": True}


def reason(name: str, cause: str = "", hinders: bool = True, **more: Any) -> dict[str, Any]:
    """A reason; the values are those of its words."""
    standard = {"text": f"The host says {name}.", "cure": "", "other_channel": None, "collision": None, "values": {}}
    return {**standard, "reason": name, "cause": cause or name, "hinders": hinders, **more}


def camera(channel: int, port: str, device: str, **more: Any) -> dict[str, Any]:
    attached = {"state": "plugged", "port": port, "device": device, "node": 2 * channel, "switched_on": True, "supported": True}
    return {**NOTHING, "channel": channel, **attached, **more}


SOUND = {"card": True, "on": True, "codec": "aac", "volume": 70}
CHANNELS = [
    camera(0, "3-1.1", "HD Pro Webcam C920", profile=0, profile_name="Front door", streams=True, shared=True, sound=SOUND, **STREAM),
    camera(1, "3-1.2", "USB 2.0 Camera: HD USB Camera", profile=1, profile_name="Garage with a name that is rather long", **STREAM,
           waits_for=0, reasons=[reason("waits", other_channel=0, collision="controller", values={"number": "0", "camera": "ch0"})]),
    camera(2, "5-1", "Cam <img src=x onerror=alert(1)>", profile=2, switched_on=False, codec="mjpeg", width=640, height=480, rate=30,
           flip=False, mirror=False, overlay=False, reasons=[reason("switched_off")]),
    camera(3, "5-2", "Old camera", supported=False,
           reasons=[reason("unsupported", "no_known_format", values={"formats": "NV12 and H264"})]),
    camera(4, "1-2", "Night camera", reasons=[reason("unbound", "unbound_and_none_free", values={"channel": "4"}),
                                              reason("twins", hinders=False, values={"other": "1-1"})]),
    camera(5, "1-1", "Night camera", state="unplugged", profile=3, profile_name="Garden", **STREAM, sound=None,
           reasons=[reason("unplugged", values={"port": "1-1", "channel": "5"})]),
]  # fmt: skip


def port(name: str, channel: int | None = None, ports: list[dict[str, Any]] | None = None) -> dict[str, Any]:
    return {"port": name, "hub": ports is not None, "switched_on": channel is not None, "channel": channel, "ports": ports or []}


USB = {"controllers": [
    {"path": "/devices/pci0000:00/0000:00:14.0", "bridge": None, "buses": [1], "ports": [port("1-1", 5), port("1-2", 4)],
     "free_ports": ["1-3", "1-5", "1-6", "1-7"]},
    {"path": "/devices/pci0000:00/0000:00:1c.4/0000:04:00.0", "bridge": "/devices/pci0000:00/0000:00:1c.4", "buses": [3],
     "ports": [port("3-1", None, [port("3-1.1", 0), port("3-1.2", 1)])], "free_ports": []},
    {"path": "/devices/pci0000:00/0000:00:1c.4/0000:05:00.0", "bridge": "/devices/pci0000:00/0000:00:1c.4", "buses": [5],
     "ports": [port("5-1", 2), port("5-2", 3)], "free_ports": ["5-3", "5-4"]},
    {"path": "/devices/pci0000:00/0000:00:1d.0/0000:07:00.0", "bridge": "/devices/pci0000:00/0000:00:1d.0", "buses": [7, 8],
     "ports": [], "free_ports": ["7-1", "7-2", "8-1", "8-2"]},
], "one_camera": False, "buses": [{"bus": bus, "speed": speed, "reserved": reserved}
                                  for bus, speed, reserved in ((1, 480, 0), (3, 480, 197), (5, 480, 0), (7, 480, 0), (8, 5000, 0))]}  # fmt: skip


def moment(hours: float) -> str:
    """So many hours ago."""
    return time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(NOW - 3600 * hours))


# What happened, how it was logged, and the camera that it is about.
HD = "USB 2.0 Camera: HD USB Camera"
FRONT, GARAGE = {"name": "Front door", "port": "3-1.1"}, {"name": HD, "port": "3-1.2"}
TEXTS = [("information", "Rate set to 24 pictures a second", "Modified Channel 1 FPS: 24.00", FRONT),
         ("warning", "The encoder of profile 1 has ended", "The encoder of profile 1 has ended", None),
         ("information", "Got profile 1",
          "Modified Channel 2 USB device name: USB 2.0 Camera: HD USB Camera (3-1.2)", GARAGE),
         ("information", "Flip top and bottom: on", "Enabled image reverse on Channel 1", FRONT),
         ("information", "Profile 3: Size set to 640 × 480", "Modified Channel 4 resolution: 640x480", None)]  # fmt: skip


def logged(number: int) -> dict[str, Any]:
    severity, text, line, about = TEXTS[number % len(TEXTS)]
    time = moment(number * 7)
    return {"kind": "log", "id": 40 - number, "time": time, "severity": severity, "text": text, "lines": [line], "user": None, "camera": about}


LINES = [logged(number) for number in range(20)]


def came_or_went(number: int, hours: float, kind: str) -> dict[str, Any]:
    """The night camera did."""
    text = {"plugged": "Plugged in", "unplugged": "Unplugged"}[kind]
    return {"kind": kind, "id": number, "time": moment(hours), "severity": "information", "text": text, "lines": [], "user": None,
            "camera": {"name": "Night camera", "port": "1-1"}}  # fmt: skip


def done(
    number: int, hours: float, text: str, user: str | None = "ann", about: dict[str, str] | None = None, lines: list[str] | None = None
) -> dict[str, Any]:
    """Somebody did it on the pages."""
    return {"kind": "act", "id": number, "time": moment(hours), "severity": "information" if user else "warning", "text": text,
            "lines": lines or [], "user": user, "camera": about}  # fmt: skip


EVENTS = [
    done(3, 0, "Password for guests set, with a new link", about=FRONT), LINES[0], done(2, 1, "Signed in"),
    done(1, 2, "A sign-in from 192.0.2.7 was refused: user or password was wrong", None),
    came_or_went(2, 6, "unplugged"), *LINES[1:5], came_or_went(1, 30, "plugged"), *LINES[5:],
]  # fmt: skip
STATE = {
    "host": {"name": "Attic", "open": False, "origin": None},
    "channels": [*CHANNELS, *({**NOTHING, "channel": number} for number in range(6, 10))],
    "profiles": [{"profile": number, "channel": channel, "name": name, "streams": number == 0}
                 for number, channel, name in [(0, 0, "Front door"), (1, 1, CHANNELS[1]["profile_name"]), (2, 2, ""), (3, 5, "Garden")]],
    "usb": USB,
    "events": [{name: one[name] for name in ("id", "time", "severity", "text")} for one in LINES],
    "viewers": [2, 0, 0, 0],
    "happened": 2,
}  # fmt: skip
EMPTY = {
    **STATE,
    "channels": [{**NOTHING, "channel": number} for number in range(10)],
    "profiles": [{"profile": number, "channel": None, "name": "", "streams": False} for number in range(4)],
    "usb": {**USB, "controllers": [{**one, "ports": []} for one in USB["controllers"]]},
    "events": [],
}
SIZES = [{"width": width, "height": height, "rates": [30, 24, 15, 10, 5]} for width, height in [(1920, 1080), (1280, 720), (640, 480)]]
RAW_SIZES = [{**size, "rates": [15, 0.133, 5]} for size in SIZES]  # in the camera's order
FORMATS = {"codecs": [{"codec": "h264", "sizes": RAW_SIZES}, {"codec": "mjpeg", "sizes": SIZES}]}
HOST = {
    "version": "5.1.2", "web_port": 8080, "model_picture": True, "encodes": True, "encoding_add_on": None,
    "codec_package": {"name": "Codecs", "version": "2.1", "build": "20260801", "enabled": True},
    "limits": {"channels": 10, "profiles": 4, "one_channel": False},
    "usbdevctl": "5.1.2", "library": "5.1.2", "kernel": "6.1.0-27-amd64",
}  # fmt: skip
GARDEN = {"name": "Garden", "port": "1-1"}
LONG = {"name": CHANNELS[1]["profile_name"], "port": "3-1.2"}
OTHER_GARDEN = {"name": "Garden", "port": "5-2"}
CHARTS = {
    "plugs": [{"time": moment(hours), "camera": camera, "kind": kind}
              for hours, camera, kind in [(150, FRONT, "plugged"), (120, LONG, "plugged"), (100, OTHER_GARDEN, "plugged"), (80, LONG, "unplugged"),
                                          (70, LONG, "plugged"), (30, GARDEN, "plugged"), (6, GARDEN, "unplugged")]],
    "up": [{"profile": profile, "camera": camera, "from": moment(begin), "to": end and moment(end)}
           for profile, camera, begin, end in [(0, FRONT, 149, 90), (0, FRONT, 85, None), (1, LONG, 118, 80), (3, GARDEN, 29, 6), (3, None, 140, 130)]],
    "bandwidth": [{"bus": 3, "reserved": 197, "speed": 480, "from": moment(149), "to": moment(118)},
                  {"bus": 3, "reserved": 394, "speed": 480, "from": moment(118), "to": moment(90)},
                  {"bus": 3, "reserved": 197, "speed": 480, "from": moment(85), "to": None},
                  {"bus": 1, "reserved": 99, "speed": 480, "from": moment(29), "to": moment(6)}],
    "timeouts": [{"time": moment(hours), "profile": 1, "camera": LONG, "count": count} for hours, count in [(100, 1), (95, 3), (50, 1)]],
}  # fmt: skip
