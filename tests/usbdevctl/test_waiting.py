# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""watch and log, the commands that wait."""

from __future__ import annotations

import json
import re

from conftest import RunOnHost

# Starts watch with the given options and waits until it is ready; $watch is its process.
READY = """
start_watch() {
  : >/tmp/err
  usbdevctl watch "$@" >/tmp/out 2>>/tmp/err & watch=$!
  until grep -q 'listening on 127.0.0.1:10171' /tmp/err || ! kill -0 $watch; do :; done
}
finish() { wait $watch; status=$?; cat /tmp/out; grep -v listening /tmp/err >&2; exit $status; }
"""
SEND = "/usr/bin/python3 -c \"import socket, sys; socket.socket(2, 2).sendto({}, ('127.0.0.1', 10171))\"\n"
NOTIFICATION = "b'ORDA_VLM2_CFCG_N' + bytes(32) + (6).to_bytes(4, 'little') + bytes(4)"
REMOVE_A_CAMERA = "sim plug usb2-camera 3-1 >/dev/null; usbdevctl unplug --type camera --slot 3-1 >/dev/null\n"
REMOVED = "event 7 (removed)  profile none  video none  audio none  flag 0  target none  request none\n"


def test_watch_prints_what_the_library_sends(on_host: RunOnHost) -> None:
    result = on_host(READY + "start_watch --count 1 --timeout 20\n" + REMOVE_A_CAMERA + "finish")
    assert (result.stdout, result.stderr, result.returncode) == (REMOVED, "", 0)


def test_watch_prints_each_notification_at_once(on_host: RunOnHost) -> None:
    until_printed = "until grep -q event /tmp/out || ! kill -0 $watch; do :; done\n"
    result = on_host(
        READY + "start_watch --timeout 20\n" + REMOVE_A_CAMERA + until_printed + "kill -TERM $watch; finish"
    )
    assert (result.stdout, result.returncode) == (REMOVED, 0)


def test_watch_ends_with_success_on_both_signals(on_host: RunOnHost) -> None:
    for signal in ("INT", "TERM"):
        result = on_host(READY + f"start_watch --timeout 20 --count 1; kill -{signal} $watch; finish")
        assert (result.stdout, result.returncode) == ("", 0)


def test_watch_refuses_and_does_not_count_other_datagrams(on_host: RunOnHost) -> None:
    other = SEND.format("b'hello'") + SEND.format("bytes(56)")
    result = on_host(READY + "start_watch --count 1 --timeout 20 --json\n" + other + SEND.format(NOTIFICATION) + "finish")
    assert json.loads(result.stdout)["event"] == 6
    assert result.stderr == (
        "usbdevctl: refused a datagram: it has 5 bytes, not 56\n"
        "usbdevctl: refused a datagram: it does not begin with ORDA_VLM2_CFCG_N\n"
    )


def test_watch_reports_when_too_few_came_in_time(on_host: RunOnHost) -> None:
    assert on_host("usbdevctl watch --timeout 1").returncode == 3


def test_a_second_watch_reports_that_the_port_is_in_use(on_host: RunOnHost) -> None:
    result = on_host(READY + "start_watch --timeout 20; usbdevctl watch; status=$?; kill $watch; exit $status")
    assert re.fullmatch(r"usbdevctl: cannot listen on 127\.0\.0\.1:10171: .*\n", result.stderr)
    assert result.returncode == 1


PLUG_FAST_CAMERA = "sim plug console-camera 3-1 >/dev/null\n"
OVER_60 = "has image size over 60 fps. It may cause decode error."


def test_the_log_shows_the_librarys_events(on_host: RunOnHost) -> None:
    result = on_host(PLUG_FAST_CAMERA + "usbdevctl log")
    assert re.fullmatch(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  warning  Camera\[3-1 .*\] " + OVER_60 + "\n", result.stdout)


def test_the_log_in_json_is_one_object(on_host: RunOnHost) -> None:
    document = json.loads(on_host(PLUG_FAST_CAMERA + "usbdevctl log --json").stdout)
    (event,) = document["events"]
    assert (document["schema"], event["level"], event["id"]) == (1, "warning", 1)
    assert event["text"].endswith(OVER_60)


def test_a_log_without_events_has_status_3(on_host: RunOnHost) -> None:
    result = on_host("usbdevctl log --json")
    assert json.loads(result.stdout) == {"schema": 1, "events": []}
    assert result.returncode == 3


def test_a_damaged_log_is_a_failure(on_host: RunOnHost) -> None:
    result = on_host("mkdir -p /var/log/vl; yes | head -c 2000 >/var/log/vl/event.db; usbdevctl log")
    assert result.stderr == "usbdevctl: cannot read the event log /var/log/vl/event.db: file is not a database\n"
    assert result.returncode == 1


def test_following_the_log_shows_events_as_they_are_logged(on_host: RunOnHost) -> None:
    result = on_host(
        "usbdevctl log --follow --json >/tmp/out & log=$!\n" + PLUG_FAST_CAMERA + "until [ -s /tmp/out ]; do :; done\n"
        "sim unplug 3-1 >/dev/null; " + PLUG_FAST_CAMERA + 'until [ "$(wc -l </tmp/out)" -ge 2 ]; do :; done\n'
        "kill $log; wait $log; status=$?; cat /tmp/out; exit $status"
    )
    events = [json.loads(line) for line in result.stdout.splitlines()]
    assert [(event["schema"], event["id"]) for event in events] == [(1, 1), (1, 2)]
    assert result.returncode == 0
