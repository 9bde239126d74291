# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Tests that run on the sandboxed host and call the library themselves, so that a host is ready at once."""

from __future__ import annotations

import os
import sys
from collections.abc import Iterator
from pathlib import Path

import pytest

sys.dont_write_bytecode = True
REPOSITORY = Path(__file__).resolve().parent.parent.parent.parent
sys.path[:0] = [str(REPOSITORY / folder) for folder in ("host/sim", "host/sandbox", "tests/system/on_host")]
# The sanitizers' run-time is loaded into this process for the library's sake; the host's tools need none.
os.environ.pop("LD_PRELOAD", None)

from host import Host  # noqa: E402


@pytest.fixture(scope="module")
def without_process_list() -> Iterator[None]:
    """For tests in which no query hangs: looking for one that does takes a good part of the time."""
    ps = Path("/usr/bin/ps")
    target = ps.readlink()
    ps.unlink()
    yield
    ps.symlink_to(target)


@pytest.fixture
def host() -> Host:
    fresh = Host()
    fresh.empty()
    return fresh
