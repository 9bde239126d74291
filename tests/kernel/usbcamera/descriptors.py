# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The descriptors of the whole device: which interfaces and endpoints it has, and its texts."""

from __future__ import annotations

import struct
from dataclasses import dataclass, field

from usbcamera import sound_descriptors as sound
from usbcamera import video_descriptors as video
from usbcamera.description import Camera, VideoPart, Wiring, functions_of
from usbcamera.formats import Format
from usbcamera.redirection import Endpoint

BULK_PACKET = {12: 64, 480: 512, 5000: 1024}
ISOCHRONOUS_PACKET = {12: 1023, 480: 1024, 5000: 1024}


@dataclass
class Streaming:
    """A streaming interface with its endpoint."""

    endpoint: Endpoint
    formats: list[Format]


@dataclass
class Device:
    """All that the machine reads of the device."""

    camera: Camera
    wiring: Wiring
    texts: list[str] = field(default_factory=list)
    streams: dict[int, Streaming] = field(default_factory=dict)
    microphone: Endpoint | None = None
    interfaces: dict[int, tuple[int, int, int]] = field(default_factory=dict)
    device: bytes = b""
    configuration: bytes = b""

    def __post_init__(self) -> None:
        camera = self.camera
        version = round(float(camera.usb_version) * 100)
        bcd = int(str(version), 16)
        largest = 9 if camera.speed == 5000 else 64
        texts = [self._text(it) for it in (camera.manufacturer, camera.product, camera.serial)]
        self.device = struct.pack("<BBHBBBBHHHBBBB", 18, 1, bcd, 0xEF, 2, 1, largest, int(camera.vendor_id, 16),
                                  int(camera.product_id, 16), int(camera.release, 16), *texts, 1)
        parts = {it.first_interface: self._video(it) for it in functions_of(camera)}
        if camera.sound is not None:
            parts[camera.sound.first_interface] = self._sound(camera.sound.first_interface, camera.sound.channel_count)
        body = b"".join(part for _, part in sorted(parts.items()))
        unit = 8 if camera.speed == 5000 else 2
        power = int(camera.max_power.removesuffix("mA")) // unit
        self.configuration = struct.pack("<BBHBBBBB", 9, 2, 9 + len(body), len(self.interfaces), 1, 0, 0x80, power) + body

    @property
    def endpoints(self) -> list[Endpoint]:
        found = [it.endpoint for it in self.streams.values()]
        return found + [self.microphone] if self.microphone else found

    def text(self, index: int) -> bytes | None:
        """Returns the descriptor of a text; the first lists the languages."""
        if index == 0:
            return bytes([4, 3, 9, 4])
        if index > len(self.texts):
            return None
        body = self.texts[index - 1].encode("utf-16-le")[:252]
        return bytes([len(body) + 2, 3]) + body

    def _text(self, text: str | None) -> int:
        if text is None:
            return 0
        self.texts.append(text)
        return len(self.texts)

    def _interface(self, number: int, kind: tuple[int, int], endpoints: int, alternate: int = 0, text: int = 0) -> bytes:
        self.interfaces[number] = (number, *kind)
        return bytes([9, 4, number, alternate, endpoints, *kind, 0, text])

    def _video(self, part: VideoPart) -> bytes:
        first = part.first_interface
        text = self._text(part.text)
        streaming = [first + 1 + index for index in range(len(part.formats))]
        group = bytes([8, 0x0B, first, 1 + len(streaming), video.VIDEO, video.COLLECTION, 0, text])
        control = self._interface(first, (video.VIDEO, video.CONTROL), 0, text=text) + video.control_part(streaming)
        return group + control + b"".join(map(self._streaming, streaming, part.formats))

    def _streaming(self, number: int, formats: list[Format]) -> bytes:
        endpoint = self._new_endpoint(number)
        self.streams[number] = Streaming(endpoint, formats)
        kind = (video.VIDEO, video.STREAMING)
        described = video.streaming_part(formats, endpoint.address)
        if not self.wiring.isochronous:
            return self._interface(number, kind, 1) + described + self._endpoint(endpoint, 2, 0)
        still = self._interface(number, kind, 0) + described
        return still + self._interface(number, kind, 1, alternate=1) + self._endpoint(endpoint, 5, self._interval)

    @property
    def _interval(self) -> int:
        """One packet a millisecond, unless every microframe is to be reserved: 2 to the power of this less one."""
        return 1 if self.camera.speed == 12 or self.wiring.every_microframe else 4

    def _new_endpoint(self, interface: int) -> Endpoint:
        address = 0x81 + len(self.streams)
        if not self.wiring.isochronous:
            return Endpoint(address, "bulk", interface, BULK_PACKET[self.camera.speed])
        size = ISOCHRONOUS_PACKET[self.camera.speed] | (self.wiring.burst - 1) << 11
        return Endpoint(address, "isochronous", interface, size, 1 << self._interval - 1)

    def _endpoint(self, it: Endpoint, attributes: int, interval: int) -> bytes:
        described = struct.pack("<BBBBHB", 7, 5, it.address, attributes, it.packet_size, interval)
        return described + (struct.pack("<BBBBH", 6, 0x30, 0, 0, 0) if self.camera.speed == 5000 else b"")

    def _sound(self, first: int, channels: int) -> bytes:
        interval = 1 if self.camera.speed == 12 else 4
        self.microphone = Endpoint(0x8F, "isochronous", first + 1, sound.packet_size(channels), 1 << interval - 1)
        group = bytes([8, 0x0B, first, 2, sound.AUDIO, sound.CONTROL, 0, 0])
        control = self._interface(first, (sound.AUDIO, sound.CONTROL), 0) + sound.control_part(first + 1, channels)
        silent = self._interface(first + 1, (sound.AUDIO, sound.STREAMING), 0)
        heard = self._interface(first + 1, (sound.AUDIO, sound.STREAMING), 1, alternate=1) + sound.streaming_part(channels)
        return group + control + silent + heard + sound.endpoint(0x8F, channels, interval)
