# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What all answers have in common: their headers, and the limit of a request's body."""

from __future__ import annotations

import os
import traceback
from types import TracebackType

from servicelib import lifecycle
from tornado.web import HTTPError, RequestHandler, StaticFileHandler, stream_request_body

LONGEST_BODY = 4096
# The page plays what its player gives it as a blob, and loads nothing from other sites. Its address is a secret.
POLICY = ("default-src 'self'", "media-src 'self' blob:", "frame-ancestors 'none'")
HEADERS = {
    "Content-Security-Policy": "; ".join(POLICY),
    "Referrer-Policy": "no-referrer",
    "X-Content-Type-Options": "nosniff",
}


@stream_request_body
class Answer(RequestHandler):
    def set_default_headers(self) -> None:
        for name, value in HEADERS.items():
            self.set_header(name, value)

    def prepare(self) -> None:
        self.body = b""

    def data_received(self, chunk: bytes) -> None:
        """Counts the bytes; answers at once when they are too many."""
        self.body += chunk
        if len(self.body) > LONGEST_BODY:
            self.send_error(413)

    def log_exception(
        self, kind: type[BaseException] | None, problem: BaseException | None, trace: TracebackType | None
    ) -> None:
        """Prints what failed and where, but neither the request nor the problem's text: they contain secrets."""
        if isinstance(problem, HTTPError) or kind is None:
            return
        place = traceback.extract_tb(trace)[-1]
        lifecycle.say(f"an answer failed: {kind.__name__} in {os.path.basename(place.filename)}:{place.lineno}")


class FileAnswer(Answer, StaticFileHandler):
    def should_return_304(self) -> bool:
        """Returns False also if the visitor's date does not exist, such as the 32nd of a month; tornado raises then."""
        try:
            return super().should_return_304()
        except (ValueError, OverflowError):
            return False


class PageFile(FileAnswer):
    """A file of the page; browsers load it again only when it has changed."""

    def set_extra_headers(self, path: str) -> None:
        self.set_header("Cache-Control", "no-cache")


class NothingThere(Answer):
    def prepare(self) -> None:
        raise HTTPError(404)
