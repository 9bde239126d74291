# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Tests that call the library in their own process, on the sandboxed host."""

import atexit
import ctypes
import os

import pytest

# The sanitizer's run-time is loaded into this process for the library's sake; the host's tools need none.
os.environ.pop("LD_PRELOAD", None)

capture = {}  # what keeps the output of the tests, by the process that runs them


@ctypes.CFUNCTYPE(None, ctypes.c_int, ctypes.c_void_p)
def fail_an_unfinished_run(status: int, _: object) -> None:
    """The library may end the process with status 0, which would look like a success of all tests."""
    if os.getpid() in capture:
        capture[os.getpid()].suspend()
        os.write(2, f"\na call ended the process with status {status}\n".encode())
        os._exit(1)


def pytest_sessionstart(session: pytest.Session) -> None:
    capture[os.getpid()] = session.config.pluginmanager.getplugin("capturemanager")
    ctypes.CDLL(None).on_exit(fail_an_unfinished_run, None)


def pytest_sessionfinish(exitstatus: int) -> None:
    # What Python does at its end comes before that function, which is gone then.
    atexit.register(os._exit, exitstatus)
