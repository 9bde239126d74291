# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a request can be refused for. Each problem has a name, by which pages find their own words for it."""

from __future__ import annotations

from typing import Any


class Problem(Exception):
    """Becomes the answer to the request: a status, and an object with the problem's name, a sentence and a cure."""

    def __init__(self, status: int, name: str, text: str, cure: str | None = None, **values: Any) -> None:
        super().__init__(name)
        self.status = status
        self.answer: dict[str, Any] = {"error": name, "text": text, "cure": cure, **values}


def signed_out() -> Problem:
    return Problem(401, "signed_out", "You are not signed in.", "Sign in.")


def wrong_password() -> Problem:
    return Problem(401, "wrong_password", "The host does not accept this user and password.", "Try again.")


def too_many(seconds: int) -> Problem:
    return Problem(429, "too_many", "There were too many wrong attempts.", f"Try again in {seconds} seconds.", seconds=seconds)


def forged() -> Problem:
    return Problem(403, "csrf", "The request does not come from this page.", "Load the page again.")


def invalid(text: str) -> Problem:
    return Problem(400, "invalid", text)


def not_found() -> Problem:
    return Problem(404, "not_found", "There is nothing here.")


def host_away(text: str) -> Problem:
    return Problem(503, "host_away", text, "Wait; the page tries again.")


OF_STATUS = {
    400: ("invalid", "The request cannot be understood."),
    404: ("not_found", "There is nothing here."),
    405: ("not_found", "This cannot be done here."),
    413: ("too_large", "The request is too large."),
}
UNEXPECTED = ("host_away", "The request failed.")


def of_status(status: int) -> dict[str, Any]:
    """Returns the answer to a request that the server itself refuses."""
    name, text = OF_STATUS.get(status, UNEXPECTED)
    return {"error": name, "text": text, "cure": None}
