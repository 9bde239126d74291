# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The files of the page: what a browser keeps of them."""

from __future__ import annotations

import re

import pytest
from client import Client

pytestmark = pytest.mark.usefixtures("server")

FOR_GOOD = "max-age=31536000, immutable"


def test_a_browser_keeps_the_files_that_the_page_names_for_good_but_not_the_page() -> None:
    page = Client().request("GET", "/")
    assert page.headers["Cache-Control"] == "no-cache"
    named = re.findall(r'="(/[^"]+)"', page.content.decode())
    assert len(named) > 5
    for address in named:
        answer = Client().request("GET", address)
        assert (answer.status, answer.headers["Cache-Control"]) == (200, FOR_GOOD), address


@pytest.mark.parametrize("address", ["/page/main.js", "/files/0123456789abcdef/page/main.js"])
def test_a_file_without_the_version_of_today_is_sent_as_it_is_now_and_not_kept(address: str) -> None:
    answer = Client().request("GET", address)
    assert (answer.status, answer.headers["Cache-Control"]) == (200, "no-cache")
    assert Client().request("GET", address, **{"If-None-Match": answer.headers["Etag"]}).status == 304
