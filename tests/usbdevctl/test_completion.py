# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the shells complete, asked of the shells themselves with the scripts that usbdevctl prints."""

from __future__ import annotations

import re
import shlex
import subprocess

import pytest
from conftest import USBDEVCTL, RunOnHost, help_of

SHELLS = ["bash", "zsh", "fish"]
OPTIONS = {"bash": ["--norc", "--noprofile"], "zsh": ["-f"], "fish": ["--no-config"]}

# Each defines `complete_line WORD...`, which prints what the shell would offer for the last word, in one line.
SCRIPTS = {
    "bash": """
eval "$("$USBDEVCTL" completion bash)"
complete_line() { COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _usbdevctl; echo "${COMPREPLY[*]}"; }
""",
    # The shell's own part, the choice among what is found, is left out: it needs a terminal.
    "zsh": """
compdef() { : }
compset() { : }
_describe() { print -r -- "${(@)${(P)2}%%:*}" }
eval "$("$USBDEVCTL" completion zsh)"
complete_line() { local -a words=("$@"); local CURRENT=$#; _usbdevctl }
""",
    "fish": """
$USBDEVCTL completion fish | source
function complete_line
  set -l line (string join ' ' -- (string escape -- $argv[1..-2]) $argv[-1])
  echo (complete -C $line | string replace -r '\\t.*' '')
end
""",
}


def command_of(shell: str, script: str) -> list[str]:
    return [shell, *OPTIONS[shell], "-c", SCRIPTS[shell] + script]


def run_shell(shell: str, script: str) -> list[str]:
    done = subprocess.run(
        command_of(shell, script),
        env={"USBDEVCTL": str(USBDEVCTL), "PATH": f"{USBDEVCTL.parent}:/usr/bin:/bin", "HOME": "/nonexistent"},
        check=False,
        capture_output=True,
        text=True,
        timeout=240,
    )
    assert (done.stderr, done.returncode) == ("", 0)
    return done.stdout.splitlines()


def lines_of(*lines: list[str]) -> str:
    return "".join("complete_line " + shlex.join(["usbdevctl", *line]) + "\n" for line in lines)


def offered(shell: str, *lines: list[str]) -> list[set[str]]:
    """What is offered for the last word of each command line."""
    return [set(line.split()) for line in run_shell(shell, lines_of(*lines))]


@pytest.fixture(params=SHELLS)
def shell(request: pytest.FixtureRequest) -> str:
    return str(request.param)


def test_the_commands_are_those_of_the_help(shell: str) -> None:
    groups = ["stream", "slot", "host"]
    answers = offered(shell, [""], *[[group, ""] for group in groups])
    assert answers == [set(help_of()["commands"]), *[set(help_of(group)["commands"]) for group in groups]]


def test_the_options_of_every_command_are_those_of_its_help(shell: str) -> None:
    commands = list(help_of()["commands"])
    answers = offered(shell, *[[command, "-"] for command in commands])
    assert answers == [set(help_of(command)["options"]) for command in commands]


@pytest.mark.parametrize(
    ("line", "words"),
    [
        (["plug", "--type", ""], "camera audio"),
        (["stream", "set", "0", "--codec", ""], "h264 mjpeg"),
        (["stream", "set", "0", "--fps", "15", "--overlay", ""], "off on"),
        (["check", "3-1", ""], "0 1 2 3"),
        (["completion", ""], "bash zsh fish"),
    ],
)
def test_fixed_values_are_offered_where_they_belong(shell: str, line: list[str], words: str) -> None:
    assert offered(shell, line) == [set(words.split())]


def test_nothing_is_made_up_for_a_free_value(shell: str) -> None:
    assert offered(shell, ["plug", "--slot", ""], ["stream", "set", "0", "--fps", ""]) == [set(), set()]


def test_a_value_that_looks_like_a_command_leads_nowhere_else(shell: str) -> None:
    (answer,) = offered(shell, ["plug", "--name", "stream", "--type", ""])
    assert answer == {"camera", "audio"}


def test_a_command_without_words_of_its_own_offers_its_options(shell: str) -> None:
    assert offered(shell, ["channels", ""]) == [{"--help", "--json"}]


def test_bash_keeps_what_begins_like_the_word() -> None:
    assert offered("bash", ["ch"], ["stream", "set", "--codec", "m"]) == [{"channels", "check"}, {"mjpeg"}]


def test_bash_completes_a_value_after_an_equals_sign() -> None:
    answers = offered("bash", ["plug", "--type", "=", ""], ["plug", "--type", "="], ["plug", "--type", "=", "c"])
    assert answers == [{"camera", "audio"}, {"camera", "audio"}, {"camera"}]


def test_bash_uses_the_script_for_the_program() -> None:
    assert run_shell("bash", "complete -p usbdevctl") == ["complete -F _usbdevctl usbdevctl"]


def test_zsh_describes_each_word() -> None:
    script = "_describe() { print -rl -- ${(P)2} }\ncomplete_line usbdevctl stream ''"
    assert run_shell("zsh", script) == [
        "show:Show a profile's stream settings",
        "set:Change a profile's stream settings",
    ]


def test_the_scripts_are_refused_for_other_shells() -> None:
    done = subprocess.run([USBDEVCTL, "completion", "tcsh"], check=False, capture_output=True, text=True)
    assert (done.returncode, done.stdout) == (2, "")
    assert re.search("bash,zsh,fish", done.stderr)


TWO_CAMERAS = """
sim plug usb2-camera 3-1.2 >/dev/null; sim plug hd-usb-camera 5-1 >/dev/null; usbdevctl assign 3-1.2 1 >/dev/null
export USBDEVCTL=usbdevctl
"""


def offered_on_host(on_host: RunOnHost, shell: str, host: str, *lines: list[str]) -> list[set[str]]:
    done = on_host(host + shlex.join(command_of(shell, lines_of(*lines))))
    assert (done.stderr, done.returncode) == ("", 0)
    return [set(line.split()) for line in done.stdout.splitlines()]


def test_the_cameras_of_the_host_are_offered_by_every_name(on_host: RunOnHost, shell: str) -> None:
    names = {"3-1.2", "ch0", "pf1", "5-1", "ch1"}
    lines = [["clear", ""], ["stream", "set", ""], ["slot", "off", ""], ["unplug", "--slot", ""], ["clear", "ch0", ""]]
    answers = offered_on_host(on_host, shell, TWO_CAMERAS, *lines)
    assert answers == [names, names, names, {"3-1.2", "5-1"}, {"--help", "--json"}]


@pytest.mark.parametrize("configuration", ["<vel", "<velmora/>"])
def test_completion_prints_nothing_on_a_host_without_cameras(on_host: RunOnHost, shell: str, configuration: str) -> None:
    host = f"export USBDEVCTL=usbdevctl; echo '{configuration}' >/etc/config/usbdev.conf\n"
    assert offered_on_host(on_host, shell, host, ["clear", ""]) == [{"--help", "--json"}]


def test_a_port_that_a_shell_would_run_is_not_offered(on_host: RunOnHost, shell: str) -> None:
    port = "3-$(touch /tmp/harm)"
    configuration = f"<velmora><ch0><exists>1</exists><usbslot>{port}</usbslot></ch0></velmora>"
    host = f"export USBDEVCTL=usbdevctl; echo '{configuration}' >/etc/config/usbdev.conf\n"
    assert offered_on_host(on_host, shell, host, ["clear", ""]) == [{"ch0"}]


def test_asking_for_the_cameras_changes_nothing_and_is_not_in_the_help(on_host: RunOnHost) -> None:
    mark = "{ md5sum /etc/config/usbdev.conf; ls /run/lock /var/log; }"
    done = on_host(f"{mark} >/tmp/before; usbdevctl __words cameras; {mark} | cmp - /tmp/before")
    assert (done.stdout, done.stderr, done.returncode) == ("", "", 0)
    assert "__words" not in str(help_of()["text"])
