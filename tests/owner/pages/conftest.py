# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The pages in a browser, without a host: a stand-in answers."""

from __future__ import annotations

import sys
from collections.abc import Iterator
from pathlib import Path

import pytest

sys.path.append(str(Path(__file__).resolve().parent.parent))

from browser import Owner
from made_up import NOW
from standin import StandIn
from viewer import browsing

HOST = "attic.localhost"


@pytest.fixture(scope="session")
def server(tmp_path_factory: pytest.TempPathFactory) -> Iterator[StandIn]:
    standin = StandIn(tmp_path_factory.mktemp("stream"))
    yield standin
    standin.end()


@pytest.fixture(scope="session")
def window(server: StandIn) -> Iterator[Owner]:
    """Its links and pictures have no port, which would be another one each time."""
    with browsing("--hide-scrollbars", f"--host-resolver-rules=MAP {HOST}:80 127.0.0.1:{server.port}") as browser:
        owner = Owner(browser, f"http://{HOST}")
        owner.stop_clock(NOW)
        browser.get(owner.origin)
        yield owner


def prepare(window: Owner, server: StandIn) -> Owner:
    """Somebody who is signed in, with an English browser of a usual size."""
    server.reset()
    server.signed_in = True
    window.evaluate("localStorage.clear()")
    window.evaluate("localStorage.setItem('signedIn', '1')")
    window.size(1280, 800)
    window.prefer(color_scheme="light")
    window.complaints()
    return window


@pytest.fixture
def standin(server: StandIn) -> StandIn:
    return server


@pytest.fixture
def owner(window: Owner, server: StandIn) -> Iterator[Owner]:
    """No page gives the browser a reason to complain."""
    yield prepare(window, server)
    assert window.complaints() == []
    window.evaluate("void (location.hash = '#/')")  # leaves what was not saved, of which the next page that opens would ask
