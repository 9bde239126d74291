# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The sandbox: a host of its own at the real paths, with nothing of the machine around it changed."""

from __future__ import annotations

import importlib.util
import os
import signal
import socket
import subprocess
import tempfile
from pathlib import Path

import pytest
from conftest import REPOSITORY, SANDBOX, sandbox_command

AS_ROOT = os.geteuid() == 0
NOBODY = ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups"]


@pytest.fixture
def sandbox(new_sandbox):
    """Each of these scripts has a sandbox of its own, because its start and end are judged."""
    return new_sandbox


def run(command: list[str], **options) -> subprocess.CompletedProcess[str]:
    return subprocess.run(command, check=False, capture_output=True, text=True, timeout=60, **options)


@pytest.fixture
def temporary(monkeypatch):
    """A folder for the sandbox's own temporary files, open to every user."""
    with tempfile.TemporaryDirectory(prefix="usbdev-test-") as folder:
        os.chmod(folder, 0o777)
        monkeypatch.setenv("TMPDIR", folder)
        yield Path(folder)


FILES = [
    "/etc/config/usbdev.conf",
    "/etc/config/Tundrel.conf",
    "/etc/config/bndl.conf",
    "/etc/config/gpuinfo.conf",
    "/etc/config/usbports.conf",
    "/mnt/ext/opt/apps/Halvane/camera_agent.sh",
    "/home/httpd/v3_menu/layout/model_0.svg",
    "/tmp/gpuinfo.type",
    *(f"/mnt/ext/opt/apps/Velmora2/hls/channel{number}/." for number in range(1, 5)),
]


def test_the_host_has_its_files(sandbox):
    done = sandbox(f"for path in {' '.join(FILES)}; do test -r $path || echo $path; done")
    assert (done.returncode, done.stdout) == (0, "")


def test_the_host_s_temporary_files_are_in_its_own_folder(sandbox, temporary):
    assert sandbox("mktemp").stdout.startswith("/tmp/")


PROGRAMS = "/sbin/udevadm /usr/bin/v4l2-ctl /bin/ps /bin/cat /bin/grep /bin/ls /bin/awk /bin/ln /bin/rm"


def test_the_host_has_the_programs_that_the_library_runs(sandbox):
    done = sandbox(f"for path in {PROGRAMS}; do test -x $path || echo $path; done")
    assert (done.returncode, done.stdout) == (0, "")


def test_the_programs_of_the_build_are_where_the_library_runs_them(tmp_path):
    for name in ("readcfg", "gpuinfo_app", "hwinfo_app", "usbdevctl"):
        (tmp_path / name).write_text(f"#!/bin/sh\necho this is {name}\n")
        (tmp_path / name).chmod(0o755)
    script = "/sbin/readcfg; gpuinfo_app; hwinfo_app; usbdevctl"
    result = run([str(SANDBOX), "run", "--build", str(tmp_path), "--", "sh", "-c", script])
    assert result.stdout.splitlines() == [
        "this is readcfg",
        "this is gpuinfo_app",
        "this is hwinfo_app",
        "this is usbdevctl",
    ]
    assert result.stderr == ""


def test_programs_missing_from_the_build_are_named(tmp_path):
    result = run([str(SANDBOX), "run", "--build", str(tmp_path), "--", "true"])
    assert result.returncode == 0
    assert "lacks usbdevctl, gpuinfo_app, hwinfo_app, readcfg" in result.stderr


@pytest.mark.parametrize(
    ("host", "processor", "other"),
    [("intel", "GenuineIntel", "ARM"), ("amd-k41", "AuthenticAMD", "ARM"), ("arm", "ARM", "vendor_id")],
)
def test_the_processor_is_that_of_the_host_model(sandbox, host, processor, other):
    text = sandbox("cat /proc/cpuinfo", "--host", host).stdout
    assert processor in text and other not in text


def test_the_model_key_is_before_the_time_servers_without_an_empty_line(sandbox):
    text = sandbox("cat /etc/config/Tundrel.conf", "--host", "amd-k41").stdout
    searched = text.split("[NTP]")[0].splitlines()
    assert "Internal Model = K41" in searched and all("=" in line or "[" in line for line in searched)


def test_process_lists_show_whole_command_lines_but_not_the_sandbox_itself(sandbox):
    result = sandbox(
        "sh -c 'echo up; sleep 30; true' marker >/tmp/up & until [ -s /tmp/up ]; do :; done; ps; kill $!"
    )
    lines = result.stdout.splitlines()
    assert lines[0].split() == ["PID", "USER", "TIME", "COMMAND"]
    assert any("sh -c echo up; sleep 30; true marker" in line for line in lines)
    assert not any("bwrap" in line or "kill $!" in line for line in lines)


def test_programs_on_the_host_find_the_fonts_of_the_machine(sandbox):
    """A browser then shows the pages as outside."""
    assert sandbox("cat /etc/fonts/fonts.conf").stdout == Path("/etc/fonts/fonts.conf").read_text()


def test_files_of_the_machine_cannot_be_changed(sandbox):
    script = f"touch {REPOSITORY}/x /usr/lib/x /etc/passwd 2>&1"
    result = sandbox(script)
    assert result.returncode != 0
    assert result.stdout.count("cannot touch") == 3


def test_files_that_the_host_writes_stay_inside(sandbox, temporary):
    marker = f"usbdev-marker-{os.getpid()}"
    folders = "/etc/config /tmp /var/log /var/lock /run /dev /dev/shm /mnt/ext /sys/class /home/httpd".split()
    script = "; ".join(f"echo x > {folder}/{marker} || exit 1" for folder in folders)
    assert sandbox(script).returncode == 0
    assert not any(Path(folder, marker).exists() for folder in folders)
    assert list(temporary.iterdir()) == []


def test_files_have_the_same_permissions_whatever_the_users_mask_is(sandbox):
    previous = os.umask(0o077)
    try:
        done = sandbox("umask; stat -c %a /etc/config/usbdev.conf /etc/config/bndl.conf")
    finally:
        os.umask(previous)
    assert done.stdout.split() == ["0022", "600", "644"]


def test_lock_files_have_both_names_of_their_folder(sandbox):
    result = sandbox("flock /var/lock/x flock --nonblock /run/lock/x true || echo locked")
    assert result.stdout == "locked\n"


def test_the_network_is_only_the_loopback_of_the_host(sandbox):
    listen = "import socket; socket.create_server(('127.0.0.1', 58080))"
    result = sandbox(f'tail -n +3 /proc/net/dev | cut -d: -f1; python3 -c "{listen}"')
    assert (result.returncode, result.stdout.split()) == (0, ["lo"])


def test_a_port_in_use_outside_is_free_inside(sandbox):
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as taken:
        taken.bind(("127.0.0.1", 0))
        port = taken.getsockname()[1]
        bind = f"import socket; socket.socket(socket.AF_INET, socket.SOCK_DGRAM).bind(('127.0.0.1', {port}))"
        assert sandbox(f'python3 -c "{bind}"').returncode == 0


def test_shared_memory_is_the_hosts_own(sandbox):
    made = run(["ipcmk", "-M", "16"])
    number = made.stdout.split()[-1]
    try:
        assert number in run(["ipcs", "-m"]).stdout.split()
        assert number not in sandbox("ipcs -m").stdout.split()
    finally:
        run(["ipcrm", "-m", number])


def test_processes_of_the_machine_are_not_seen(sandbox):
    with subprocess.Popen(["sleep", f"2{os.getpid()}"]) as outside:
        try:
            inside = sandbox("/usr/host-bin/ps -e -o args").stdout
        finally:
            outside.kill()
    assert "bwrap" in inside and f"sleep 2{os.getpid()}" not in inside


def test_processes_that_still_run_end_with_the_command(sandbox):
    marker = f"3{os.getpid()}"
    sandbox(f"sleep {marker} >/dev/null 2>&1 & true")
    assert marker not in run(["ps", "-e", "-o", "args"]).stdout


def test_a_state_folder_carries_the_host_from_run_to_run(sandbox, tmp_path):
    state = str(tmp_path / "state")
    first = "echo '<velmora><ch0/></velmora>' > /etc/config/usbdev.conf; sim plug usb2-camera 3-1 --hardware-only"
    assert sandbox(first, "--state", state, "--host", "arm").returncode == 0
    look = "cat /etc/config/usbdev.conf; ls /dev/video0; sim status; grep -c ARM /proc/cpuinfo"
    second = sandbox(look, "--state", state)
    assert second.stdout.split() == [
        *["<velmora><ch0/></velmora>", "/dev/video0"],
        *["3-1", "usb2-camera", "video0", "video1", "1"],
    ]


def test_a_state_of_another_model_is_refused(sandbox, tmp_path):
    state = str(tmp_path / "state")
    sandbox("true", "--state", state, "--host", "arm")
    result = sandbox("true", "--state", state, "--host", "intel")
    assert result.returncode == 125
    assert result.stderr.splitlines()[-1] == f"sandbox: the state in {state} is of host 'arm', not 'intel'"


@pytest.mark.parametrize(
    ("script", "status"),
    [("exit 0", 0), ("exit 3", 3), ("no-such-command", 127), ("kill -9 $$", 137)],
)
def test_the_status_is_that_of_the_command(sandbox, script, status):
    assert sandbox(script).returncode == status


def test_a_termination_request_ends_the_host_and_clears_up(temporary):
    process = subprocess.Popen(sandbox_command("echo ready; sleep 60"), stdout=subprocess.PIPE, text=True)
    assert process.stdout.readline() == "ready\n"
    process.send_signal(signal.SIGTERM)
    assert process.wait(timeout=20) == 128 + signal.SIGTERM
    process.stdout.close()
    assert list(temporary.iterdir()) == []


@pytest.mark.skipif(not AS_ROOT, reason="an ordinary user runs every other test of this file")
def test_an_ordinary_user_gets_the_same_host(temporary):
    script = "id -un; sim plug usb2-camera 3-1 --hardware-only; sim status; echo x > /etc/config/usbdev.conf"
    result = run([*NOBODY, *sandbox_command(script)])
    assert (result.returncode, result.stdout.split()) == (0, ["nobody", "3-1", "usb2-camera", "video0", "video1"])
    assert list(temporary.iterdir()) == []


def in_a_user_namespace(setting: str, *options: str) -> subprocess.CompletedProcess[str]:
    """Runs the sandbox where the kernel's limits are lowered; they hold in that namespace only."""
    command = " ".join(f"'{word}'" for word in sandbox_command("true"))
    return run(["unshare", "--user", "--map-root-user", "sh", "-c", f"{setting}; exec {command}"])


def test_a_kernel_that_forbids_namespaces_is_reported_in_one_line():
    result = in_a_user_namespace("echo 0 > /proc/sys/user/max_mnt_namespaces")
    assert result.returncode == 125
    assert len(result.stderr.splitlines()) == 1
    assert result.stderr.startswith("sandbox: the kernel does not allow this user private namespaces (")


def test_missing_bubblewrap_is_reported_in_one_line(tmp_path):
    result = run([*sandbox_command("true")], env={**os.environ, "PATH": str(tmp_path)})
    assert result.returncode == 125
    assert result.stderr == "sandbox: bubblewrap is missing: install the package that provides the program 'bwrap'\n"


@pytest.mark.parametrize(
    ("options", "message"),
    [
        (["--host", "vax"], "there is no host model 'vax'; there are: amd-k41, arm, intel"),
        (["--topology", "ring"], "there is no topology 'ring'; there are: ehci-uhci, platform, three-controllers"),
        (["--build", "/nowhere"], "there is no build in /nowhere"),
    ],
)
def test_an_unknown_name_is_reported_in_one_line(sandbox, temporary, options, message):
    result = sandbox("true", *options)
    assert result.returncode == 125
    assert result.stderr.splitlines()[-1] == f"sandbox: {message}"
    assert list(temporary.iterdir()) == []


def test_the_programs_in_python_are_compiled_as_they_are_now():
    sources = sorted(REPOSITORY.glob("host/*/*lib/*.py"))
    hashes = [importlib.util.source_hash(path.read_bytes()) for path in sources]
    compiled = [Path(importlib.util.cache_from_source(str(path))).read_bytes()[8:16] for path in sources]
    assert sources and hashes == compiled
