# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Somebody who opens the pages in a browser of the guest."""

from __future__ import annotations

import json
import time
from dataclasses import dataclass
from typing import Any

from ground.channel import PATIENCE
from ground.guest import Guest

PAUSE = 1.0
# The certificate of a web server is checked against the one that is stored there.
TRUSTED = "/etc/nginx/cameras.pem"
ASK = f"""
import json, os, ssl, sys
from urllib.error import HTTPError
from urllib.request import Request, urlopen
method, address, body, headers = json.loads(sys.argv[1])
trusted = ssl.create_default_context(cafile="{TRUSTED}") if address.startswith("https") else None
try:
    answer = urlopen(Request(address, body and body.encode(), headers, method=method), timeout=120, context=trusted)
except HTTPError as refusal:
    answer = refusal
print(json.dumps([answer.status, dict(answer.headers), answer.read().decode("latin-1")]))
"""


@dataclass(frozen=True)
class Answer:
    status: int
    headers: dict[str, str]
    content: bytes

    @property
    def object(self) -> dict[str, Any]:
        assert self.status == 200, self
        return dict(json.loads(self.content))


class Visitor:
    def __init__(self, guest: Guest, origin: str = "http://127.0.0.1:8080") -> None:
        self._guest = guest
        self._origin = origin
        self._headers: dict[str, str] = {}

    def ask(self, method: str, path: str, **body: Any) -> Answer:
        headers = {**self._headers, **({"Content-Type": "application/json"} if body else {})}
        question = json.dumps([method, self._origin + path, json.dumps(body) if body else None, headers])
        status, seen, content = json.loads(self._guest.run("python3", "-c", ASK, question))
        return Answer(status, seen, content.encode("latin-1"))

    def await_content(self, path: str) -> bytes:
        patience = time.monotonic() + PATIENCE
        while (answer := self.ask("GET", path)).status != 200:
            assert time.monotonic() < patience, answer
            time.sleep(PAUSE)
        return answer.content

    def sign_in(self, user: str, password: str) -> str:
        """Returns the attributes of the session's cookie."""
        answer = self.ask("POST", "/api/v1/session", user=user, password=password)
        token = answer.object["csrf"]
        cookie, _, attributes = answer.headers["Set-Cookie"].partition("; ")
        self._headers = {"Cookie": cookie, "X-CSRF-Token": token}
        return attributes
