# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A server that answers the owner's pages with made-up data, for the states that a real host is rarely in."""

from __future__ import annotations

import asyncio
import copy
import json
import subprocess
import sys
import threading
import time
from contextlib import suppress
from pathlib import Path
from typing import Any

from made_up import CHARTS, EVENTS, FORMATS, HOST, STATE
from tornado.httpserver import HTTPServer
from tornado.netutil import bind_sockets
from tornado.web import Application, RequestHandler, StaticFileHandler
from tornado.websocket import WebSocketClosedError, WebSocketHandler

ROOT = Path(__file__).resolve().parents[3] / "host"
sys.path[:0] = [str(ROOT / folder) for folder in ("owner", "share", "services")]
import sharelib.routes
from ownerlib import page_files
from sharelib import streams
from sharelib.library import Link

PASSWORD = "secret"
MOMENT = 0.02  # seconds, as all of these
SOON = 0.2  # until the next sign of life, which a page hopes for two and a half times as long
NEVER = 3600
PAINT = "ffmpeg -v error -f lavfi -i smptehdbars=size=640x360:rate=5 {} {}"
PICTURE = "-frames:v 1"
FILM = "-t 60 -c:v libx264 -preset ultrafast -g 25 -pix_fmt yuv420p -movflags empty_moov+default_base_moof+frag_keyframe"
FILM_TYPE = 'video/mp4; codecs="avc1.42c01e"'


SHARED = "{:032x}".format


class Links:
    """What the library says of share links: the stream of a token of ones is open, that of another has a password."""

    def __init__(self, standin: StandIn) -> None:
        self.standin = standin

    def open(self, ssid: str, token: str) -> tuple[int, Link]:
        time.sleep(self.standin.slow)
        is_open = token == SHARED(1)
        return 0, Link("Front door", SHARED(1), None if is_open else b"secret")


class StandIn:
    """What the server answers; a test changes it."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder
        for what, file in ((PICTURE, "picture.jpg"), (FILM, "film.mp4")):
            subprocess.run(PAINT.format(what, folder / file).split(), check=True)
        streams.APPLICATION = folder
        (folder / SHARED(1)).symlink_to(folder)
        (folder / streams.PLAYLIST).touch()
        self._viewers: set[Live] = set()
        self.reset()
        self._loop = asyncio.new_event_loop()
        ready = threading.Event()
        self._thread = threading.Thread(target=self._serve, args=(ready,), daemon=True)
        self._thread.start()
        ready.wait(20)

    def reset(self) -> None:
        self.state: dict[str, Any] = copy.deepcopy(STATE)
        self.shares = {0: {"on": True, "password": True, "page": "/share?ssid=39202766&token=" + 32 * "a"}}
        self.refusal: dict[str, Any] | None = None  # of every change, or of those at a path
        self.refused_path = ""
        self.has_picture = self.has_stream = True
        self.away = self.signed_in = self.missing = False
        self.slow = 0.0  # seconds that every answer takes
        self.slow_change = 0.0  # seconds that a change takes
        self.slow_film = 0.0  # seconds until the connection for a stream is there
        self.films = 0  # how many were asked for
        self.hangs = False
        self.rate_taken: float = 24  # whatever is asked for
        self.differences: list[dict[str, Any]] | None = []  # of a move; none if the host does not know them
        self.events = list(EVENTS)
        self.asked: list[tuple[str, str, Any]] = []

    def _serve(self, ready: threading.Event) -> None:
        asyncio.set_event_loop(self._loop)
        server = HTTPServer(self._application())
        sockets = bind_sockets(0, "127.0.0.1")
        server.add_sockets(sockets)
        self.port = sockets[0].getsockname()[1]
        self._loop.call_soon(ready.set)
        self._loop.run_forever()

    def _application(self) -> Application:
        """The files of the pages, and the share page, are the real server's."""
        return Application([
            (r"/api/v1/live", Live, {"standin": self}),
            (r"/api/v1/profiles/\d/live", Film, {"standin": self}),
            (rf"/{SHARED(1)}/live", Film, {"standin": self}),
            (r"/api/v1/profiles/\d/(picture.jpg)", Picture, {"path": self.folder, "standin": self}),
            (r"/api/v1/profiles/\d/(playlist.m3u8)", File, {"path": self.folder, "standin": self}),
            (r"/api/v1(/.*)", Api, {"standin": self}),
            *page_files.routes(),
            *sharelib.routes.routes(Links(self), {}),
        ], log_function=lambda _: None, compress_response=True)

    def tell(self, section: str, value: object = None) -> None:
        """Sends a message to all pages."""
        self._loop.call_soon_threadsafe(lambda: [one.tell(section, value) for one in self._viewers])

    async def take_time(self) -> None:
        """What is asked of a host that hangs is answered when it goes on."""
        await asyncio.sleep(self.slow)
        while self.hangs:
            await asyncio.sleep(MOMENT)

    def hang(self) -> None:
        """The host keeps all connections, and says and answers nothing, which the pages will notice soon."""
        self.hangs = True
        self.tell("alive", SOON)

    def leave(self) -> None:
        """The host goes: it closes all connections, and answers nothing."""
        self.away = True
        self._loop.call_soon_threadsafe(lambda: [one.close() for one in list(self._viewers)])

    def end(self) -> None:
        self._loop.call_soon_threadsafe(self._loop.stop)
        self._thread.join(20)


class Live(WebSocketHandler):
    def initialize(self, standin: StandIn) -> None:
        self.standin = standin

    async def prepare(self) -> None:
        await self.standin.take_time()
        if self.standin.away or not self.standin.signed_in:
            self.send_error(503)

    def open(self) -> None:
        self.standin._viewers.add(self)
        if self.standin.state:
            self.tell("state", self.standin.state)
        self.tell("alive", NEVER)

    def on_close(self) -> None:
        self.standin._viewers.discard(self)

    def tell(self, section: str, value: object) -> None:
        """Says it to a page, unless that was left just now."""
        with suppress(WebSocketClosedError):
            self.write_message(json.dumps({"section": section, "value": value}))


class Film(WebSocketHandler):
    """The stream of every profile."""

    def initialize(self, standin: StandIn) -> None:
        self.standin = standin

    async def prepare(self) -> None:
        self.standin.films += 1
        await asyncio.sleep(self.standin.slow_film)
        await self.standin.take_time()

    def open(self, *_: str) -> None:
        self.write_message(FILM_TYPE)
        self.write_message((self.standin.folder / "film.mp4").read_bytes(), binary=True)


class File(StaticFileHandler):
    def initialize(self, path: Path, standin: StandIn) -> None:  # type: ignore[override]
        super().initialize(str(path))
        self.standin = standin

    async def prepare(self) -> None:
        await self.standin.take_time()
        if not self.standin.has_stream:
            self.send_error(503)


class Picture(File):
    """The latest picture, with nothing in it before there is one."""

    async def get(self, path: str, include_body: bool = True) -> None:
        if self.standin.has_picture:
            return await super().get(path, include_body)
        self.set_status(204)


class Api(RequestHandler):
    def initialize(self, standin: StandIn) -> None:
        self.standin = standin

    async def prepare(self) -> None:
        await self.standin.take_time()
        path = self.request.path
        if self.standin.away:
            self.refuse(503, "host_away")
        elif not self.standin.signed_in and not path.endswith("/session"):
            self.refuse(401, "signed_out")

    def refuse(self, status: int, name: str, **values: object) -> None:
        self.set_status(status)
        self.finish({"error": name, "text": f"{name}.", "cure": None, **values})

    def get(self, path: str) -> None:
        if path == "/session" and not self.standin.signed_in:
            return self.refuse(401, "signed_out")
        answer = self._answer(path)
        return self.refuse(404, "not_found") if answer is None or (self.standin.missing and path != "/session") else self.finish(answer)

    def _answer(self, path: str) -> Any:
        if path.startswith("/channels/"):
            return FORMATS
        if path.endswith("/move"):
            self._note(path)
            return None if self.standin.differences is None else {"differences": self.standin.differences}
        if path.endswith("/share"):
            return self.standin.shares.get(int(path.split("/")[2]), {"on": False, "password": False, "page": None})
        return {"/session": {"user": "ann", "csrf": "c"}, "/host": HOST, "/charts": CHARTS, "/report": "the report", "/events.csv": self._table(),
                "/events": {"events": self._events()}}.get(path)  # fmt: skip

    def _table(self) -> str:
        self._note("/events.csv")
        return "a table"

    def _note(self, path: str) -> None:
        """Notes what was asked, if it is for this path."""
        if self.request.path.endswith(path):
            self.standin.asked.append(("GET", path, {name: self.get_argument(name) for name in self.request.arguments}))

    def _events(self) -> list[dict[str, Any]]:
        self._note("/events")
        search, severity = self.get_argument("search", ""), self.get_argument("severity", "")
        return [one for one in self.standin.events if search in str(one) and severity in ("", one["severity"])]

    async def change(self, path: str) -> None:
        await asyncio.sleep(self.standin.slow_change)
        body = json.loads(self.request.body or "null")
        self.standin.asked.append((self.request.method or "", path, body))
        if path == "/session":
            return self._sign(body)
        if self.standin.refusal and path.startswith(self.standin.refused_path):
            return self.refuse(409, "refused", **self.standin.refusal)
        taken = {**body, "rate": self.standin.rate_taken} if path.endswith("/stream") else {}
        return self.finish({"asked": body, "taken": taken, "not_stored": [], "differences": self.standin.differences or []})

    def _sign(self, body: dict[str, str] | None) -> None:
        if body and body["password"] != PASSWORD:
            return self.refuse(401, "wrong_password")
        self.standin.signed_in = body is not None
        return self.finish({"user": "ann", "csrf": "c"})

    post = put = patch = delete = change
