# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Texts and numbers that cross the border between Python and the library."""

from __future__ import annotations

import socket
from typing import Any

import pytest
from usbdev import Device, Entry, Notification, ShareLink, StreamInfo, UsbdevError, core, devices, hotplug, web
from usbdev._usbdev import ffi
from usbdev.records import from_c, to_c

NOT_UTF8 = "name \udcff"  # a byte that is not UTF-8
LONGEST_SLOT = "s" * 127


def test_bytes_that_are_not_utf8_pass_in_both_directions() -> None:
    assert core.trim(f"  {NOT_UTF8} ") == NOT_UTF8
    assert web.base64_encode_text(NOT_UTF8) == web.base64_encode(b"name \xff")
    assert web.base64_decode_text(web.base64_encode_text(NOT_UTF8)) == NOT_UTF8


def test_a_text_with_a_zero_is_refused() -> None:
    for call in (core.trim, hotplug.camera_in_port, lambda text: web.set_share_link(ShareLink(0, shrpwd=text))):
        with pytest.raises(ValueError, match="zero"):
            call("a\0b")


@pytest.mark.parametrize("value", [None, b"x" * 128, 7], ids=["none", "bytes", "number"])
def test_anything_but_a_text_is_refused(value: Any) -> None:
    for call in (core.trim, hotplug.camera_in_port, lambda text: devices.usb_ids(Device(1, 0, text))):
        with pytest.raises(TypeError, match="a text is needed"):
            call(value)


@pytest.mark.parametrize("removed", ["", "ab", "ä"], ids=["empty", "two", "two bytes"])
def test_only_a_character_of_one_byte_is_removed(removed: str) -> None:
    assert core.remove_character("a-b", "-") == "ab"
    with pytest.raises(ValueError, match="bytes, not 1"):
        core.remove_character("a-b", removed)


def test_a_text_fills_a_field_up_to_its_last_byte_but_one() -> None:
    assert hotplug.camera_in_port(LONGEST_SLOT) is None
    with pytest.raises(ValueError, match="at most 127"):
        hotplug.camera_in_port(LONGEST_SLOT + "s")


@pytest.mark.parametrize(
    ("record", "bound"),
    [
        (lambda text: devices.usb_ids(Device(1, 0, "3-1", devname=text)), 255),
        (lambda text: web.set_share_link(ShareLink(9, shrpwd=text)), 31),
    ],
    ids=["device", "share link"],
)
def test_a_field_takes_no_text_that_would_be_cut(record, bound: int) -> None:
    with pytest.raises(ValueError, match=f"at most {bound}"):
        record("x" * (bound + 1))


def test_a_request_header_has_at_most_sixteen_bytes() -> None:
    with pytest.raises(ValueError, match="17 bytes, not 16"):
        core.notify_manager(Notification(bytes(17), 0, 0, 0, 0, 0, 0))


def test_numbers_that_do_not_fit_are_refused() -> None:
    for call in (
        lambda: core.channel_of_profile(1 << 31),
        lambda: devices.usb_ids(Device(1, 1 << 31, "3-1")),
        lambda: core.notify_manager(Notification(bytes(16), 1 << 31, 0, 0, 0, 0, 0)),
    ):
        with pytest.raises(OverflowError):
            call()


def test_numbers_without_a_value_are_refused() -> None:
    with pytest.raises(TypeError):
        core.channel_of_profile(None)  # type: ignore[arg-type]


def test_a_header_of_a_stream_has_at_most_sixteen_bytes() -> None:
    assert from_c(StreamInfo, to_c(StreamInfo(header=b"short"))).header == b"short" + bytes(11)
    with pytest.raises(ValueError, match="17 bytes, and at most 16"):
        to_c(StreamInfo(header=bytes(17)))


@pytest.mark.parametrize(("text", "most"), [("x" * 63, core.remove_character), ("x" * 1023, core.escape_json)])
def test_a_short_text_is_bounded_before_the_call(text: str, most) -> None:
    arguments = ("-",) if most is core.remove_character else ()
    assert most(text, *arguments) == text
    with pytest.raises(ValueError, match="at most"):
        most(text + "x", *arguments)


def test_a_result_that_does_not_fit_is_a_failure() -> None:
    with pytest.raises(UsbdevError, match="process_json_string returned 0") as raised:
        core.escape_json('"' * 1023)
    assert (raised.value.function, raised.value.result) == ("process_json_string", 0)


@pytest.mark.parametrize("length", range(7))
def test_base64_of_every_length_is_decoded_again(length: int) -> None:
    content = bytes(range(250, 250 + length))
    assert web.base64_decode(web.base64_encode(content)) == content


def test_text_utilities() -> None:
    assert core.split_in_two('name = "it"', "=") == ("name", "it")
    assert core.split_in_two("name", "=") is None
    assert core.escape_json('a\\"') == 'a\\\\'
    assert web.escape_query("/a b?c d/~") == "/a b?c%20d%2F%7E"
    assert web.strip_hyphens('1-2-3 "') == "123"
    assert (web.first_line("one\ntwo"), web.first_line("one")) == ("one", None)
    assert web.authorization("ann", "secret") == "Basic YW5uOnNlY3JldA=="
    assert web.session_in("<authPassed><![CDATA[1]]></authPassed><authSid><![CDATA[abc]]></authSid>") == "abc"


def test_a_request_path_is_read_as_it_was_set() -> None:
    web.set_request_path("/" + "p" * 254)
    assert web.request_path() == "/" + "p" * 254
    web.set_request_path("/short")
    assert web.request_path() == "/short"
    with pytest.raises(ValueError, match="at most 255"):
        web.set_request_path("/" + "p" * 255)


def test_a_socket_is_read_up_to_the_size_of_the_buffer() -> None:
    reply = "HTTP/1.0 200 OK\n\n\n\nline\nrest"
    ours, theirs = socket.socketpair()
    with ours, theirs:
        assert web.send(ours.fileno(), reply) == len(reply)
        web.skip_head(theirs.fileno())
        assert web.read_line(theirs.fileno()) == b"line"
        assert (web.receive(theirs.fileno(), 3), web.receive(theirs.fileno(), 9)) == (b"res", b"t")
        ours.close()
        assert web.receive(theirs.fileno(), 9) == b""


def test_a_notification_arrives_as_it_was_sent() -> None:
    sent = Notification(bytes(range(16)), 1, 2, -1, 0, 5, 1)
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as manager:
        manager.bind(("127.0.0.1", 10171))
        core.notify_manager(sent)
        assert Notification.from_bytes(manager.recv(100)) == sent


def test_a_record_that_is_passed_keeps_its_fields() -> None:
    info = StreamInfo(header=bytes(range(16)), width=640, framerate=0.5, fetype="ä", vtag="1" * 15)
    assert from_c(StreamInfo, to_c(info)) == info


@pytest.mark.parametrize(("mark", "channel"), [(-1, None), (0, 0), (9, 9), (10, None), (999, None)])
def test_a_conflict_mark_is_a_channel_to_wait_for_or_none(mark: int, channel: int | None) -> None:
    assert from_c(Entry, ffi.new("_usbdev_entry *", {"conflictch": mark})).waits_for == channel
