# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The beginning of the links that owners give away."""

from __future__ import annotations

import sys
from pathlib import Path

import pytest

HOST = Path(__file__).resolve().parents[2] / "host"
sys.path[:0] = [str(HOST / folder) for folder in ("owner", "share", "services")]
from ownerlib import network


@pytest.mark.parametrize("served", ["127.0.0.1", "127.0.0.2", "::1"])
def test_pages_that_are_served_to_this_machine_have_no_address_for_others(served: str) -> None:
    assert network.origin(served, 8080) is None


@pytest.mark.parametrize(
    ("served", "origin"), [("192.168.1.5", "http://192.168.1.5:8080"), ("fd00::5", "http://[fd00::5]:8080")]
)
def test_pages_that_are_served_at_one_address_have_that(served: str, origin: str) -> None:
    assert network.origin(served, 8080) == origin


@pytest.mark.parametrize("served", network.EVERYWHERE)
@pytest.mark.parametrize(("address", "origin"), [("192.168.1.5", "http://192.168.1.5:8080"), (None, None)])
def test_pages_that_are_served_everywhere_have_the_address_in_the_network(
    monkeypatch: pytest.MonkeyPatch, served: str, address: str | None, origin: str | None
) -> None:
    monkeypatch.setattr(network, "address", lambda: address)
    assert network.origin(served, 8080) == origin
