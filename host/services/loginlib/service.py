# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "login-service": the two pages of the host's web server that open, check and close sessions."""

from __future__ import annotations

import argparse
import asyncio
import subprocess
from pathlib import Path
from socket import socket

from servicelib import lifecycle
from servicelib.http import Server
from systemd import daemon
from tornado.web import Application, RequestHandler

from loginlib import answer, query, request_log, users
from loginlib.request_log import RequestLog, shown
from loginlib.sessions import Sessions
from loginlib.users import Users

ADDRESS = "127.0.0.1"
DEFAULT_PORT = 58080
# The library asks the host with the same command.
PORT_QUERY = ["/sbin/readcfg", "System", "InnerWebAccessPort", "-d", str(DEFAULT_PORT)]
NOBODY = "nobody can log in yet: 'login-users add NAME' adds a user, on a real machine 'sudo usbdev-login-users add NAME'"


class Page(RequestHandler):
    """A page whose answer is one of the service's; `facts` go to the request log."""

    def initialize(self, known_users: Users, sessions: Sessions) -> None:
        self.users = known_users
        self.sessions = sessions
        self.facts: dict[str, object] = {}
        self.set_header("Content-Type", "text/xml; charset=UTF-8")
        self.set_header("Cache-Control", "no-store")

    @property
    def query(self) -> query.Query:
        return query.parse(self.request.query.encode("latin-1"))

    def _outcome(self, passed: bool, **facts: object) -> None:
        self.facts = {**facts, "passed": passed}


class LoginPage(Page):
    """Opens a session for "user" and "pwd"; with "sid" instead, checks whether that session is open."""

    async def get(self) -> None:
        session = query.text(self.query, "sid")
        if session is not None:
            self._check(session)
        else:
            await self._log_in(query.text(self.query, "user"), query.password(self.query))

    def _check(self, session: str) -> None:
        is_open = self.sessions.use(session)
        self._outcome(is_open, request="check", session=shown(session))
        self.write(answer.passed() if is_open else answer.refused())

    async def _log_in(self, user: str | None, password: bytes | None) -> None:
        # The hash is slow so that guessing is slow; other requests are served meanwhile.
        if user is None or password is None or not await asyncio.to_thread(self.users.accepts, user, password):
            self._outcome(False, request="login", user=user)
            self.write(answer.refused())
            return
        session = self.sessions.open()
        self._outcome(True, request="login", user=user, session=shown(session))
        self.write(answer.logged_in(session))


class LogoutPage(Page):
    """Closes the session "sid"."""

    def get(self) -> None:
        session = query.text(self.query, "sid") or ""
        was_open = self.sessions.close(session)
        self._outcome(was_open, request="logout", session=shown(session))
        self.write(answer.passed() if was_open else answer.refused())


def application(known_users: Users, log: RequestLog) -> Application:
    shared = {"known_users": known_users, "sessions": Sessions()}

    def add_to_log(page: RequestHandler) -> None:
        request = page.request
        log.add(request.remote_ip or "", request.path, page.get_status(), getattr(page, "facts", {}))

    pages = {"/cgi-bin/authLogin.cgi": LoginPage, "/cgi-bin/authLogout.cgi": LogoutPage}
    return Application([(path, page, shared) for path, page in pages.items()], log_function=add_to_log)


def port() -> int:
    """Returns the TCP port of the web server in the host's settings."""
    try:
        return int(subprocess.run(PORT_QUERY, capture_output=True, text=True, check=True).stdout)
    except (OSError, subprocess.CalledProcessError, ValueError):
        return DEFAULT_PORT


def listen(server: Server) -> str:
    """Takes the socket of the service manager, which holds the port while no service runs, unless the host's settings have another
    port since; returns where it listens."""
    where = (ADDRESS, port())
    given = [socket(fileno=number) for number in daemon.listen_fds()]
    held = [it for it in given if it.getsockname() == where]
    for it in held:
        it.setblocking(False)
    server.add_sockets(held)
    if not held:
        server.listen(where[1], ADDRESS)
    return "{}:{}".format(*where)


async def serve(users_file: Path, log_file: Path) -> None:
    known_users = Users(users_file)
    server = Server(application(known_users, RequestLog(log_file)), idle_connection_timeout=30)
    where = listen(server)
    if not known_users.names():
        lifecycle.say(NOBODY)
    await lifecycle.serve_until_stopped(f"listening on {where}")
    server.stop()


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="login-service", description="The login pages of the host's web server.")
    parser.add_argument("--users", metavar="FILE", type=Path, default=users.DEFAULT_FILE, help="default: %(default)s")
    parser.add_argument("--log", metavar="FILE", type=Path, default=request_log.DEFAULT_FILE,
                        help="the log of requests; - for standard output (default: %(default)s)")
    options = parser.parse_args(arguments)
    return lifecycle.run(serve(options.users, options.log))
