# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the host itself tells, and the report for a maintainer."""

from __future__ import annotations

from collections.abc import Callable
from typing import Any, TypeVar

from statelib import program
from statelib.versions import versions
from usbdev import UsbdevError, aio, core, devices, hostinfo
from usbdev.records import CHANNELS, PROFILES

from ownerlib.answers import SignedIn

CODEC_PACKAGE = "Halvane"
Result = TypeVar("Result")


class HostAnswer(SignedIn):
    async def get(self) -> None:
        self.finish({**await aio.call(_facts), **await versions()})


class Report(SignedIn):
    async def get(self) -> None:
        done = await program.run("report", seconds=program.SECONDS_WITH_CAMERA)
        if done.status != program.OK:
            raise program.failed(done)
        self.set_header("Content-Type", "text/plain; charset=utf-8")
        self.finish(done.out)


def _facts() -> dict[str, Any]:
    return {
        "version": _told(hostinfo.version),
        "web_port": _told(hostinfo.http_port),
        "model_picture": devices.has_model_picture(),
        "codec_package": _codec_package(),
        "encodes": bool(_told(devices.can_encode)),
        "encoding_add_on": _told(devices.supports_encoding_add_on),
        "limits": {"channels": CHANNELS, "profiles": PROFILES, "one_channel": core.is_limited_to_one_channel()},
    }


def _codec_package() -> dict[str, Any] | None:
    try:
        package = hostinfo.package(CODEC_PACKAGE)
    except UsbdevError:
        return None
    return {"name": CODEC_PACKAGE, "version": package.version, "build": package.build, "enabled": package.enabled == 1}


def _told(question: Callable[[], Result]) -> Result | None:
    """Returns what the host reports; None if it does not."""
    try:
        return question()
    except UsbdevError:
        return None
