# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The emulated camera without a machine: its pictures, descriptors, payloads and messages."""

from __future__ import annotations

import asyncio
import struct
import sys
from pathlib import Path

import pytest

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

from usbcamera import redirection as wire  # noqa: E402
from usbcamera.camera import CameraAtMachine  # noqa: E402
from usbcamera.description import Fault, Wiring, described  # noqa: E402
from usbcamera.descriptors import Device  # noqa: E402
from usbcamera.jpeg import decoded, jpeg  # noqa: E402
from usbcamera.pictures import recognise, yuyv  # noqa: E402

CAMERAS = sorted(it.parent.name for it in (HERE.parents[1] / "host/sim/cameras").glob("*/camera.toml"))


def device(name: str, wiring: Wiring = Wiring(), *changes: str) -> Device:
    return Device(described(name, list(changes)), wiring)


@pytest.mark.parametrize("width, height", [(160, 120), (322, 250), (640, 480)])
def test_a_picture_says_its_number_and_tag_after_compression(width: int, height: int) -> None:
    assert recognise(decoded(jpeg(0xABC123, 0x5A, width, height)), width, height) == (0xABC123, 0x5A)


def test_a_damaged_picture_is_refused() -> None:
    whole = yuyv(77, 3, 160, 120)
    assert len(whole) == 160 * 120 * 2
    assert recognise(whole, 160, 120, 2) == (77, 3)
    assert recognise(whole[: 160 * 60 * 2] + yuyv(78, 3, 160, 120)[160 * 60 * 2 :], 160, 120, 2) == (77, 3)
    assert recognise(whole[: 160 * 30 * 2] + yuyv(9, 3, 160, 120)[160 * 30 * 2 :], 160, 120, 2) is None


@pytest.mark.parametrize("name", CAMERAS)
@pytest.mark.parametrize("isochronous", [False, True], ids=["bulk", "isochronous"])
def test_the_descriptors_of_every_camera_have_the_lengths_that_they_state(name: str, isochronous: bool) -> None:
    made = device(name, Wiring(isochronous=isochronous))
    configuration, at, interfaces = made.configuration, 0, set()
    assert struct.unpack_from("<H", configuration, 2)[0] == len(configuration)
    while at < len(configuration):
        if configuration[at + 1] == 4:
            interfaces.add(configuration[at + 2])
        at += configuration[at]
    assert at == len(configuration)
    assert interfaces == set(range(configuration[4]))


def test_a_fault_is_an_action_at_a_moment() -> None:
    assert Fault.read("vanish:probe:2") == Fault("vanish", "probe", 2)
    for wrong in ("vanish:lunch", "sing:probe", "vanish:probe:1:2", "vanish:probe:x"):
        with pytest.raises(ValueError):
            Fault.read(wrong)


class Machine(asyncio.WriteTransport):
    """The machine's end: keeps what the camera says."""

    def __init__(self, made: Device) -> None:
        super().__init__()
        self.said: list[tuple[int, int, bytes]] = []
        self.lost = False
        self._messages = wire.Messages()
        self._camera = CameraAtMachine(made)
        self._camera.connection_made(self)
        self.tell(wire.HELLO, bytes(68), header=wire.FIRST_HEADER)

    def write(self, data: bytes) -> None:
        self.said += self._messages.take(data)

    def abort(self) -> None:
        self.lost = True

    def tell(self, kind: int, body: bytes, identifier: int = 1, header: struct.Struct = wire.HEADER) -> None:
        for byte in header.pack(kind, len(body), identifier) + body:
            self._camera.data_received(bytes([byte]))  # in the smallest parts that a socket may deliver

    def ask(self, request_type: int, request: int, value: int, index: int, length: int = 4096, data: bytes = b"") -> bytes | None:
        """Returns the data of the answer; nothing if it is refused."""
        self.tell(wire.CONTROL_PACKET, struct.pack("<BBBBHHH", 0, request, request_type, 0, value, index, length) + data)
        kind, _, body = self.said[-1]
        assert kind == wire.CONTROL_PACKET
        return body[10:] if body[3] == wire.SUCCESS else None


def test_a_machine_learns_what_is_plugged_in() -> None:
    made = device("usb2-camera")
    machine = Machine(made)
    assert [kind for kind, *_ in machine.said] == [wire.HELLO, wire.ENDPOINTS, wire.INTERFACES, wire.CONNECT]
    assert machine.ask(0x80, 6, 0x0100, 0) == made.device
    assert machine.ask(0x80, 6, 0x0200, 0, 9) == made.configuration[:9]
    assert machine.ask(0x80, 6, 0x0302, 0x0409) == bytes([30, 3]) + "USB 2.0 Camera".encode("utf-16-le")
    assert machine.ask(0x80, 6, 0x03FF, 0x0409) is None


def test_what_cannot_be_understood_ends_the_connection() -> None:
    for kind, body in ((wire.CONTROL_PACKET, b"short"), (wire.BULK_PACKET, b""), (wire.SET_ALTERNATE, b"")):
        machine = Machine(device("usb2-camera"))
        machine.tell(kind, body)
        assert machine.lost
    machine = Machine(device("usb2-camera"))
    machine.tell(wire.CONTROL_PACKET, bytes(wire.LARGEST_MESSAGE + 1))
    assert machine.lost


def test_a_probe_that_fits_nothing_is_answered_with_the_first_format() -> None:
    machine = Machine(device("usb2-camera"))
    wanted = struct.pack("<HBBI", 1, 200, 200, 1).ljust(26, b"\0")
    assert machine.ask(0x21, 1, 0x0100, 1, 26, wanted) == b""
    assert (machine.ask(0xA1, 0x81, 0x0100, 1) or b"")[2:8] == struct.pack("<BBI", 1, 1, 333333)
    assert machine.ask(0x21, 1, 0x0100, 1, 26, b"short") is None


def packets(size: int, count: int) -> list[bytes]:
    """Returns the first packets of a raw picture of 320x240, whose last payload has 6,164 bytes."""

    async def asked() -> list[bytes]:
        machine = Machine(device("usb2-camera"))
        machine.ask(0x21, 1, 0x0200, 1, 26, struct.pack("<HBBI", 1, 2, 5, 333333).ljust(26, b"\0"))
        for identifier in range(count):
            machine.tell(wire.BULK_PACKET, struct.pack("<BBHIH", 0x81, 0, size, 0, 0), identifier)
        return [body[10:] for kind, _, body in machine.said if kind == wire.BULK_PACKET]

    return asyncio.run(asked())


def test_a_machine_that_asks_for_whole_payloads_gets_them() -> None:
    found = packets(16_384, 10)
    assert [len(it) for it in found] == [16_384] * 9 + [6_164]
    assert [it[1] & 2 for it in found] == [0] * 9 + [2]
    assert recognise(b"".join(it[2:] for it in found), 320, 240, 2) is not None


def test_a_machine_that_asks_for_less_gets_an_empty_packet_where_a_payload_ends_with_a_full_one() -> None:
    assert [len(it) for it in packets(3_082, 57)][-3:] == [3_082, 3_082, 0]


@pytest.mark.parametrize("action, said", [
    ("vanish", [wire.CONTROL_PACKET, wire.DISCONNECT]),
    ("hang", []),
    ("stall", [wire.CONTROL_PACKET]),
])  # fmt: skip
def test_a_fault_happens_at_its_moment(action: str, said: list[int]) -> None:
    machine = Machine(device("usb2-camera", Wiring(fault=Fault(action, "probe", 2))))
    assert machine.ask(0xA1, 0x81, 0x0100, 1) is not None
    before = len(machine.said)
    machine.tell(wire.CONTROL_PACKET, struct.pack("<BBBBHHH", 0, 0x81, 0xA1, 0, 0x0100, 1, 26))
    assert [kind for kind, *_ in machine.said[before:]] == said
