# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The camera itself: answers what the machine asks, and does what its fault says."""

from __future__ import annotations

import asyncio
import struct
from collections import Counter

from usbcamera import redirection as wire
from usbcamera.descriptors import Device
from usbcamera.microphone import Microphone
from usbcamera.pacing import BulkSource, IsochronousSource, PacketsOfPictures
from usbcamera.redirection import Connection, Control, Messages
from usbcamera.stream import Stream

GET_STATUS, CLEAR_FEATURE, GET_DESCRIPTOR = 0, 1, 6
DEVICE, CONFIGURATION, TEXT = 1, 2, 3
PROBE, COMMIT = 1, 2
SET_CURRENT, GET_LENGTH, GET_INFO = 1, 0x85, 0x86
READS = {0x81, 0x82, 0x83, 0x87}


class CameraAtMachine(asyncio.Protocol):
    """The camera, from the moment when a machine connects until it lets go."""

    def __init__(self, device: Device) -> None:
        self._device = device
        self._messages = Messages()
        self._moments: Counter[str] = Counter()
        self._hung = self._vanishes = False
        self._streams = {number: Stream(it, device.wiring) for number, it in device.streams.items()}
        self._bulk: dict[int, BulkSource] = {}
        self._isochronous: dict[int, IsochronousSource] = {}

    def connection_made(self, transport: asyncio.BaseTransport) -> None:
        assert isinstance(transport, asyncio.WriteTransport)
        self._transport = transport
        self._connection = Connection(transport)
        self._connection.greet()
        self._prepare_sources()

    def connection_lost(self, exc: Exception | None) -> None:
        for source in self._isochronous.values():
            source.stop()

    def data_received(self, data: bytes) -> None:
        try:
            for kind, identifier, body in self._messages.take(data):
                if not self._hung:
                    self._take(kind, identifier, body)
        except (ValueError, IndexError, struct.error):
            self._transport.abort()  # what the machine says is not to be understood: it loses the device

    def _prepare_sources(self) -> None:
        for it in self._streams.values():
            if self._device.wiring.isochronous:
                packets = PacketsOfPictures(it, self._connection, self._may_take_picture)
                self._isochronous[it.endpoint] = IsochronousSource(packets.send, 1000)
            else:
                self._bulk[it.endpoint] = BulkSource(it, self._connection, self._may_take_picture)
        if self._device.microphone is not None and self._device.camera.sound is not None:
            address = self._device.microphone.address
            sound = Microphone(address, self._device.camera.sound.channel_count, self._connection)
            self._isochronous[address] = IsochronousSource(sound.send, 1000)

    def _take(self, kind: int, identifier: int, body: bytes) -> None:
        takers = {
            wire.HELLO: self._plug_in,
            wire.CONTROL_PACKET: self._take_control,
            wire.BULK_PACKET: self._take_bulk,
            wire.CANCEL: self._cancel,
            wire.SET_CONFIGURATION: self._configure,
            wire.SET_ALTERNATE: self._choose_alternate,
            wire.START_ISOCHRONOUS: self._start_isochronous,
            wire.STOP_ISOCHRONOUS: self._stop_isochronous,
        }
        if taker := takers.get(kind):
            taker(identifier, body)

    def _plug_in(self, identifier: int, body: bytes) -> None:
        device, camera = self._device, self._device.camera
        self._connection.send(wire.ENDPOINTS, wire.endpoint_table(device.endpoints))
        self._connection.send(wire.INTERFACES, wire.interface_table([it for _, it in sorted(device.interfaces.items())]))
        self._connection.send(wire.CONNECT, struct.pack(
            "<BBBBHHH", wire.SPEEDS[camera.speed], 0xEF, 2, 1, int(camera.vendor_id, 16), int(camera.product_id, 16),
            int(camera.release, 16)))  # fmt: skip

    def _take_bulk(self, identifier: int, body: bytes) -> None:
        endpoint, length = wire.read_bulk(body)
        if bulk := self._bulk.get(endpoint):
            bulk.ask(identifier, length)

    def _cancel(self, identifier: int, body: bytes) -> None:
        for bulk in self._bulk.values():
            bulk.cancel(identifier)

    def _configure(self, identifier: int, body: bytes) -> None:
        goes_on = self._goes_on("configuration")
        if goes_on or not self._hung:
            status = wire.SUCCESS if goes_on else wire.IO_ERROR if self._vanishes else wire.STALL
            self._connection.send(wire.CONFIGURATION, bytes([status, body[0]]), identifier)
        if self._vanishes:
            self._leave()

    def _choose_alternate(self, identifier: int, body: bytes) -> None:
        self._connection.send(wire.ALTERNATE, bytes([wire.SUCCESS, body[0], body[1]]), identifier)

    def _start_isochronous(self, identifier: int, body: bytes) -> None:
        if source := self._isochronous.get(body[0]):
            source.start()
            self._connection.send(wire.ISOCHRONOUS, bytes([wire.SUCCESS, body[0]]), identifier)

    def _stop_isochronous(self, identifier: int, body: bytes) -> None:
        if source := self._isochronous.get(body[0]):
            source.stop()
            self._connection.send(wire.ISOCHRONOUS, bytes([wire.SUCCESS, body[0]]), identifier)

    def _take_control(self, identifier: int, body: bytes) -> None:
        asked = wire.read_control(identifier, body)
        kind, target = asked.request_type & 0x60, asked.request_type & 0x1F
        if kind == 0:
            answer = self._standard(asked)
        elif kind == 0x20 and target == 1:
            answer = self._of_interface(asked)
        else:
            answer = b"" if not asked.request_type & 0x80 else None
        if isinstance(answer, bytes):
            self._connection.answer(asked, wire.SUCCESS, answer[: asked.length])
        elif self._vanishes:
            self._connection.answer(asked, wire.IO_ERROR)
            self._leave()
        elif not self._hung:
            self._connection.answer(asked, wire.STALL)

    def _standard(self, asked: Control) -> bytes | None:
        if asked.request == GET_DESCRIPTOR:
            return self._descriptor(asked.value >> 8, asked.value & 255)
        if asked.request == CLEAR_FEATURE and (bulk := self._bulk.get(asked.index & 255)):
            bulk.restart()
        return bytes(2) if asked.request == GET_STATUS else b""

    def _descriptor(self, kind: int, index: int) -> bytes | None:
        if kind == DEVICE:
            return self._device.device
        if kind == CONFIGURATION:
            return self._device.configuration if self._goes_on("description") else None
        if kind == TEXT:
            return self._device.text(index) if index == 0 or self._goes_on("text") else None
        return None

    def _of_interface(self, asked: Control) -> bytes | None:
        stream = self._streams.get(asked.index & 255)
        if stream is None:
            return Microphone.asked(asked) if self._device.microphone else None
        selector = asked.value >> 8
        if selector not in (PROBE, COMMIT) or not self._goes_on("probe" if selector == PROBE else "commit"):
            return None
        if asked.request == SET_CURRENT:
            return b"" if (stream.probe if selector == PROBE else self._commit(stream))(asked.data) else None
        if asked.request in READS:
            return stream.probed
        return {GET_LENGTH: struct.pack("<H", len(stream.probed)), GET_INFO: b"\3"}.get(asked.request)

    def _commit(self, stream: Stream):
        if bulk := self._bulk.get(stream.endpoint):
            bulk.restart()
        return stream.commit

    def _may_take_picture(self) -> bool:
        if self._goes_on("picture"):
            return True
        if self._vanishes:
            self._leave()
        return False

    def _leave(self) -> None:
        """Ends what the machine waits for, as a port without a device does, and goes."""
        for bulk in self._bulk.values():
            bulk.fail()
        for source in self._isochronous.values():
            source.stop()
        self._connection.send(wire.DISCONNECT)
        self._hung, self._vanishes = True, False

    def _goes_on(self, moment: str) -> bool:
        """Counts the moment, and does what the fault says about it; a hung or gone camera answers nothing any more."""
        self._moments[moment] += 1
        fault = self._device.wiring.fault
        if self._hung or fault is None or fault.moment != moment or self._moments[moment] < fault.time:
            return not self._hung
        self._vanishes = fault.action == "vanish"
        self._hung = fault.action == "hang"
        return False
