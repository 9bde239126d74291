# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The beginning of the links that owners give away."""

from __future__ import annotations

import socket
import sys
from pathlib import Path

import pytest

HOST = Path(__file__).resolve().parents[2] / "host"
sys.path[:0] = [str(HOST / folder) for folder in ("owner", "share", "services")]
from ownerlib import network


@pytest.mark.parametrize("served", ["127.0.0.1", "127.0.0.2", "::1"])
def test_pages_that_are_served_to_this_machine_have_no_address_for_others(served: str) -> None:
    assert (network.is_open(served), network.origin(served, 8080)) == (False, None)


@pytest.mark.parametrize(
    ("served", "origin"), [("192.168.1.5", "http://192.168.1.5:8080"), ("fd00::5", "http://[fd00::5]:8080")]
)
def test_pages_that_are_served_at_one_address_have_that(served: str, origin: str) -> None:
    assert network.origin(served, 8080) == origin


OWN = {"0.0.0.0": ("192.168.1.5", "http://192.168.1.5:8080"), "::": ("fd00::5", "http://[fd00::5]:8080")}


@pytest.mark.parametrize("served", network.EVERYWHERE)
def test_pages_that_are_served_everywhere_have_the_address_in_the_network(monkeypatch: pytest.MonkeyPatch, served: str) -> None:
    own, origin = OWN[served]
    monkeypatch.setattr(network, "address", {served: own}.get)
    assert network.origin(served, 8080) == origin


@pytest.mark.parametrize("served", network.EVERYWHERE)
def test_pages_that_are_served_everywhere_on_a_machine_in_no_network_have_no_address(
    monkeypatch: pytest.MonkeyPatch, served: str
) -> None:
    monkeypatch.setattr(network, "address", lambda _: None)
    assert (network.is_open(served), network.origin(served, 8080)) == (True, None)


@pytest.mark.parametrize(("served", "family"), [("0.0.0.0", socket.AF_INET), ("192.168.1.5", socket.AF_INET), ("::", socket.AF_INET6)])
def test_the_address_is_of_the_kind_that_is_served(
    monkeypatch: pytest.MonkeyPatch, served: str, family: socket.AddressFamily
) -> None:
    """A server of one kind answers at no address of the other."""
    asked = []

    def refuse(kind: socket.AddressFamily, _: int) -> socket.socket:
        asked.append(kind)
        raise OSError

    monkeypatch.setattr(socket, "socket", refuse)
    assert (network.address(served), asked) == (None, [family])
