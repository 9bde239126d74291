# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "owner-page"."""

from __future__ import annotations

import argparse
from typing import Any

import sharelib.routes
from servicelib import lifecycle
from sharelib.library import Library
from sharelib.service import serve
from tornado.web import Application

from ownerlib import page_files
from ownerlib.answers import NothingHere
from ownerlib.host import Host
from ownerlib.session_answers import SessionAnswer
from ownerlib.state_answers import StateAnswer

API = "/api/v1"


def routes(host: Host) -> list[tuple[Any, ...]]:
    """Returns the requests of the interface; openapi.yaml describes each."""
    answers = [
        ("/session", SessionAnswer),
        ("/state", StateAnswer),
    ]
    return [(API + path, answer, {"host": host}) for path, answer in answers]


def application(host: Host, library: Library) -> Application:
    return Application(
        [*routes(host), *page_files.routes(), *sharelib.routes.routes(library)],
        default_handler_class=NothingHere,
        default_handler_args={"host": host},
        log_function=lambda _: None,  # requests contain secrets
    )


async def _serve(address: str) -> None:
    library = Library()
    await serve(application(Host(), library), library.web_port(), address)


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="owner-page", description="Shows the owner of the cameras what the library knows.")
    parser.add_argument("--address", metavar="IP", default="127.0.0.1", help="address to serve (default: 127.0.0.1)")
    options = parser.parse_args(arguments)
    return lifecycle.run(_serve(options.address))
