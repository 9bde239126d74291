# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Changes on a full disk: no command reports a change that was not stored."""

from __future__ import annotations

import subprocess
from pathlib import Path

import pytest
from conftest import APPLICATION, CONFIGURATION, document, usbdevctl

FULL = """
keep=$(mktemp -d) && cp -a /etc/config/. "$keep" && mount -t tmpfs -o size=64k tmpfs /etc/config &&
cp -a "$keep"/. /etc/config && { cat /dev/zero >/etc/config/filler 2>/dev/null || true; } && exec "$@"
"""
READ_ONLY = 'mount --bind /etc/config /etc/config && mount -o remount,bind,ro /etc/config && exec "$@"'
# The program, and then the configuration as it is on that disk.
THEN_SHOW = 'shown=$1; shift; usbdevctl "$@"; status=$?; cat /etc/config/usbdev.conf >"$shown"; exit $status'

CHANGES = {
    "a new name": ["rename", "2", "Garden"],
    "a renewed link": ["share", "renew", "2"],
    "a link taken back": ["share", "off", "2"],
    "a cleared profile": ["clear", "2"],
    "a port that is switched off": ["slot", "off", "3-1"],
    "a stream-parameter state": ["sps", "2", "1"],
    "a camera pulled out": ["unplug", "--type", "camera", "--slot", "3-1"],
}


@pytest.fixture
def stored(profile: str, tmp_path: Path) -> str:
    """The configuration with a shared profile."""
    document("share", "on", profile)
    return CONFIGURATION.read_text()


def links() -> set[str]:
    return {path.name for path in APPLICATION.iterdir() if path.is_symlink()}


@pytest.mark.parametrize("disk", [FULL, READ_ONLY], ids=["full", "read-only"])
@pytest.mark.parametrize("change", CHANGES.values(), ids=CHANGES.keys())
def test_a_change_that_cannot_be_stored_fails_and_leaves_no_trace(
    change: list[str], disk: str, stored: str, tmp_path: Path
) -> None:
    events = document("log")
    links_before = links()
    afterwards = tmp_path / "configuration"
    on_that_disk = ["unshare", "--map-root-user", "--mount", "sh", "-c", disk, "sh"]
    command = ["sh", "-c", THEN_SHOW, "sh", str(afterwards), *change]
    done = subprocess.run([*on_that_disk, *command], check=False, capture_output=True, text=True, timeout=60)
    assert done.returncode == 1, done
    assert "failed, ret: -" in done.stderr
    assert done.stdout == ""
    assert afterwards.read_text() == stored
    assert document("log") == events
    assert links() <= links_before, "a link that nobody knows"


def test_the_same_changes_work_on_a_disk_with_room(stored: str) -> None:
    for change in CHANGES.values():
        CONFIGURATION.write_text(stored)
        assert usbdevctl(*change).returncode == 0, change
