"""The command "share-page"."""

from __future__ import annotations

import argparse
import asyncio
import ctypes
import json
from pathlib import Path

from servicelib import lifecycle
from tornado.httpserver import HTTPServer
from tornado.web import Application, HTTPError, RequestHandler, StaticFileHandler

from sharelib import streams, verdict
from sharelib.library import Library

HERE = Path(__file__).resolve().parent.parent
PAGE = HERE / "page"
PLAYER = HERE / "node_modules/hls.js/dist"
DEFAULT_PORT = 8080
LONGEST_QUESTION = 4096
# The page plays what the player hands it as a blob, and loads nothing from elsewhere. Its address is a secret.
HEADERS = {
    "Content-Security-Policy": "default-src 'self'; media-src 'self' blob:; worker-src 'self' blob:",
    "Referrer-Policy": "no-referrer",
    "X-Content-Type-Options": "nosniff",
}


class Page(RequestHandler):
    """The same page for every link; its script reads the link and asks."""

    def get(self) -> None:
        for name, value in HEADERS.items():
            self.set_header(name, value)
        self.write((PAGE / "share.html").read_bytes())


class Question(RequestHandler):
    """Answers whether the link opens: a JSON object with ssid, token and password."""

    def initialize(self, library: Library) -> None:
        self.library = library

    async def post(self) -> None:
        texts = self._texts("ssid", "token", "password")
        # The library waits for whoever else has the configuration; other viewers are served meanwhile.
        answer = await asyncio.to_thread(verdict.judge, self.library, *texts)
        self.set_header("Cache-Control", "no-store")
        self.write(answer)

    def _texts(self, *names: str) -> list[str]:
        try:
            question = json.loads(self.request.body)
            return [_text(question[name]) for name in names]
        except (ValueError, TypeError, KeyError) as problem:
            raise HTTPError(400) from problem


def _text(value: object) -> str:
    """Raises ValueError for what is no text that can be sent on."""
    if not isinstance(value, str) or "\0" in value:
        raise ValueError
    value.encode()
    return value


def application(library: Library) -> Application:
    return Application(
        [
            (r"/share", Page),
            (r"/share/open", Question, {"library": library}),
            (r"/share/(hls\.min\.js)", StaticFileHandler, {"path": PLAYER}),
            (r"/share/(share\.(?:css|js))", StaticFileHandler, {"path": PAGE}),
            (streams.ROUTE, streams.StreamFile, {"path": streams.APPLICATION}),
        ],
        log_function=lambda _: None,  # requests carry what opens a stream
    )


async def serve(address: str) -> None:
    library = Library(ctypes.CDLL("libusbdevlib.so"))
    port = library.web_port() or DEFAULT_PORT
    server = HTTPServer(application(library), max_body_size=LONGEST_QUESTION)
    server.listen(port, address)
    await lifecycle.until_stopped(f"{address}:{port}")
    server.stop()


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="share-page", description="Shows the streams behind share links.")
    parser.add_argument("--address", metavar="IP", default="127.0.0.1", help="address to serve (default: 127.0.0.1)")
    options = parser.parse_args(arguments)
    if not (PLAYER / "hls.min.js").exists():
        lifecycle.say("the player is missing, so that browsers cannot show streams: run host/share/install-player")
    return lifecycle.run(serve(options.address))
