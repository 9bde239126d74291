# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The host on which many scripts run: each finds what a new host has."""

from __future__ import annotations

import os
from collections.abc import Iterator
from pathlib import Path

import pytest
from renewed_host import KEPT, RenewedHost

LOOK = f"""
find {" ".join(KEPT)} ! -name '[0-9]*' -printf '%p %y %m %l\\n' | sort
find {" ".join(KEPT[1:])} -type f -exec md5sum {{}} + | sort -k 2
ipcs | tail -n +2; ss --listening --numeric --tcp --udp; ls /usr/bin | wc -l
processes=$(ps); echo "$processes" | awk '{{print $4, $5}}'
"""
CHANGES = [
    "echo more >>/etc/config/usbdev.conf",
    "echo '<velmora>' >/etc/config/usbdev.conf",
    "rm /etc/config/usbdev.conf",
    "rm /etc/config/usbdev.conf; mkdir -p /etc/config/usbdev.conf/in/it",
    "cp /tmp/gpuinfo.type /tmp/old; rm /tmp/gpuinfo.type; ln -s old /tmp/gpuinfo.type",
    "chmod 444 /etc/config/usbdev.conf; chmod 700 /run/lock",
    "rm -r /mnt/ext/opt /sys/bus",
    "rm -r /sys/bus/usb; ln -s /etc/config /sys/bus/usb",
    "rm /dev/fd; mkdir /dev/fd; mkfifo /tmp/pipe; mkdir -p /run/.hidden/folder; touch /run/.hidden/folder/file",
    "sim plug hd-pro-webcam 3-1.2; usbdevctl assign 3-1.2 0; usbdevctl timeouts add 0",
    "ipcmk -M 16; ipcmk -Q; ipcmk -S 1",
    "sleep 1000 & sleep 2000 >/dev/null 2>&1 &",
    "(trap '' HUP INT TERM; until false; do sleep 0.1; done) & setsid sleep 3000 &",
    "usbdevctl watch --timeout 1000 2>/tmp/said & until grep -q listening /tmp/said; do sleep 0.1; done",
]


@pytest.fixture(scope="module")
def host() -> Iterator[RenewedHost]:
    with RenewedHost(Path(os.environ["USBDEV_BUILD_DIR"])) as started:
        yield started


@pytest.fixture(scope="module")
def at_first(host: RenewedHost) -> str:
    return host.run(LOOK).stdout


@pytest.mark.parametrize("change", CHANGES)
def test_a_script_finds_nothing_of_the_one_before_it(host: RenewedHost, at_first: str, change: str) -> None:
    """Processes end with their script."""
    done, changed = host.run_each(change, LOOK)
    assert (done.returncode, changed.stdout == at_first) == (0, change.endswith("&"))
    assert host.run(LOOK).stdout == at_first


def test_a_renewed_host_is_like_a_new_one(new_sandbox, host: RenewedHost, at_first: str) -> None:
    host.run("rm -r /mnt/ext/opt")
    script_in_list = {"sh -c", "sh /proc/self/fd/3", "/usr/bin/python3 -ISB"}
    lists = [
        [line for line in text.splitlines() if line not in script_in_list]
        for text in (host.run(LOOK).stdout, new_sandbox(LOOK).stdout)
    ]
    assert lists[0] == lists[1]


def test_scripts_that_belong_together_run_on_one_host(host: RenewedHost) -> None:
    first, second = host.run_each("echo kept >/tmp/file; echo said; echo wrong >&2; exit 3", "cat /tmp/file")
    assert (first.stdout, first.stderr, first.returncode) == ("said\n", "wrong\n", 3)
    assert (second.stdout, second.stderr, second.returncode) == ("kept\n", "", 0)


def test_a_change_that_only_a_new_sandbox_undoes_is_refused(capfd: pytest.CaptureFixture[str]) -> None:
    with RenewedHost(Path(os.environ["USBDEV_BUILD_DIR"])) as host:
        host.run("rm /usr/bin/ps")
        with pytest.raises(AssertionError, match="the host has ended"):
            host.run("true")
    assert "it needs a sandbox of its own" in capfd.readouterr().err


def test_a_script_that_takes_too_long_is_killed_with_what_it_started_and_the_next_one_runs() -> None:
    with RenewedHost(Path(os.environ["USBDEV_BUILD_DIR"]), longest=1) as host:
        late, after = host.run_each("echo begun; sleep 1000", "echo next")
    assert (late.returncode, late.stdout) == (-9, "begun\n")
    assert (after.returncode, after.stdout) == (0, "next\n")
