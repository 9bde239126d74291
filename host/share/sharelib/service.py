# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "share-page"."""

from __future__ import annotations

import argparse
import ipaddress
import sys

from servicelib import lifecycle
from servicelib.http import Server
from tornado.web import Application

from sharelib.answers import NothingThere
from sharelib.feed import Feeds
from sharelib.library import Library
from sharelib.routes import routes

# A connection is closed when the head of a request, with the wait for it, or its body takes longer.
PATIENCE_SECONDS = 10


def application(library: Library) -> Application:
    return Application(
        routes(library, Feeds()),
        default_handler_class=NothingThere,
        log_function=lambda _: None,  # requests contain the secrets that open a stream
        compress_response=True,
    )


def server_of(pages: Application, is_behind_proxy: bool) -> Server:
    return Server(
        pages,
        idle_connection_timeout=PATIENCE_SECONDS,
        body_timeout=PATIENCE_SECONDS,
        max_body_size=sys.maxsize,  # a body that is too long gets an answer
        xheaders=is_behind_proxy,  # who asks is whom X-Real-IP names
    )


async def serve(pages: Application, port: int, options: argparse.Namespace) -> None:
    """Serves the pages until a signal ends that."""
    server = server_of(pages, options.behind_proxy)
    server.listen(port, options.address)
    await lifecycle.serve_until_stopped(f"listening on {options.address}:{port}")
    server.stop()


async def _serve(options: argparse.Namespace) -> None:
    library = Library()
    await serve(application(library), library.web_port(), options)


def parse(parser: argparse.ArgumentParser, arguments: list[str]) -> argparse.Namespace:
    parser.add_argument("--address", metavar="IP", default="127.0.0.1", help="address to serve (default: 127.0.0.1)")
    parser.add_argument("--behind-proxy", action="store_true",
                        help="visitors come through a web server on this machine, which names their address in X-Real-IP")
    options = parser.parse_args(arguments)
    # Everybody who reaches the page can send the header.
    if options.behind_proxy and not is_loopback(options.address):
        parser.error("--behind-proxy needs an address that only this machine reaches")
    return options


def is_loopback(address: str) -> bool:
    try:
        return ipaddress.ip_address(address).is_loopback
    except ValueError:
        return False


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="share-page", description="Shows the streams that share links open.")
    return lifecycle.run(_serve(parse(parser, arguments)))
