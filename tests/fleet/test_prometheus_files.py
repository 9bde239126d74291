# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The files for Prometheus and for the dashboards of it: they can be used as they are."""

from __future__ import annotations

import asyncio
import json
import re
import subprocess
import urllib.request
from itertools import combinations
from pathlib import Path
from typing import Any

import pytest
import yaml
from conftest import PATIENCE, REPOSITORY, VERSIONS, Certificates, free_port, made_up
from fleetlib import metrics, metrics_page
from fleetlib.settings import Metrics, server_context
from jsonschema import Draft202012Validator
from servicelib import counts

FILES = REPOSITORY / "examples/prometheus"
RULES_TEST = Path(__file__).resolve().parent / "alerts_test.yml"
BOX = {"type": "object", "required": ["x", "y", "w", "h"], "additionalProperties": {"type": "integer", "minimum": 0}}
SOURCE = {"const": {"type": "prometheus", "uid": "${datasource}"}}
DASHBOARD = {
    "type": "object",
    "required": ["title", "uid", "schemaVersion", "panels", "templating", "time"],
    "properties": {
        "uid": {"type": "string", "pattern": "^[a-zA-Z0-9_-]{1,40}$"},
        "schemaVersion": {"type": "integer", "minimum": 30},
        "panels": {"type": "array", "minItems": 1, "items": {
            "type": "object",
            "required": ["id", "type", "title", "gridPos", "datasource", "targets", "fieldConfig", "options"],
            "properties": {
                "type": {"enum": ["stat", "table", "timeseries"]},
                "gridPos": BOX,
                "datasource": SOURCE,
                "targets": {"type": "array", "minItems": 1, "items": {
                    "type": "object",
                    "required": ["refId", "expr", "datasource"],
                    "properties": {"refId": {"pattern": "^[A-Z]$"}, "expr": {"type": "string"}, "datasource": SOURCE},
                }},
            },
        }},
        "templating": {"properties": {"list": {"items": {
            "required": ["name", "type"], "properties": {"type": {"enum": ["datasource", "query"]}}}}}},
    },
}  # fmt: skip


def dashboard() -> Any:
    return json.loads((FILES / "dashboard.json").read_text())


@pytest.mark.parametrize("words", [
    ("check", "config", f"{FILES}/prometheus.yml"),
    ("check", "rules", "--lint=all", "--lint-fatal", f"{FILES}/alerts.yml"),
    ("test", "rules", f"{RULES_TEST}"),
])  # fmt: skip
def test_promtool_finds_nothing_wrong(words: tuple[str, ...]) -> None:
    done = subprocess.run(["promtool", *words], capture_output=True, text=True, check=False)
    assert done.returncode == 0, done.stdout + done.stderr


def test_every_rule_fires_in_a_test_and_keeps_quiet_in_another_one() -> None:
    rules = {rule["alert"] for group in yaml.safe_load((FILES / "alerts.yml").read_text())["groups"] for rule in group["rules"]}
    tests = [rule for case in yaml.safe_load(RULES_TEST.read_text())["tests"] for rule in case["alert_rule_test"]]
    assert {rule["alertname"] for rule in tests if rule["exp_alerts"]} == rules
    quiet = {rule["alertname"] for rule in tests if not rule["exp_alerts"]}
    assert quiet >= rules - {"UsbCameraHostUnreadable"}  # whose test has another host, which is not away


def test_with_the_lines_for_other_machines_it_scrapes_with_tls_and_a_password(
    tmp_path: Path, ours: Certificates, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setattr(counts, "FOLDER", tmp_path / "counts")
    served = Metrics("127.0.0.1", free_port(), ours.server, ours.server_key, "prometheus", "secret")
    text = (FILES / "prometheus.yml").read_text()
    first = text.index("#  - job_name")
    given = yaml.safe_load(text[:first] + re.sub("^#", "", text[first:], flags=re.MULTILINE))
    others = given["scrape_configs"][1]
    assert {Path(others["tls_config"]["ca_file"]).parent, Path(others["basic_auth"]["password_file"]).parent} == {Path("/etc/prometheus")}
    (tmp_path / "password").write_text("secret")
    others["tls_config"]["ca_file"], others["basic_auth"]["password_file"] = ours.ca, f"{tmp_path}/password"
    others["static_configs"] = [{"targets": [f"127.0.0.1:{served.port}"]}]
    given |= {"scrape_configs": [others], "global": {"scrape_interval": "1s"}, "rule_files": []}
    (tmp_path / "prometheus.yml").write_text(yaml.safe_dump(given))
    at = f"127.0.0.1:{free_port()}"

    def is_scraped() -> bool:
        try:
            with urllib.request.urlopen(f"http://{at}/api/v1/query?query=usbdev_up", timeout=PATIENCE) as answer:
                return [found["value"][1] for found in json.load(answer)["data"]["result"]] == ["1"]
        except OSError:  # it does not listen yet
            return False

    async def scenario() -> None:
        host = metrics.Host(VERSIONS)
        host.note(made_up())
        metrics_page.listen(served, host, server_context(served))
        while not await asyncio.to_thread(is_scraped):
            await asyncio.sleep(0.1)

    words = ("--config.file", f"{tmp_path}/prometheus.yml", "--storage.tsdb.path", f"{tmp_path}/data", "--web.listen-address", at)
    with subprocess.Popen(["prometheus", *words], stderr=subprocess.DEVNULL) as prometheus:
        try:
            asyncio.run(asyncio.wait_for(scenario(), 60))
        finally:
            prometheus.terminate()


def test_the_dashboard_has_what_a_dashboard_needs() -> None:
    Draft202012Validator.check_schema(DASHBOARD)
    Draft202012Validator(DASHBOARD).validate(dashboard())


def test_each_panel_has_a_number_and_a_place_of_its_own() -> None:
    panels = dashboard()["panels"]
    assert len({panel["id"] for panel in panels}) == len({panel["title"] for panel in panels}) == len(panels)
    places = [panel["gridPos"] for panel in panels]
    assert all(place["x"] + place["w"] <= 24 for place in places)
    for one, other in combinations(places, 2):
        beside = one["x"] + one["w"] <= other["x"] or other["x"] + other["w"] <= one["x"]
        assert beside or one["y"] + one["h"] <= other["y"] or other["y"] + other["h"] <= one["y"], (one, other)


def test_every_panel_shows_the_chosen_hosts_only() -> None:
    for panel in dashboard()["panels"]:
        for target in panel["targets"]:
            names = re.findall(r"\b(?:usbdev_\w+|up)(\{[^}]*\})?", target["expr"])
            assert names and all('job=~"$job",instance=~"$instance"' in given for given in names), target["expr"]


def test_only_metrics_that_there_are_are_used() -> None:
    section = (REPOSITORY / "docs/fleet.md").read_text().partition("\n## Prometheus\n")[2].partition("\n## ")[0]
    there = set(re.findall(r"^\| `(usbdev_\w+)` \|", section, re.MULTILINE))
    used = re.findall(r"\busbdev_\w+", "".join(file.read_text() for file in (FILES / "alerts.yml", FILES / "dashboard.json")))
    assert {re.sub("_bucket$", "", name) for name in used} <= there and len(there) > 10
