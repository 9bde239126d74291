# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The descriptors of a video function: what it is made of, its formats, and the endpoint of its pictures."""

from __future__ import annotations

import struct

from usbcamera.formats import Format, Frame

VIDEO = 0x0E
CONTROL, STREAMING, COLLECTION = 1, 2, 3
CAMERA_TERMINAL, OUTPUT_TERMINAL = 1, 2
BITS = {"YUYV": 16, "GREY": 8, "H264": 12}
# The names of formats on the wire are the four characters and a fixed rest.
WIRE_NAMES = {"YUYV": b"YUY2", "GREY": b"Y800", "H264": b"H264"}
GUID_REST = bytes.fromhex("00001000800000aa00389b71")


def class_specific(subtype: int, body: bytes, kind: int = 0x24) -> bytes:
    return bytes([len(body) + 3, kind, subtype]) + body


def largest_picture(form: Format, frame: Frame) -> int:
    """Uncompressed pictures have exactly this size; flat blocks compress well below it."""
    return frame.width * frame.height * BITS.get(form.fourcc, 16) // 8


def control_part(streaming: list[int]) -> bytes:
    """A camera and an output; every streaming interface takes its pictures from that."""
    camera = class_specific(2, struct.pack("<BHBBHHHB3s", CAMERA_TERMINAL, 0x0201, 0, 0, 0, 0, 0, 3, bytes(3)))
    output = class_specific(3, struct.pack("<BHBBB", OUTPUT_TERMINAL, 0x0101, 0, CAMERA_TERMINAL, 0))
    total = 12 + len(streaming) + len(camera) + len(output)
    header = class_specific(1, struct.pack("<HHIB", 0x0100, total, 48_000_000, len(streaming)) + bytes(streaming))
    return header + camera + output


def streaming_part(formats: list[Format], endpoint: int) -> bytes:
    body = b"".join(_format(index + 1, form) for index, form in enumerate(formats))
    total = 13 + len(formats) + len(body)
    head = struct.pack("<BHBBBBBBB", len(formats), total, endpoint, 0, OUTPUT_TERMINAL, 0, 0, 0, 1)
    return class_specific(1, head + bytes(len(formats))) + body


def _format(index: int, form: Format) -> bytes:
    frames = b"".join(_frame(number + 1, form, frame) for number, frame in enumerate(form.frames))
    head = bytes([index, len(form.frames)])
    if form.fourcc == "MJPG":
        described = class_specific(6, head + bytes([1, 1, 0, 0, 0, 0]))
    else:
        head += WIRE_NAMES[form.fourcc] + GUID_REST + bytes([BITS[form.fourcc], 1, 0, 0, 0, 0])
        described = class_specific(0x10, head + b"\1") if form.fourcc == "H264" else class_specific(4, head)
    return described + frames + class_specific(0x0D, bytes([1, 1, 4]))


def _frame(number: int, form: Format, frame: Frame) -> bytes:
    size = largest_picture(form, frame)
    rates = [size * 80_000_000 // interval for interval in (max(frame.intervals), min(frame.intervals))]
    slow, fast = (min(rate, 0xFFFFFFFF) for rate in rates)
    head = struct.pack("<BBHHII", number, 0, frame.width, frame.height, slow, fast)
    intervals = struct.pack(f"<{len(frame.intervals)}I", *frame.intervals)
    first = frame.intervals[0]
    if form.fourcc == "H264":
        return class_specific(0x11, head + struct.pack("<IBI", first, len(frame.intervals), 0) + intervals)
    subtype = 7 if form.fourcc == "MJPG" else 5
    return class_specific(subtype, head + struct.pack("<IIB", size, first, len(frame.intervals)) + intervals)
