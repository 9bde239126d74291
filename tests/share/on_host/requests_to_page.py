# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A request to the share page, and its answer."""

from __future__ import annotations

from http.client import HTTPConnection, HTTPResponse


def request(
    method: str,
    path: str,
    body: str | bytes | None = None,
    address: str = "127.0.0.1",
    **headers: str,
) -> tuple[HTTPResponse, bytes]:
    """From that address of the host itself."""
    connection = HTTPConnection("127.0.0.1", 8080, timeout=20, source_address=(address, 0))
    connection.request(method, path, body, headers)
    answer = connection.getresponse()
    content = answer.read()
    connection.close()
    return answer, content
