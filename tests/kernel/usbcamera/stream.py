# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The pictures of one streaming interface: what the machine agreed with the camera about them, and their payloads."""

from __future__ import annotations

import struct
from collections.abc import Callable, Iterator

from usbcamera.description import Wiring
from usbcamera.descriptors import Streaming
from usbcamera.formats import UNITS_OF_A_SECOND, Format, Frame
from usbcamera.jpeg import jpeg
from usbcamera.pictures import grey, yuyv
from usbcamera.video_descriptors import largest_picture

PROBE = struct.Struct("<HBBIHHHHHII")
# One payload fits into one transfer of the kernel.
LARGEST_BULK_PAYLOAD = 16_384
PAYLOAD_HEADER = 2
END_OF_PICTURE = 2
MAKERS: dict[str, Callable[[int, int, int, int], bytes]] = {"MJPG": jpeg, "YUYV": yuyv, "GREY": grey}


class Stream:
    """Pictures are numbered by the time at which they are taken, so that a number tells which ones were lost."""

    def __init__(self, streaming: Streaming, wiring: Wiring) -> None:
        self.endpoint = streaming.endpoint.address
        self._formats = streaming.formats
        self._tag = wiring.tag
        size = streaming.endpoint.packet_size
        self._payload = ((size >> 11 & 3) + 1) * (size & 2047) if wiring.isochronous else LARGEST_BULK_PAYLOAD
        self._probed = self._agree(1, 1, 0)
        self._committed = self._probed
        self._number = -1
        self._toggle = 0

    @property
    def probed(self) -> bytes:
        return self._packed(self._probed)

    @property
    def interval(self) -> float:
        """The seconds between two pictures."""
        return self._committed[2] / UNITS_OF_A_SECOND

    def probe(self, wanted: bytes) -> bool:
        """Agrees on what is nearest to the wanted; returns whether it is a request at all."""
        if len(wanted) < PROBE.size:
            return False
        _, form, frame, interval, *_ = PROBE.unpack_from(wanted)
        self._probed = self._agree(form, frame, interval)
        return True

    def commit(self, wanted: bytes) -> bool:
        agreed = self.probe(wanted)
        self._committed = self._probed
        self._number = -1  # numbers of another rate are not comparable
        return agreed

    def next_due(self, now: float) -> float:
        """Returns when the next picture is to be taken: now if one was missed."""
        return max(now, (self._number + 1) * self.interval)

    def picture(self, now: float) -> Iterator[bytes]:
        """Takes a picture, and returns its payloads."""
        self._number = int(now / self.interval + 1e-6)
        self._toggle ^= 1
        form, frame = self._chosen(*self._committed[:2])
        data = MAKERS[form.fourcc](self._number, self._tag, frame.width, frame.height) if form.fourcc in MAKERS else b""
        room = self._payload - PAYLOAD_HEADER
        for start in range(0, len(data), room):
            end = END_OF_PICTURE if start + room >= len(data) else 0
            yield bytes([PAYLOAD_HEADER, self._toggle | end]) + data[start : start + room]

    def nothing(self) -> bytes:
        """Returns the payload without data that is sent between two pictures."""
        return bytes([PAYLOAD_HEADER, self._toggle])

    def _chosen(self, form: int, frame: int) -> tuple[Format, Frame]:
        return self._formats[form - 1], self._formats[form - 1].frames[frame - 1]

    def _agree(self, form: int, frame: int, interval: int) -> tuple[int, int, int]:
        form = form if 1 <= form <= len(self._formats) else 1
        frames = self._formats[form - 1].frames
        frame = frame if 1 <= frame <= len(frames) else 1
        intervals = frames[frame - 1].intervals
        return form, frame, min(intervals, key=lambda it: abs(it - interval)) if interval else intervals[0]

    def _packed(self, agreed: tuple[int, int, int]) -> bytes:
        size = largest_picture(*self._chosen(*agreed[:2]))
        return PROBE.pack(1, *agreed, 0, 0, 0, 0, 0, size, self._payload)
