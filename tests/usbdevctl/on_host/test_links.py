# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Links on a disk that takes no change: no command reports one as made, or as removed, that is not."""

from __future__ import annotations

import json
import subprocess
from pathlib import Path

import pytest
from conftest import APPLICATION, CONFIGURATION, document, usbdevctl

READ_ONLY = f'mount --bind {APPLICATION} {APPLICATION} && mount -o remount,bind,ro {APPLICATION} && exec "$@"'
NOT_MADE = f"usbdevctl: the new link could not be made: {APPLICATION}/"
NOT_REMOVED = f"usbdevctl: the old link could not be removed, and still opens the stream: {APPLICATION}/"


def with_fixed_links(*command: str) -> subprocess.CompletedProcess[str]:
    on_that_disk = ["unshare", "--map-root-user", "--mount", "sh", "-c", READ_ONLY, "sh", "usbdevctl"]
    return subprocess.run([*on_that_disk, *command], check=False, capture_output=True, text=True, timeout=60)


@pytest.fixture
def link(profile: str) -> str:
    """The name of a shared profile's link."""
    return document("share", "on", profile)["hash"]


def test_a_new_share_link_that_could_not_be_made_is_a_failure(profile: str) -> None:
    done = with_fixed_links("share", "on", profile, "--json")
    stored = json.loads(done.stdout)["hash"]
    assert (done.returncode, done.stderr.splitlines()[-1]) == (1, NOT_MADE + stored)


def test_an_old_share_link_that_could_not_be_removed_is_a_failure(profile: str, link: str) -> None:
    done = with_fixed_links("share", "off", profile)
    assert (done.returncode, done.stderr.splitlines()[-1]) == (1, NOT_REMOVED + link)
    assert document("share", "show", profile)["sharing"] is False


def test_both_links_of_a_renewal_are_checked(profile: str, link: str) -> None:
    done = with_fixed_links("share", "renew", profile, "--json")
    stored = json.loads(done.stdout)["hash"]
    assert done.returncode == 1
    assert done.stderr.splitlines()[-2:] == [NOT_REMOVED + link, NOT_MADE + stored]


def test_a_link_that_stays_is_not_checked(profile: str, link: str) -> None:
    (APPLICATION / link).unlink()
    assert with_fixed_links("share", "on", profile).returncode == 0


@pytest.mark.parametrize("command", ["clear", "forget"])
def test_a_cleared_profile_whose_link_could_not_be_removed_is_a_failure(command: str, profile: str, link: str) -> None:
    if command == "forget":  # a camera that is away
        away = CONFIGURATION.read_text().replace("<exists>1</exists>", "<exists>0</exists>")
        CONFIGURATION.write_text(away.replace("<vnode>0</vnode>", "<vnode>-1</vnode>"))
    done = with_fixed_links(command, profile if command == "clear" else "ch4")
    assert (done.returncode, done.stderr.splitlines()[-1]) == (1, NOT_REMOVED + link)
    assert document("channels")["channels"][4]["profile"] is None


def test_an_assigned_profile_whose_live_link_could_not_be_made_is_a_failure(camera: str) -> None:
    CONFIGURATION.write_text(
        f"<velmora><ch4><exists>1</exists><usbslot>{camera}</usbslot><devname>Cam</devname>"
        "<video><vnode>0</vnode></video></ch4></velmora>"
    )
    done = with_fixed_links("assign", "ch4", "2", "--anyway")
    assert done.returncode == 1
    assert NOT_MADE in done.stderr
    assert document("channels")["channels"][4]["profile"] == 2


def test_an_import_does_all_and_reports_a_link_that_could_not_be_made(profile: str, link: str, tmp_path: Path) -> None:
    settings = tmp_path / "settings"
    usbdevctl("export", str(settings))
    usbdevctl("share", "off", profile)
    done = with_fixed_links("import", str(settings), "--json")
    assert (done.returncode, json.loads(done.stdout)["not_done"]) == (1, [])
    assert NOT_MADE in done.stderr
