# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the manager and the streaming service make of that which reaches them."""

from __future__ import annotations

import struct

import pytest
from conftest import RunOnHost
from managerlib import notification
from streaminglib import message
from usbdev import Notification

MAGIC = b"ORDA_VLM2_CFCG_N"
PYTHON = '/usr/bin/python3 -c "import socket\n'
MANAGER_LOG = "/var/log/vl/manager-service.log"
STREAMING_LOG = "/var/log/vl/streaming-service.log"


def datagram(*numbers: int, header: bytes = bytes(16)) -> bytes:
    return MAGIC + header + struct.pack("=6i", *numbers)


@pytest.mark.parametrize(
    ("data", "line"),
    [
        (datagram(2, 0, 1, 0, 6, 2), "event 6 (plugged)  profile 2  video 0  audio 1  flag 0  target 2  request none"),
        (
            datagram(0, -1, -1, 0, 7, -1),
            "event 7 (removed)  profile 0  video none  audio none  flag 0  target none  request none",
        ),
        (
            datagram(1, 3, -1, 1, 5, 1, header=bytes(range(16))),
            "event 5  profile 1  video 3  audio none  flag 1  target 1  request 000102030405060708090a0b0c0d0e0f",
        ),
        (
            datagram(1, 3, -1, 0, 4, 3, header=bytes((0, 0, 0, 0, 192, 0, 2, 7)) + bytes(8)),
            "event 4  profile 1  video 3  audio none  flag 0  target 3  request 192.0.2.7",
        ),
    ],
)
def test_a_notification_is_printed_field_by_field(data: bytes, line: str) -> None:
    assert notification.line(Notification.from_bytes(data)) == line


@pytest.mark.parametrize("data", [b"", datagram(0, 0, 0, 0, 0, 0)[:-1], datagram(0, 0, 0, 0, 0, 0) + b"x", bytes(56)])
def test_a_datagram_that_is_not_a_notification_is_refused(data: bytes) -> None:
    with pytest.raises(ValueError, match="bytes, not 56|begin with ORDA_VLM2_CFCG_N"):
        Notification.from_bytes(data)


def test_a_signal_is_shown_byte_by_byte() -> None:
    shown = message.shown(b"start 1\0" + bytes(range(0x7B, 0x83)) + bytes(16))
    assert shown == (
        "signal  73746172 74203100 7b7c7d7e 7f808182 00000000 00000000 00000000 00000000"
        "  |start 1.{|}~....................|"
    )


def test_the_manager_prints_what_the_library_sends(with_manager: RunOnHost) -> None:
    done = with_manager(
        "sim plug usb2-camera 3-1 >/dev/null; usbdevctl assign 3-1 1 >/dev/null; usbdevctl clear 1 >/dev/null\n"
        f"until_true 'grep -q \"event 4\" {MANAGER_LOG}'; grep event {MANAGER_LOG}"
    )
    assert done.stdout.splitlines() == [
        "event 0 (changed)  profile 1  video 0  audio none  flag 0  target 1  request none",
        "event 4  profile 1  video 0  audio none  flag 0  target none  request none",
    ]


def test_the_manager_refuses_other_datagrams_and_continues(with_manager: RunOnHost) -> None:
    send = PYTHON + "for data in (b'hello', bytes(56), b'ORDA_VLM2_CFCG_N' + bytes(40)):\n"
    done = with_manager(
        send + " socket.socket(2, 2).sendto(data, ('127.0.0.1', 10171))\"\n"
        f"until_true grep -q event {MANAGER_LOG}; tail -n +2 {MANAGER_LOG}"
    )
    assert done.stdout.splitlines() == [
        "manager-service: refused a datagram: it has 5 bytes, not 56",
        "manager-service: refused a datagram: it does not begin with ORDA_VLM2_CFCG_N",
        "event 0 (changed)  profile 0  video 0  audio 0  flag 0  target 0  request none",
    ]


def test_the_streaming_service_prints_the_librarys_signals(with_streaming_service: RunOnHost) -> None:
    done = with_streaming_service(
        f"call vl_StreamNotify 'profile 2 has a new camera, now!'; until_true grep -q signal {STREAMING_LOG}\n"
        f"grep signal {STREAMING_LOG}"
    )
    assert done.stdout.splitlines()[0] == "0"
    assert done.stdout.splitlines()[1].endswith("|profile 2 has a new camera, now!|")


def test_the_streaming_service_refuses_signals_of_another_size_and_continues(with_streaming_service: RunOnHost) -> None:
    send = PYTHON + "for size in (0, 31, 33, 32):\n with socket.create_connection(('127.0.0.1', 10170)) as out:\n"
    done = with_streaming_service(
        send + "  out.sendall(b'x' * size); out.shutdown(socket.SHUT_WR); out.recv(1)\"\n"
        f"until_true grep -q 'xxxx' {STREAMING_LOG}; tail -n +2 {STREAMING_LOG}"
    )
    said = done.stdout.splitlines()
    assert said[:3] == [
        "streaming-service: refused a signal: it has 0 bytes, not 32",
        "streaming-service: refused a signal: it has 31 bytes, not 32",
        "streaming-service: refused a signal: it has more than 32 bytes",
    ]
    assert said[3].endswith("|" + 32 * "x" + "|")
