# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How ./dev installs missing packages, and what it prints if it cannot."""

from __future__ import annotations

import pytest
from conftest import APT_PLAN, Machine

LIBRARY_ALONE = "cmake -B build -DUSBDEV_LIBRARY_ONLY=ON"


@pytest.fixture
def lacking(machine: Machine) -> Machine:
    """A machine without ninja."""
    machine.lacks("ninja-build")
    return machine


def installed(machine: Machine) -> bool:
    return any(call.endswith("install ninja-build") and "--yes" in call and "--download-only" not in call
               for call in machine.called("apt-get"))


def test_apt_does_not_run_if_no_package_is_missing(machine: Machine) -> None:
    assert machine.dev("build").status == 0
    assert machine.called("apt-get") == []


def test_names_and_sizes_are_printed(lacking: Machine) -> None:
    output = lacking.dev("build").output
    assert "missing packages: ninja-build" in output
    assert "packages to install: 212, including those that they need" in output
    assert "to download: 332 MB" in output
    assert "disk space: 1203 MB" in output


def test_packages_that_were_downloaded_before_are_not_counted_again(lacking: Machine) -> None:
    lacking.answers("apt-get", ("*--assume-no*", APT_PLAN.replace("get 332", "get 0 B/332"), 0), ("*", "", 0))
    assert "to download: 0 B/332 MB" in lacking.dev("build").output


def test_without_a_terminal_it_installs_without_a_question(lacking: Machine) -> None:
    assert lacking.dev("build").status == 0
    assert installed(lacking)


@pytest.mark.parametrize("answer", ["\n", "y\n", "Yes\n"])
def test_on_a_terminal_it_asks_and_yes_installs(lacking: Machine, answer: str) -> None:
    outcome = lacking.dev_on_terminal("build", typed=answer)
    assert "install them? [Y/n]" in outcome.output
    assert outcome.status == 0 and installed(lacking)


@pytest.mark.parametrize("answer", ["n\n", "no\n", "what\n", "\x04"])
def test_on_a_terminal_any_other_answer_installs_nothing(lacking: Machine, answer: str) -> None:
    outcome = lacking.dev_on_terminal("build", typed=answer)
    assert outcome.status == 1 and not installed(lacking)
    assert "nothing was installed" in outcome.output
    assert lacking.called("ninja") == []


def test_it_asks_on_a_terminal_also_if_the_output_goes_into_a_pipe(lacking: Machine) -> None:
    outcome = lacking.on_terminal(f"{lacking.programs}/sh", "-c", f"{lacking.tree}/dev build | cat", typed="n\n")
    assert "install them? [Y/n]" in outcome.output
    assert not installed(lacking)


@pytest.mark.parametrize("words", [["--yes", "build"], ["build", "--yes"]])
def test_yes_skips_the_question_on_a_terminal(lacking: Machine, words: list[str]) -> None:
    outcome = lacking.dev_on_terminal(*words)
    assert "install them?" not in outcome.output
    assert outcome.status == 0 and installed(lacking)


def test_a_log_gets_a_line_for_every_tenth_of_the_installation(lacking: Machine) -> None:
    steps = "".join(f"pmstatus:some-package:{percent}.5:Unpacking some-package\n" for percent in range(100))
    lacking.script("apt-get", f"case $* in *--yes*--download-only*) ;; *--yes*) echo '{steps}' >&3; echo a lot of output ;; esac")
    output = lacking.dev("build").output
    assert [line for line in output.splitlines() if line.startswith("installing: ")] == [
        f"installing: {percent} of 100" for percent in range(10, 100, 10)]
    assert "\r" not in output and "a lot of output" not in output
    assert "a lot of output" in (lacking.tree / "build/packages.log").read_text()


def assert_gives_up(machine: Machine, reason: str) -> None:
    """Nothing is built, and the output shows what to do instead."""
    outcome = machine.dev("build")
    assert outcome.status == 1 and machine.called("ninja") == []
    assert f"dev: {reason}" in outcome.output
    assert "apt-get install --no-install-recommends ninja-build" in outcome.output
    assert LIBRARY_ALONE in outcome.output


def test_without_a_network_it_prints_what_to_do_instead(lacking: Machine) -> None:
    lacking.answers("apt-get", ("*--assume-no*", APT_PLAN, 0), ("*--download-only*", "E: no route\n", 100), ("*", "", 0))
    assert_gives_up(lacking, "the packages could not be downloaded, which needs a network")
    assert not installed(lacking)


def test_the_error_messages_of_apt_are_shown(lacking: Machine) -> None:
    lacking.answers("apt-get", ("*--assume-no*", APT_PLAN, 0), ("*--download-only*", "noise\nE: no route\n", 100), ("*", "", 0))
    output = lacking.dev("build").output
    assert "E: no route" in output and "noise" not in output


def test_a_failed_installation_has_another_message_than_a_failed_download(lacking: Machine) -> None:
    lacking.answers("apt-get", ("*--assume-no*", APT_PLAN, 0), ("*--download-only*", "", 0), ("*--yes*", "", 100), ("*", "", 0))
    assert_gives_up(lacking, "apt-get could not install the packages")


def test_a_package_that_apt_does_not_know_is_named(lacking: Machine) -> None:
    lacking.answers("apt-get", ("*--assume-no*", "E: Unable to locate package ninja-build\n", 100), ("*", "", 0))
    assert_gives_up(lacking, "apt does not find the packages")
    assert "E: Unable to locate package ninja-build" in lacking.dev("build").output


def test_if_the_lists_cannot_be_updated_the_old_ones_are_used(lacking: Machine) -> None:
    lacking.answers("apt-get", ("*update*", "", 100), ("*--assume-no*", APT_PLAN, 0), ("*", "", 0))
    outcome = lacking.dev("build")
    assert "not every list could be read" in outcome.output
    assert outcome.status == 0 and installed(lacking)


def test_without_root_and_sudo_it_prints_what_to_do_instead(lacking: Machine) -> None:
    lacking.answers("id", ("*", "1000\n", 0))
    assert_gives_up(lacking, "only root can install packages, and this machine has no sudo")
    assert lacking.called("apt-get") == []


def test_a_sudo_that_refuses_has_another_message_than_a_missing_sudo(lacking: Machine) -> None:
    lacking.answers("id", ("*", "1000\n", 0))
    lacking.answers("sudo", ("*", "", 1))
    assert_gives_up(lacking, "only root can install packages, and sudo refuses")


def test_sudo_asks_for_a_password_only_on_a_terminal(lacking: Machine) -> None:
    lacking.answers("id", ("*", "1000\n", 0))
    lacking.script("sudo", '[ "$1" != --non-interactive ] || shift\n"$@"')
    lacking.dev("build")
    assert lacking.called("sudo") and all(call.startswith("--non-interactive ") for call in lacking.called("sudo"))
    lacking.calls.write_text("")
    lacking.dev_on_terminal("build", "--yes")
    assert lacking.called("sudo") and not any("--non-interactive" in call for call in lacking.called("sudo"))
    assert installed(lacking)


def test_a_system_without_apt_gets_a_message(lacking: Machine) -> None:
    (lacking.programs / "apt-get").unlink()
    (lacking.programs / "dpkg-query").unlink()
    outcome = lacking.dev("build")
    assert outcome.status == 1
    assert "dev: packages can be installed only on Debian, and this machine has no apt-get" in outcome.output
    assert LIBRARY_ALONE in outcome.output


def test_a_server_that_only_tests_need_is_not_started_by_its_installation(machine: Machine) -> None:
    machine.lacks("nginx-light", "mosquitto-clients", "prometheus")
    machine.answers("systemctl", ("*", "", 0))
    outcome = machine.dev("test", "Text")
    assert machine.called("systemctl") == ["mask --quiet nginx.service", "mask --quiet prometheus.service"]
    assert "nginx is not started as a service; 'systemctl unmask nginx' allows that" in outcome.output
    calls = machine.calls.read_text().splitlines()
    last = max(number for number, call in enumerate(calls) if call.startswith("systemctl"))
    assert [number for number, call in enumerate(calls) if "apt-get" in call and call.endswith("prometheus")][-1] > last


def test_a_server_that_is_there_already_is_left_alone(machine: Machine) -> None:
    machine.lacks("curl")
    machine.answers("systemctl", ("*", "", 0))
    machine.dev("test", "Text")
    assert machine.called("systemctl") == []
