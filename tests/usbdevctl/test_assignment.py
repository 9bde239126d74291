# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""assign and check: a profile is not given to a camera that would not stream, or would stop another one."""

from __future__ import annotations

from conftest import Done, RenewedHost, run_all

TWO_AT_ONE_ROOT_PORT = "sim plug usb2-camera 3-1.1; sim plug hd-usb-camera 3-1.2"
FIRST = 'channel 0  3-1.1  "USB 2.0 Camera: USB Camera"'
SECOND = 'channel 1  3-1.2  "USB 2.0 Camera: HD USB Camera"'
CONFLICTS = "usbdevctl channels --json"


def waiting_for(channels: Done) -> list[int | None]:
    """The channels that the first three channels wait for."""
    return [row["parked_behind"] for row in channels.json["channels"][:3]]


def test_assign_prints_which_camera_waits_now(host: RenewedHost) -> None:
    _, text, again, json = run_all(
        host,
        TWO_AT_ONE_ROOT_PORT,
        "usbdevctl assign 3-1.1 0",
        "usbdevctl assign ch0 0",
        "usbdevctl clear 0 >/dev/null; usbdevctl assign 3-1.1 0 --json",
    )
    assert text.out == f"profile 0 assigned: {FIRST}  profile 0\nwaits for it now: {SECOND}  no profile\n"
    assert again.out == f"profile 0 assigned already: {FIRST}  profile 0\n"
    assert [json.json[key] for key in ("changed", "now_waiting", "channel", "profile")] == [True, [1], 0, 0]
    assert [(done.err, done.status) for done in (text, again, json)] == 3 * [("", 0)]


def test_a_camera_that_waits_gets_no_profile_and_stops_no_other(host: RenewedHost) -> None:
    _, refused, check, channels = run_all(
        host,
        f"{TWO_AT_ONE_ROOT_PORT}; usbdevctl assign 3-1.1 0",
        "usbdevctl assign 3-1.2 1",
        "usbdevctl check 3-1.2 1 --json",
        CONFLICTS,
    )
    why = (
        f"{SECOND}  no profile: it waits for {FIRST}  profile 0 (both are on one USB controller behind a PCI bridge); "
        "with a profile, both would wait for each other"
    )
    advice = (
        "plug it into a port of another USB controller, or take the profile of channel 0 ('usbdevctl clear pf0') "
        "or switch its port off ('usbdevctl slot off 3-1.1'); --anyway assigns it nevertheless"
    )
    assert (refused.out, refused.err) == ("", f"usbdevctl: {why}\nusbdevctl: {advice}\n")
    assert (refused.status, check.status) == (1, 3)
    assert [check.json[key] for key in ("allowed", "reason", "other_channel", "collision", "why", "advice")] == [
        False,
        "waits",
        0,
        "controller",
        why,
        advice,
    ]
    assert waiting_for(channels) == [None, 0, None]


def test_another_root_port_is_advised_only_if_a_camera_can_stream_there(host: RenewedHost) -> None:
    """Not behind a bridge: a camera streams in each root port of such a controller."""
    _, check = run_all(
        host,
        "sim plug usb2-camera 1-1.1; sim plug hd-usb-camera 1-1.2; usbdevctl assign 1-1.1 0",
        "usbdevctl check 1-1.2 1 --json",
    )
    assert check.json["collision"] == "root_port"
    assert check.json["advice"].startswith("plug it into a port of another root port, or")


def test_a_camera_that_waits_gets_its_profile_anyway(host: RenewedHost) -> None:
    _, anyway, channels = run_all(
        host,
        f"{TWO_AT_ONE_ROOT_PORT}; usbdevctl assign 3-1.1 0",
        "usbdevctl assign 3-1.2 1 --anyway",
        CONFLICTS,
    )
    assert anyway.out == f"profile 1 assigned: {SECOND}  profile 1\nwaits for it now: {FIRST}  profile 0\n"
    assert (anyway.err, anyway.status) == ("usbdevctl: it does not stream: it waits for channel 0\n", 0)
    assert waiting_for(channels) == [1, 0, None]


def test_a_camera_gets_its_profile_after_the_advised_change(host: RenewedHost) -> None:
    for remedy in ("usbdevctl clear pf0", "usbdevctl slot off 3-1.1"):
        _, assigned = run_all(
            host, f"{TWO_AT_ONE_ROOT_PORT}; usbdevctl assign 3-1.1 0; {remedy}", "usbdevctl assign 3-1.2 1"
        )
        assert (assigned.err, assigned.status) == ("", 0), remedy


def test_an_unsupported_camera_takes_no_profile(host: RenewedHost) -> None:
    _, refused, free, anyway = run_all(
        host,
        "echo 'USB 2.0 Camera: USB Camera' >/etc/config/.usbnosupportlist.dat; sim plug usb2-camera 3-1",
        "usbdevctl assign 3-1 0",
        "usbdevctl free --json",
        "usbdevctl assign 3-1 0 --anyway",
    )
    assert "it is not supported; the profile would be used up and show nothing" in refused.err
    assert "'usbdevctl explain ch0' shows why it is not" in refused.err
    assert (refused.status, free.json["profiles"]) == (1, [0, 1, 2, 3])
    assert (anyway.err, anyway.status) == ("usbdevctl: it does not stream: it is not supported\n", 0)


def test_a_profile_for_the_camera_in_a_displaced_ones_port_is_not_lost(host: RenewedHost) -> None:
    """The library would assign it to the channel of the displaced camera, and do nothing where that has the profile."""
    _, other, same = run_all(
        host,
        "sim plug usb2-camera 3-1; usbdevctl assign 3-1 0; usbdevctl plug --type camera --node 0 --slot 3-1 --name B",
        "usbdevctl assign 3-1 1 --anyway",
        "usbdevctl assign 3-1 0 --anyway",
    )
    assert [done.status for done in (other, same)] == [1, 1]
    for done in (other, same):
        assert "a displaced camera keeps its port, and the library would take that one instead: channel 0" in done.err
        assert "'usbdevctl forget ch0' frees the channel that keeps the port, its profile with it" in done.err


def test_an_unplugged_camera_is_distinguished_from_no_camera(host: RenewedHost) -> None:
    _, away, none = run_all(
        host, "sim plug usb2-camera 3-1; sim unplug 3-1", "usbdevctl assign 3-1 0", "usbdevctl assign 9-9 0"
    )
    assert (away.out, away.status, none.status) == ("", 1, 3)
    assert "it is not attached\nusbdevctl: attach the camera, or name another one\n" in away.err


def test_a_camera_whose_port_is_off_gets_the_profile_and_is_reported_not_to_stream(host: RenewedHost) -> None:
    _, assigned = run_all(host, "sim plug usb2-camera 3-1; usbdevctl slot off 3-1", "usbdevctl assign 3-1 0")
    assert (assigned.err, assigned.status) == ("usbdevctl: it does not stream: its port is switched off\n", 0)


def test_a_check_allows_what_is_harmless(host: RenewedHost) -> None:
    _, allowed, _, bound, taken = run_all(
        host,
        "sim plug usb2-camera 3-1",
        "usbdevctl check 3-1 0",
        "usbdevctl assign 3-1 0",
        "usbdevctl check 3-1 0",
        "usbdevctl check 3-1 1",
    )
    camera = 'channel 0  3-1  "USB 2.0 Camera: USB Camera"'
    assert (allowed.out, allowed.status) == (f"allowed: {camera}  no profile\n", 0)
    assert (bound.out, bound.status) == (f"assigned already: {camera}  profile 0\n", 0)
    assert taken.out.startswith(f"refused: {camera}  profile 0: it has another profile\n")
    assert taken.status == 3


def test_an_assignment_that_is_not_stored_is_a_failure(host: RenewedHost) -> None:
    """As on a full disk, no file can grow."""
    no_growth = "trap '' XFSZ; ulimit -f 0"
    done = host.run(f"sim plug usb2-camera 3-1 >/dev/null; ({no_growth}; usbdevctl assign 3-1 0; echo $?) 2>&1 | cat")
    assert done.stdout.splitlines()[1:] == [
        'usbdevctl: profile 0 could not be assigned to channel 0  3-1  "USB 2.0 Camera: USB Camera"  no profile',
        "1",
    ]
