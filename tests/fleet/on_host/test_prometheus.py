# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A Prometheus beside a sandboxed host: each metric moves when what it counts happens. These tests run on a sandboxed host with
its services, of which they are the only users, one after the other."""

from __future__ import annotations

import json
import re
import signal
import subprocess
import sys
import urllib.parse
import urllib.request
from collections.abc import Callable, Iterator
from pathlib import Path
from socket import AF_INET, SOCK_DGRAM, socket
from typing import Any

import conftest
import pytest
import yaml
from conftest import REPOSITORY, free_port

sys.path.append(str(REPOSITORY / "tests/share/on_host"))
from host_service import Service

FILES = REPOSITORY / "examples/prometheus"
DAY = REPOSITORY / "tests/services/device_day.py"
SETTINGS = Path("/etc/usbdev-host/fleet.ini")
CONFIGURATION = Path("/etc/config/usbdev.conf")
ENCODER = "^(v4l2_read|HDpipe) 0 .*640x480"
CHOSEN = {"$__rate_interval": "1m", "$job": ".*", "$instance": ".*"}


def run(command: str) -> str:
    """Runs a command on the host; what it prints."""
    return subprocess.run(["sh", "-ec", command], check=True, stdout=subprocess.PIPE, text=True).stdout


def until(condition: Callable[[], object]) -> None:
    """Whatever happens on a busy machine, and is scraped after it."""
    conftest.until(condition, 90)


class Prometheus:
    """One with the configuration of the examples, which only looks more often."""

    def __init__(self, folder: Path) -> None:
        given = yaml.safe_load((FILES / "prometheus.yml").read_text())
        given["global"] = {"scrape_interval": "2s", "evaluation_interval": "2s"}  # a scrape may take as long
        (folder / "prometheus.yml").write_text(yaml.safe_dump(given))
        (folder / "alerts.yml").write_text((FILES / "alerts.yml").read_text())
        self._at = f"127.0.0.1:{free_port()}"
        with (folder / "prometheus.log").open("wb") as log:
            self._process = subprocess.Popen(
                ["prometheus", f"--config.file={folder}/prometheus.yml", f"--storage.tsdb.path={folder}/data",
                 f"--web.listen-address={self._at}"], stdout=log, stderr=log)  # fmt: skip
        until(lambda: self.value("up") == 1)

    def ask(self, path: str, **question: str) -> Any:
        with urllib.request.urlopen(f"http://{self._at}/api/v1/{path}?{urllib.parse.urlencode(question)}", timeout=20) as answer:
            return json.load(answer)["data"]

    def query(self, expression: str) -> list[Any]:
        found: list[Any] = self.ask("query", query=expression)["result"]
        return found

    def value(self, expression: str) -> float | None:
        try:
            found = self.query(f"sum({expression})")
        except OSError:  # it does not listen yet
            return None
        return float(found[0]["value"][1]) if found else None

    def end(self) -> None:
        self._process.terminate()
        self._process.wait()


@pytest.fixture(scope="module")
def manager(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Service]:
    started = Service("manager-service", tmp_path_factory.mktemp("manager"))
    started.start()
    yield started
    started.end()


@pytest.fixture(scope="module")
def service(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Service]:
    SETTINGS.parent.mkdir()
    SETTINGS.write_text("[metrics]\non = yes\n")
    started = Service("fleet-service", tmp_path_factory.mktemp("service"))
    started.start()
    yield started
    started.end()


@pytest.fixture(scope="module")
def prometheus(manager: Service, service: Service, tmp_path_factory: pytest.TempPathFactory) -> Iterator[Prometheus]:
    made = Prometheus(tmp_path_factory.mktemp("prometheus"))
    yield made
    made.end()


@pytest.fixture(scope="module")
def streaming(prometheus: Prometheus) -> Prometheus:
    run("sim plug usb2-camera 3-1; usbdevctl assign 3-1 0; usbdevctl stream set 0 --size 640x480")
    until(lambda: subprocess.run(["pgrep", "--full", ENCODER], stdout=subprocess.DEVNULL, check=False).returncode == 0)
    until(lambda: prometheus.value('usbdev_stream_up{channel="0"}') == 1)
    return prometheus


def grows(prometheus: Prometheus, expression: str, before: float | None) -> bool:
    now = prometheus.value(expression)
    return now is not None and now > (before or 0)


def test_every_metric_of_the_document_is_scraped(streaming: Prometheus) -> None:
    section = (REPOSITORY / "docs/fleet.md").read_text().partition("\n## Prometheus\n")[2].partition("\n## ")[0]
    names = re.findall(r"^\| `(usbdev_\w+)` \|", section, re.MULTILINE)
    there = set(streaming.ask("label/__name__/values"))
    assert {name if name in there else f"{name}_bucket" for name in names} <= there and len(names) > 10


def test_prometheus_reads_openmetrics_and_knows_the_types(streaming: Prometheus) -> None:
    types = {name: found[0]["type"] for name, found in streaming.ask("metadata").items()}
    assert (types["usbdev_channels"], types["usbdev_plug_events"], types["usbdev_command_duration_seconds"], types["usbdev"]) == (
        "gauge", "counter", "histogram", "info")


def test_a_camera_that_streams_is_wanted_up_and_has_bandwidth(streaming: Prometheus) -> None:
    until(lambda: streaming.value('usbdev_channels{state="plugged",reason="none"}') == 1)
    until(lambda: streaming.value("usbdev_channels") == 10)
    until(lambda: streaming.value("usbdev_stream_wanted") == 1)
    until(lambda: (streaming.value('usbdev_bus_reserved_ratio{bus="3"}') or 0) > 0)


def test_a_stream_whose_encoder_is_killed_has_failed_and_is_started_again(streaming: Prometheus) -> None:
    run(f"pkill -KILL --full '{ENCODER}'")
    until(lambda: streaming.value('usbdev_stream_failures_total{profile="0",cause="ended"}') == 1)
    until(lambda: streaming.value('usbdev_stream_restarts_total{profile="0"}') == 1)
    until(lambda: streaming.value("usbdev_stream_up") == 1)
    until(lambda: streaming.value("usbdev_stream_restarts_total") == 1)


def test_a_camera_that_is_away_is_a_reason_and_notifications_are_counted(streaming: Prometheus) -> None:
    before = streaming.value('max_over_time(usbdev_notifications_total{outcome="received"}[1m])')
    run("sim unplug 3-1")
    until(lambda: streaming.value('usbdev_channels{state="unplugged",reason="unplugged"}') == 1)
    until(lambda: streaming.value("usbdev_stream_up") == 0)
    until(lambda: streaming.value("usbdev_stream_wanted") == 1)
    until(lambda: grows(streaming, 'usbdev_notifications_total{outcome="received"}', before))
    run("sim plug usb2-camera 3-1")
    until(lambda: streaming.value("usbdev_stream_up") == 1)


def test_a_port_that_is_off_is_a_reason_and_its_stream_not_wanted(streaming: Prometheus) -> None:
    run("usbdevctl slot off 0")
    until(lambda: streaming.value('usbdev_channels{state="plugged",reason="switched_off"}') == 1)
    until(lambda: streaming.value("usbdev_stream_wanted") == 0)
    run("usbdevctl slot on 0")
    until(lambda: streaming.value("usbdev_stream_wanted") == 1)


def test_commands_calls_and_lock_waits_are_measured(streaming: Prometheus) -> None:
    for metric in ('command_duration_seconds_count{service="fleet",command="explain"}', "configuration_lock_wait_seconds_count",
                   'library_call_duration_seconds_count{service="streams",call="stream_info"}'):  # fmt: skip
        until(lambda: grows(streaming, f"usbdev_{metric}", 0))

    def long_waits() -> float | None:
        waits = "usbdev_configuration_lock_wait_seconds_bucket"
        return streaming.value(f'{waits}{{le="+Inf"}} - ignoring(le) {waits}{{le="0.1"}}')

    until(lambda: long_waits() is not None)
    before = long_waits()

    def is_seen_while_somebody_has_the_lock() -> bool:
        run(f"flock {CONFIGURATION} sleep 0.5")
        return (long_waits() or 0) > (before or 0)

    until(is_seen_while_somebody_has_the_lock)


def test_what_comes_and_goes_is_counted_by_the_device_manager(streaming: Prometheus) -> None:
    """Last of those with the camera."""
    run(f"sim unplug 3-1; usbdevctl forget 0; LD_PRELOAD=libumockdev-preload.so.0 /usr/bin/python3 -B {DAY} day")
    for device, action in ((device, action) for device in ("camera", "sound_card") for action in ("plugged", "removed")):
        until(lambda: grows(streaming, f'usbdev_plug_events_total{{device="{device}",action="{action}"}}', 0))
    until(lambda: streaming.value('usbdev_service_up{service="devices"}') == 0)  # the day is over


def test_notifications_that_the_manager_does_not_take_are_lost_and_others_refused(streaming: Prometheus, manager: Service) -> None:
    manager.send(signal.SIGSTOP)
    with socket(AF_INET, SOCK_DGRAM) as sender:
        for _ in range(5000):
            sender.sendto(b"x", ("127.0.0.1", 10171))
    until(lambda: grows(streaming, "usbdev_notifications_lost_total", 0))
    manager.send(signal.SIGCONT)
    until(lambda: grows(streaming, 'usbdev_notifications_total{outcome="refused"}', 0))


def test_a_service_that_is_killed_is_down_until_it_is_started_again(streaming: Prometheus, manager: Service) -> None:
    until(lambda: streaming.value('usbdev_service_up{service="streams"}') == 1)
    manager.send(signal.SIGKILL)
    manager.wait()
    until(lambda: streaming.value('usbdev_service_up{service="streams"}') == 0)
    manager.start()
    until(lambda: streaming.value('usbdev_service_up{service="streams"}') == 1)


def test_a_host_that_cannot_be_read_is_down_and_answers(streaming: Prometheus, service: Service) -> None:
    content = CONFIGURATION.read_bytes()
    CONFIGURATION.write_bytes(b"no configuration")
    until(lambda: streaming.value("usbdev_up") == 0)
    until(lambda: streaming.value("up") == 1 and streaming.value("usbdev_channels") is None)
    CONFIGURATION.write_bytes(content)
    until(lambda: streaming.value("usbdev_up") == 1)
    assert "Traceback" not in service.log.read_text()


def test_every_query_of_the_dashboard_finds_something(streaming: Prometheus) -> None:
    panels = json.loads((FILES / "dashboard.json").read_text())["panels"]
    may_be_empty = {"Channels that should stream and do not", "Why cameras do not stream"}
    for panel in panels:
        for target in panel["targets"]:
            expression = target["expr"]
            for variable, value in CHOSEN.items():
                expression = expression.replace(variable, value)
            until(lambda: streaming.query(expression) or panel["title"] in may_be_empty)


def test_all_rules_are_loaded_and_work(streaming: Prometheus) -> None:
    def rules() -> list[Any]:
        return [rule for group in streaming.ask("rules")["groups"] for rule in group["rules"]]

    until(lambda: all(rule["health"] == "ok" for rule in rules()))
    assert len(rules()) == len(re.findall("- alert:", (FILES / "alerts.yml").read_text()))
