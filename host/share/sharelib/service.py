# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "share-page"."""

from __future__ import annotations

import argparse
import sys

from servicelib import lifecycle
from servicelib.http import Server
from tornado.web import Application

from sharelib.answers import NothingThere
from sharelib.feed import Feeds
from sharelib.library import Library
from sharelib.routes import routes

DEFAULT_PORT = 8080
# A connection is closed when the head of a request, with the wait for it, or its body takes longer.
PATIENCE_SECONDS = 10


def application(library: Library) -> Application:
    return Application(
        routes(library, Feeds()),
        default_handler_class=NothingThere,
        log_function=lambda _: None,  # requests contain the secrets that open a stream
        compress_response=True,
    )


async def serve(pages: Application, port: int | None, address: str) -> None:
    """Serves the pages at the port of the host's web pages until a signal ends that."""
    port = port or DEFAULT_PORT
    server = Server(
        pages,
        idle_connection_timeout=PATIENCE_SECONDS,
        body_timeout=PATIENCE_SECONDS,
        max_body_size=sys.maxsize,  # a body that is too long gets an answer
    )
    server.listen(port, address)
    await lifecycle.serve_until_stopped(f"listening on {address}:{port}")
    server.stop()


async def _serve(address: str) -> None:
    library = Library()
    await serve(application(library), library.web_port(), address)


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="share-page", description="Shows the streams that share links open.")
    parser.add_argument("--address", metavar="IP", default="127.0.0.1", help="address to serve (default: 127.0.0.1)")
    options = parser.parse_args(arguments)
    return lifecycle.run(_serve(options.address))
