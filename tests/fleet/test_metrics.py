# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The metrics of a made-up host: what they say, and that nothing else gets out."""

from __future__ import annotations

import atexit
import json
import os
import re
import socket
import subprocess
from fcntl import flock
from pathlib import Path
from typing import IO, Any

import pytest
from conftest import REPOSITORY, VERSIONS, channel, free_port, made_up
from fleetlib import counted, metrics, udp_drops, units
from fleetlib.counted import Counted
from prometheus_client import CollectorRegistry, exposition
from prometheus_client.openmetrics import exposition as openmetrics
from prometheus_client.openmetrics.parser import text_string_to_metric_families
from servicelib import counts
from servicelib.counts import Counts

Value = dict[str, Any]
NOTHING = {service: Counted() for service in counted.SERVICES}


@pytest.fixture(autouse=True)
def folder(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    """Of the files of the services, instead of the host's."""
    monkeypatch.setattr(counts, "FOLDER", tmp_path / "counts")
    monkeypatch.setattr(units, "GROUPS", tmp_path / "groups")
    counts.FOLDER.mkdir()
    return counts.FOLDER


def registry(state: Value | None) -> CollectorRegistry:
    made = CollectorRegistry()
    host = metrics.Host(VERSIONS)
    host.note(state)
    made.register(host)
    return made


def values(state: Value | None, name: str, *labels: str) -> dict[tuple[str, ...], float]:
    """Returns the samples of this name by the values of these labels, as the reference parser reads them."""
    text = openmetrics.generate_latest(registry(state)).decode()
    samples = [sample for family in text_string_to_metric_families(text) for sample in family.samples]
    return {tuple(sample.labels[label] for label in labels): sample.value for sample in samples if sample.name == name}


def state_of(*channels: Value) -> Value:
    return {**made_up(), "channels": list(channels)}


def with_reasons(*reasons: tuple[str, bool], **members: Any) -> Value:
    made: Value = channel(0, **members)
    first = made["reasons"][0]
    return {**made, "reasons": [{**first, "reason": reason, "hinders": hinders} for reason, hinders in reasons]}


def free(number: int) -> Value:
    made: Value = channel(number, state="free", profile=None, switched_on=None, streams=False)
    return {**made, "reasons": []}


def test_each_channel_counts_once_and_what_none_has_is_zero() -> None:
    found = values(state_of(with_reasons(("busy", True)), with_reasons(channel=1), free(2), channel(3, state="unplugged")), "usbdev_channels", "state", "reason")
    assert {kind for kind, number in found.items() if number} == {
        ("plugged", "busy"), ("plugged", "none"), ("free", "none"), ("unplugged", "unplugged")}
    assert sum(found.values()) == 4 and set(found) == set(metrics.STATES_AND_REASONS)


@pytest.mark.parametrize(("reasons", "expected"), [
    ([("twins", False), ("bandwidth", True), ("failing", True)], "bandwidth"),
    ([("twins", False)], "none"),
    ([("of a version to come", True)], "other"),
])  # fmt: skip
def test_the_first_reason_that_hinders_is_the_one_that_counts(reasons: list[tuple[str, bool]], expected: str) -> None:
    assert values(state_of(with_reasons(*reasons)), "usbdev_channels", "state", "reason")["plugged", expected] == 1


def test_every_reason_that_usbdevctl_knows_is_a_value() -> None:
    words = re.findall(r'^USBDEVCTL_REASON\(\w+, "(\w+)"', (REPOSITORY / "tools/usbdevctl/reason/reasons.def").read_text(), re.MULTILINE)
    without_channel = {"no_channel"}
    of_states = {"unplugged", "displaced"}
    assert set(words) - without_channel - of_states == set(metrics.REASONS) - {metrics.NONE, metrics.OTHER}


def test_a_stream_is_wanted_with_a_profile_unless_its_port_is_switched_off() -> None:
    state = state_of(channel(0), channel(1, switched_on=False, streams=False), channel(2, profile=None, streams=False), free(3))
    assert list(values(state, "usbdev_stream_wanted", "channel").values()) == [1, 0, 0, 0]
    assert values(state, "usbdev_stream_up", "channel") == {("0",): 1, ("1",): 0, ("2",): 0, ("3",): 0}


def test_reserved_bandwidth_is_a_share_of_each_bus() -> None:
    assert values(made_up(), "usbdev_bus_reserved_ratio", "bus") == {("3",): 0.25}
    unknown = {**made_up(), "usb": {"buses": [{"bus": 1, "speed": 0, "reserved": 0}]}}
    assert values(unknown, "usbdev_bus_reserved_ratio", "bus") == {("1",): 0}


def test_a_host_that_cannot_be_read_is_down_and_nothing_is_said_of_its_channels() -> None:
    assert values(made_up(), "usbdev_up") == {(): 1}
    assert values(None, "usbdev_up") == {(): 0}
    assert values(None, "usbdev_channels") == {} and values(None, "usbdev_info") != {}


def test_versions_are_an_info_metric() -> None:
    assert values(None, "usbdev_info", *VERSIONS) == {tuple(VERSIONS.values()): 1}


def test_no_name_serial_number_or_text_is_in_a_label() -> None:
    secret = "39202766"
    state = made_up(device=secret, profile_name=secret, port=f"3-{secret}", token=secret)
    state["channels"][0]["reasons"][0] |= {"reason": secret, "text": secret, "values": {"camera": secret}}
    state["host"]["name"] = secret
    text = openmetrics.generate_latest(registry(state)).decode()
    assert secret not in text and "garden" not in text and "usbdev_channels" in text


def test_what_the_services_counted_is_shown_and_the_rest_is_zero() -> None:
    made = Counts()
    for words in (("plug_events", "camera", "plugged"), ("stream_failures", "2", "stuck"), ("stream_restarts", "2")):
        made.add(*words)
    made.add("notifications", "refused")
    made.begin("devices")
    assert values(None, "usbdev_plug_events_total", "device", "action")["camera", "plugged"] == 1
    failures = values(None, "usbdev_stream_failures_total", "profile", "cause")
    assert failures["2", "stuck"] == 1 and len(failures) == 16 and sum(failures.values()) == 1
    assert list(values(None, "usbdev_stream_restarts_total", "profile").values()) == [0, 0, 1, 0]
    assert values(None, "usbdev_notifications_total", "outcome") == {("received",): 0, ("refused",): 1}


def test_times_are_histograms_with_a_bucket_for_everything_up_to_its_bound() -> None:
    made = Counts()
    for seconds in (0.003, 0.02, 100):
        made.add_time(seconds, "commands", "explain")
    made.begin("pages")
    found = values(None, "usbdev_command_duration_seconds_bucket", "service", "command", "le")
    assert [found["pages", "explain", bound] for bound in ("0.003", "0.01", "0.03", "30.0", "+Inf")] == [1, 1, 2, 2, 3]
    assert values(None, "usbdev_command_duration_seconds_sum", "service", "command")["pages", "explain"] == pytest.approx(100.023)
    assert values(None, "usbdev_command_duration_seconds_count", "service", "command")["pages", "explain"] == 3


def test_a_service_is_up_as_long_as_it_has_its_file(folder: Path) -> None:
    assert set(values(None, "usbdev_service_up", "service").values()) == {0}
    made = Counts()
    made.begin("streams")
    made.write()
    assert values(None, "usbdev_service_up", "service") == {("devices",): 0, ("streams",): 1, ("pages",): 0, ("fleet",): 0}
    atexit.unregister(made.write)
    del made
    assert values(None, "usbdev_service_up", "service")[("streams",)] == 0


def test_a_service_that_replaces_its_file_while_it_is_read_is_up(folder: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    made = Counts()
    made.begin("streams")

    def replaced_before(file: IO[bytes], kind: int) -> None:
        made.write()
        flock(file, kind)

    monkeypatch.setattr(counted, "flock", replaced_before)
    assert values(None, "usbdev_service_up", "service")["streams",] == 1
    atexit.unregister(made.write)


@pytest.mark.parametrize("content", [
    "", "[]", "{}", "null", "[" * 60000, "\xff", '{"numbers": []}', '{"numbers": 5, "times": []}',
    '{"numbers": [5], "times": [7]}',
    '{"numbers": [["plug_events", "camera", "plugged", -1]], "times": []}',
    '{"numbers": [["plug_events", "camera", "plugged", 1e99]], "times": []}',
    '{"numbers": [["plug_events", "a camera", "plugged", 1], []], "times": []}',
    '{"numbers": [], "times": [["commands", "a\\"}\\n", 1.0, [0, 0, 0, 0, 0, 0, 0, 0, 0, 1]]]}',
    '{"numbers": [], "times": [["commands", "explain", NaN, [0, 0, 0, 0, 0, 0, 0, 0, 0, 1]]]}',
    '{"numbers": [], "times": [["commands", "explain", 1.0, [0, 1]], [1]]}',
])  # fmt: skip
def test_a_file_that_no_service_wrote_changes_nothing(folder: Path, content: str) -> None:
    before = openmetrics.generate_latest(registry(made_up()))
    (folder / "streams").write_text(content, encoding="latin-1")
    assert openmetrics.generate_latest(registry(made_up())) == before


@pytest.mark.parametrize(("events", "expected"), [("populated 1\nfrozen 0\n", 1), ("populated 0\nfrozen 0\n", 0), (None, 0)])
def test_the_login_service_is_up_as_long_as_its_unit_has_a_process(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch, events: str | None, expected: int
) -> None:
    monkeypatch.setattr(units, "GROUPS", tmp_path / "system.slice")
    assert ("login",) not in values(None, "usbdev_service_up", "service")  # without a service manager
    (units.GROUPS / metrics.LOGIN).mkdir(parents=True)
    if events is not None:
        (units.GROUPS / metrics.LOGIN / "cgroup.events").write_text(events)
    assert values(None, "usbdev_service_up", "service")["login",] == expected


def test_a_pipe_in_the_place_of_a_file_keeps_nobody_waiting(folder: Path) -> None:
    os.mkfifo(folder / "streams")
    assert values(None, "usbdev_up") == {(): 0}


def test_a_service_cannot_make_series_without_end(folder: Path) -> None:
    times = [["commands", f"x{number}", 1.0, [1] * 10] for number in range(1000)]
    (folder / "pages").write_text(json.dumps({"numbers": [], "times": times}))
    assert len(values(None, "usbdev_command_duration_seconds_count", "command")) == counted.MOST_KINDS


def test_what_the_kernel_dropped_of_the_managers_notifications_is_lost(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(udp_drops, "ADDRESS", udp_drops.address(free_port()))
    assert values(None, "usbdev_notifications_lost_total") == {(): 0}
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as manager:
        manager.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 1)
        manager.bind(("127.0.0.1", 0))
        monkeypatch.setattr(udp_drops, "ADDRESS", udp_drops.address(manager.getsockname()[1]))
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as library:
            for _ in range(1000):
                library.sendto(b"x" * 56, manager.getsockname())
        taken = 0
        manager.setblocking(False)
        try:
            while manager.recv(100):
                taken += 1
        except BlockingIOError:
            pass
        assert values(None, "usbdev_notifications_lost_total") == {(): 1000 - taken} and taken < 1000


def test_the_names_and_types_are_what_exporters_should_have() -> None:
    made = Counts()
    made.add_time(1, "commands", "explain")
    made.add_time(1, "library_calls", "profiles")
    made.begin("pages")
    done = subprocess.run(["promtool", "check", "metrics"], input=exposition.generate_latest(registry(made_up())), capture_output=True, check=False)
    assert (done.returncode, done.stdout, done.stderr) == (0, b"", b"")


def test_a_host_has_few_series() -> None:
    assert len([line for line in exposition.generate_latest(registry(made_up())).splitlines() if not line.startswith(b"#")]) < 150


def test_the_document_lists_every_metric_with_its_labels() -> None:
    section = (REPOSITORY / "docs/fleet.md").read_text().partition("\n## Prometheus\n")[2].partition("\n## ")[0]
    listed = {name: set(re.findall(r"`(\w+)`", labels)) for name, labels in re.findall(r"^\| `(usbdev_\w+)` \|([^|]*)\|", section, re.MULTILINE)}
    made = Counts()
    made.add_time(1, "commands", "explain")
    made.add_time(1, "library_calls", "profiles")
    made.begin("pages")
    found: dict[str, set[str]] = {}
    for family in text_string_to_metric_families(openmetrics.generate_latest(registry(made_up())).decode()):
        for sample in family.samples:
            name = re.sub("_(bucket|count|sum)$", "", sample.name) if family.type == "histogram" else sample.name
            found.setdefault(name, set()).update(set(sample.labels) - {"le"})
    assert listed == found
