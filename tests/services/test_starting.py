# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Starting the services, alone and together."""

from __future__ import annotations

from conftest import RunOnHost

PORTS = {"login-service": 58080, "manager-service": 10171, "streaming-service": 10170}


def test_all_are_ready_before_the_command_runs(with_services: RunOnHost) -> None:
    done = with_services("grep -h listening /var/log/vl/*-service.log; exit 7")
    assert done.stdout.splitlines() == [f"{name}: listening on 127.0.0.1:{port}" for name, port in PORTS.items()]
    assert done.returncode == 7


def test_a_missing_command_is_reported_as_by_a_shell(with_services: RunOnHost) -> None:
    done = with_services("exec no-such-command")
    assert (done.returncode, "no-such-command" in done.stderr) == (127, True)


def test_a_service_reports_that_its_port_is_in_use(with_services: RunOnHost) -> None:
    done = with_services("".join(f"{name}; echo $?\n" for name in PORTS))
    assert done.stderr == "".join(f"{name}: Address already in use\n" for name in PORTS)
    assert done.stdout == 3 * "1\n"


def test_they_start_together_or_not_at_all(on_host: RunOnHost) -> None:
    done = on_host(
        "manager-service 2>/tmp/said & until_true grep -q listening /tmp/said\n"
        '"$(dirname "$(readlink -f /usr/bin/manager-service)")"/with-services -- echo ran; echo $?; ps'
    )
    first, *rest = done.stdout.splitlines()
    assert (first, "ran" in rest) == ("125", False)
    assert done.stderr == "with-services: manager-service ended at its start; see /var/log/vl/manager-service.log\n"
    assert not [line for line in rest if "login-service" in line or "streaming-service" in line]
