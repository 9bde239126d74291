# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The demo judges each of its steps itself; what is left to see is its end, and the page that it lets others look at."""

from __future__ import annotations

import os
import re
import signal
import subprocess
import urllib.request
from pathlib import Path

DEMO = Path(__file__).resolve().parent.parent.parent / "host/demo/demo"
END = re.compile(r"Watch it at (http://127\.0\.0\.1:\d+/share\?\S+) ;")


def test_everything_is_as_it_should_be_and_a_browser_outside_reaches_the_share_page() -> None:
    command = [DEMO, "--browser"]
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True, start_new_session=True) as demo:
        assert demo.stdout is not None
        link = next(filter(None, map(END.match, demo.stdout)), None)
        if link is not None:
            with urllib.request.urlopen(link[1], timeout=10) as page:
                assert b"<title>Shared camera</title>" in page.read()
            os.killpg(demo.pid, signal.SIGINT)
    assert link is not None
    assert demo.returncode == 0
