# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Whom the page takes for its visitor: whoever connects, or whom a web server on the same machine names."""

from __future__ import annotations

import argparse
import asyncio
import sys
from pathlib import Path

import pytest
from tornado.httpclient import AsyncHTTPClient, HTTPRequest
from tornado.netutil import bind_sockets
from tornado.web import Application, RequestHandler

sys.path[:0] = [str(Path(__file__).resolve().parents[2] / "host" / folder) for folder in ("share", "services")]

from sharelib.service import parse, server_of

NAMED = {"X-Real-IP": "192.0.2.7"}


class Visitor(RequestHandler):
    def get(self) -> None:
        self.write(self.request.remote_ip or "")


async def visitor(is_behind_proxy: bool, **headers: str) -> str:
    server = server_of(Application([("/", Visitor)]), is_behind_proxy)
    sockets = bind_sockets(0, "127.0.0.1")
    server.add_sockets(sockets)
    address = f"http://127.0.0.1:{sockets[0].getsockname()[1]}/"
    try:
        return (await AsyncHTTPClient().fetch(HTTPRequest(address, headers=headers))).body.decode()
    finally:
        server.stop()


def options(*arguments: str) -> argparse.Namespace:
    return parse(argparse.ArgumentParser(), list(arguments))


def test_nobody_can_name_another_visitor() -> None:
    assert asyncio.run(visitor(options().behind_proxy, **NAMED)) == "127.0.0.1"


def test_a_web_server_on_the_machine_names_the_visitor() -> None:
    assert asyncio.run(visitor(options("--behind-proxy").behind_proxy, **NAMED)) == "192.0.2.7"


def test_the_web_server_decides_whatever_the_visitor_claims() -> None:
    claimed = {"X-Forwarded-For": "192.0.2.99", **NAMED}
    assert asyncio.run(visitor(True, **claimed)) == "192.0.2.7"


@pytest.mark.parametrize("address", ["0.0.0.0", "192.0.2.1", "::", "somewhere"])
def test_no_visitor_is_named_where_other_machines_reach_the_page(address: str) -> None:
    with pytest.raises(SystemExit):
        options("--behind-proxy", "--address", address)
