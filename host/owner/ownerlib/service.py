# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "owner-page"."""

from __future__ import annotations

import argparse
import asyncio
from pathlib import Path
from typing import Any

import sharelib.routes
from servicelib import lifecycle
from servicelib.counts import counts
from sharelib.answers import LONGEST_BODY
from sharelib.library import Library
from sharelib.service import parse, serve
from tornado.web import Application

from ownerlib import (
    channel_answers,
    chart_answers,
    event_answers,
    host_answers,
    page_files,
    profile_answers,
    share_answers,
    view_answers,
)
from ownerlib.answers import NothingHere
from ownerlib.host import Host
from ownerlib.live_answers import LiveAnswer
from ownerlib.session_answers import SessionAnswer
from ownerlib.sessions import Sessions, stamp
from ownerlib.sessions_file import SessionsFile
from ownerlib.state_answers import StateAnswer

API = "/api/v1"
USERS = Path("/etc/config/login-users")  # of the login service
SESSIONS = Path("/etc/config/owner-sessions")
PING_SECONDS = 20  # a page that does not answer three of them has gone
CHANNEL = "([0-9])"
PROFILE = "([0-3])"


def routes(host: Host) -> list[Any]:
    """Returns the requests of the interface; openapi.yaml describes each."""
    answers = [
        ("/session", SessionAnswer),
        ("/state", StateAnswer),
        ("/live", LiveAnswer),
        (rf"/channels/{CHANNEL}", channel_answers.Channel),
        (rf"/channels/{CHANNEL}/formats", channel_answers.Formats),
        (rf"/channels/{CHANNEL}/assignment", channel_answers.Assignment),
        (rf"/channels/{CHANNEL}/profile", channel_answers.ChannelProfile),
        (rf"/channels/{CHANNEL}/switch", channel_answers.Switch),
        (rf"/profiles/{PROFILE}/name", profile_answers.Name),
        (rf"/profiles/{PROFILE}/move", profile_answers.Move),
        (rf"/profiles/{PROFILE}/stream", profile_answers.Stream),
        (rf"/profiles/{PROFILE}/share", share_answers.Share),
        (rf"/profiles/{PROFILE}/share/renewal", share_answers.Renewal),
        (rf"/profiles/{PROFILE}/picture\.jpg", view_answers.Picture),
        (rf"/profiles/{PROFILE}/live", view_answers.Live),
        (rf"/profiles/{PROFILE}/{view_answers.FILES}", view_answers.File),
        ("/events", event_answers.Events),
        (r"/events\.csv", event_answers.EventsFile),
        ("/charts", chart_answers.Charts),
        ("/host", host_answers.HostAnswer),
        ("/report", host_answers.Report),
    ]
    return [(API + path, answer, {"host": host}) for path, answer in answers]


def application(host: Host, library: Library) -> Application:
    return Application(
        [*routes(host), *page_files.routes(), *sharelib.routes.routes(library, host.guests.feeds)],
        default_handler_class=NothingHere,
        default_handler_args={"host": host},
        log_function=lambda _: None,  # requests contain secrets
        compress_response=True,
        websocket_ping_interval=PING_SECONDS,
        websocket_max_message_size=LONGEST_BODY,
    )


async def _serve(options: argparse.Namespace) -> None:
    counts.begin("pages")
    library = Library()
    port = library.web_port()
    sessions = Sessions(SessionsFile(options.sessions), lambda: stamp(options.users))
    host = Host(options.address, port, sessions)
    following = asyncio.create_task(host.follow())
    serving = asyncio.create_task(serve(application(host, library), port, options))
    await asyncio.wait((following, serving), return_when=asyncio.FIRST_COMPLETED)
    if following.done():
        following.result()  # which is the reason why it has failed; pages would show what was
    following.cancel()
    await asyncio.wait([following])
    await sessions.keep()
    serving.result()


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="owner-page", description="Shows the owner of the cameras what the library knows.")
    parser.add_argument("--sessions", metavar="FILE", type=Path, default=SESSIONS, help="who is signed in (default: %(default)s)")
    parser.add_argument("--users", metavar="FILE", type=Path, default=USERS,
                        help="what the login service changes with its users (default: %(default)s)")
    return lifecycle.run(_serve(parse(parser, arguments)))
