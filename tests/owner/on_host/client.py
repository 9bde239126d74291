# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A page's requests to the owner's server. Every answer of the interface is checked against openapi.yaml."""

from __future__ import annotations

import json
import re
from dataclasses import dataclass
from functools import cache
from http.client import HTTPConnection, HTTPMessage
from pathlib import Path
from typing import Any
from urllib.parse import urlsplit

import yaml
from jsonschema import Draft202012Validator, RefResolver

HOST = Path(__file__).resolve().parents[3] / "host"
DESCRIPTION = HOST / "owner/api/openapi.yaml"
API = "/api/v1"
ORIGIN = "http://127.0.0.1:8080"
USER, PASSWORD = "ann", "correct horse"


@cache
def load(address: str) -> Any:
    """A part of the description, by its address."""
    return yaml.safe_load(Path(urlsplit(address).path).read_text(encoding="utf-8"))


def resolver(file: Path) -> RefResolver:
    """Follows the references in a file of the description."""
    return RefResolver(file.as_uri(), load(file.as_uri()), handlers={"file": load})


DOCUMENT: dict[str, Any] = load(DESCRIPTION.as_uri())


@dataclass(frozen=True)
class Answer:
    status: int
    headers: HTTPMessage
    content: bytes

    @property
    def json(self) -> Any:
        return json.loads(self.content)

    @property
    def error(self) -> str:
        return str(self.json["error"])


class Client:
    def __init__(self, address: str = "127.0.0.1") -> None:
        self._address = address
        self.cookie = ""
        self.csrf = ""

    def sign_in(self, user: str = USER, password: str = PASSWORD) -> Answer:
        answer = self.ask("POST", "/session", {"user": user, "password": password})
        if answer.status == 200:
            self.cookie = str(answer.headers["Set-Cookie"]).partition(";")[0]
            self.csrf = answer.json["csrf"]
        return answer

    def ask(self, method: str, path: str, body: Any = None, **headers: str) -> Answer:
        """Asks the interface, as a page does."""
        sent = {"Cookie": self.cookie, "X-CSRF-Token": self.csrf}
        if body is not None:
            sent["Content-Type"] = "application/json"
        content = body if isinstance(body, (str, bytes, type(None))) else json.dumps(body)
        answer = self.request(method, API + path, content, **{**sent, **headers})
        check(method, path, answer)
        return answer

    def get(self, path: str) -> Any:
        answer = self.ask("GET", path)
        assert answer.status == 200, answer.content
        return answer.json

    def request(self, method: str, path: str, body: str | bytes | None = None, **headers: str) -> Answer:
        """Sends any request."""
        connection = HTTPConnection("127.0.0.1", 8080, timeout=60, source_address=(self._address, 0))
        connection.request(method, path, body, {name: text for name, text in headers.items() if text})
        response = connection.getresponse()
        answer = Answer(response.status, response.headers, response.read())
        connection.close()
        return answer


def check(method: str, path: str, answer: Answer) -> None:
    """Fails unless the answer is one that the document describes."""
    operation = described(path.partition("?")[0]).get(method.lower(), {})
    response = operation.get("responses", {}).get(str(answer.status))
    assert response is not None, f"{method} {path}: {answer.status} is not described: {answer.content!r}"
    assert answer.headers["Cache-Control"] == "no-store"
    content = resolved(response).get("content", {})
    if not content:
        assert answer.content == b""
        return
    kind = str(answer.headers["Content-Type"]).partition(";")[0]
    assert kind in content, f"{method} {path}: {kind}"
    if kind == "application/json":
        validate(answer.json, content[kind]["schema"])


def validate(value: Any, schema: dict[str, Any]) -> None:
    Draft202012Validator(schema, resolver=resolver(DESCRIPTION)).validate(value)


def resolved(part: dict[str, Any]) -> dict[str, Any]:
    return dict(resolver(DESCRIPTION).resolve(part["$ref"])[1]) if "$ref" in part else part


def described(path: str) -> dict[str, Any]:
    """Returns what the document has for a path; nothing if it has none."""
    for template, operations in DOCUMENT["paths"].items():
        if re.fullmatch(re.sub(r"\{\w+\}", "[^/]+", template), path):
            return dict(operations)
    return {}
