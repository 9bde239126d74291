# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The installed pages: what the README promises to somebody with a webcam and a browser."""

from __future__ import annotations

import re
import subprocess
from collections.abc import Iterator
from pathlib import Path
from urllib.parse import parse_qs, urlsplit

import pytest
from ground.ground import Port
from ground.grounds import RealGround
from ground.guest import Guest
from ground.visitor import TRUSTED, Visitor
from usbcamera.pictures import recognise

PORT, TAG = Port("xhci", "1"), 7
WIDTH, HEIGHT = 160, 120
PAGES, LOGINS, STREAMS = "usbdev-pages", "usbdev-login", "usbdev-streams"
API = "/api/v1"
STREAM = f"{API}/profiles/0"
LINKS = "/var/lib/usbdev/apps/Velmora2"
DOCUMENT = Path(__file__).resolve().parents[3] / "docs/real-machine.md"
# Takes the lines for TLS in place of the one for this machine alone.
EDIT = r"sed -i -e '/listen 127/d' -e 's/# \(listen 443\|ssl_\|proxy_cookie\)/\1/'"
DECODE = "ffmpeg -nostdin -v error -f mpegts -i - -f rawvideo -pix_fmt gray -".split()
CERTIFICATE = ("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj /CN=cameras "
               "-addext subjectAltName=IP:127.0.0.1").split()  # fmt: skip


@pytest.fixture(scope="module")
def owner(guest: Guest) -> Iterator[Visitor]:
    """Ann, who has a camera in PORT that streams, all of it set up as an owner does it, and shares it."""
    ground = RealGround(guest).reset()
    guest.run("systemctl", "start", LOGINS, PAGES)
    try:
        guest.wait(f"journalctl --unit={LOGINS} | grep -q 'usbdev-login-users add NAME'")
        guest.shell("echo secret | usbdev-login-users add ann")
        ann = Visitor(guest)
        assert ann.ask("POST", f"{API}/session", user="ann", password="wrong").status == 401
        assert ann.sign_in("ann", "secret") == "HttpOnly; Path=/; SameSite=Strict"
        ground.plug("nameless-webcam", PORT, "--tag", str(TAG))
        ground.shows({PORT: 0})
        yield ann
    finally:
        ground.end()
        guest.run("systemctl", "stop", PAGES, LOGINS)


@pytest.fixture(scope="module")
def shared(owner: Visitor) -> str:
    """The share link of the camera's stream."""
    channel = owner.ask("GET", f"{API}/state").object["channels"][0]
    assert (channel["state"], channel["port"], channel["profile"]) == ("plugged", channel["port"], None)
    owner.ask("PUT", f"{API}/channels/0/profile", profile=0).object
    taken = owner.ask("PATCH", f"{STREAM}/stream", width=WIDTH, height=HEIGHT, rate=5.0, codec="mjpeg").object["taken"]
    assert (taken["width"], taken["height"]) == (WIDTH, HEIGHT)
    return str(owner.ask("PUT", f"{STREAM}/share", on=True).object["page"])


def opened(visitor: Visitor, link: str) -> str:
    """Returns the path of the playlist that the link opens, as the page asks for it."""
    words = parse_qs(urlsplit(link).query)
    return str(visitor.ask("POST", "/share/open", ssid=words["ssid"][0], token=words["token"][0], password="").object["playlist"])


def pictures(visitor: Visitor, playlist: str) -> list[tuple[int, int] | None]:
    """Returns number and tag of each picture in the last segment."""
    folder = playlist.rpartition("/")[0]
    last = visitor.await_content(playlist).decode().split()[-1]
    data = subprocess.run(DECODE, input=visitor.await_content(f"{folder}/{last}"), capture_output=True, check=True).stdout
    size = WIDTH * HEIGHT
    return [recognise(data[at : at + size], WIDTH, HEIGHT) for at in range(0, len(data) - size + 1, size)]


def test_an_owner_signs_in_and_sees_the_pictures_of_the_camera(guest: Guest, owner: Visitor, shared: str) -> None:
    assert b"<html" in Visitor(guest).await_content("/")
    assert {it and it[1] for it in pictures(owner, f"{STREAM}/playlist.m3u8")} == {TAG}
    assert owner.await_content(f"{STREAM}/picture.jpg").startswith(b"\xff\xd8")


def test_a_guest_sees_them_with_the_link_and_nothing_else(guest: Guest, owner: Visitor, shared: str) -> None:
    visitor = Visitor(guest)
    assert b"<html" in visitor.await_content(shared)
    assert {it and it[1] for it in pictures(visitor, opened(visitor, shared))} == {TAG}
    assert visitor.ask("GET", f"{API}/state").status == 401


def test_nobody_gets_the_port_of_the_logins_while_they_do_not_run_and_who_signs_in_starts_them(guest: Guest, owner: Visitor) -> None:
    guest.run("systemctl", "stop", LOGINS)
    taken = guest.shell("""python3 -c 'import socket; socket.create_server(("127.0.0.1", 58080))' 2>&1 || true""")
    assert "Address already in use" in taken
    owner.sign_in("ann", "secret")
    guest.run("systemctl", "is-active", LOGINS)


def test_a_restart_of_pages_and_logins_takes_their_settings_and_leaves_the_streams_and_sessions_alone(
    guest: Guest, owner: Visitor, shared: str
) -> None:
    running = guest.run("cat", f"/sys/fs/cgroup/system.slice/{STREAMS}.service/cgroup.procs")
    guest.run("sed", "-i", "s/^InnerWebAccessPort = .*/InnerWebAccessPort = 58099/", "/var/lib/usbdev/config/Tundrel.conf")
    guest.run("systemctl", "restart", LOGINS, PAGES)
    assert owner.ask("GET", f"{API}/state").object["channels"][0]["profile"] == 0
    assert "127.0.0.1:58099" in guest.run("journalctl", f"--unit={LOGINS}")
    owner.sign_in("ann", "secret")
    assert guest.run("cat", f"/sys/fs/cgroup/system.slice/{STREAMS}.service/cgroup.procs") == running


@pytest.fixture
def short_patience(guest: Guest) -> Iterator[None]:
    """The watchdog ends a service after a minute, not after three."""
    folders = " ".join(f"/run/systemd/system/{unit}.service.d" for unit in (PAGES, LOGINS))
    guest.shell(f"for it in {folders}; do mkdir -p $it; printf '[Service]\\nWatchdogSec=1min\\n' >$it/watchdog.conf; done; "
                f"systemctl daemon-reload; systemctl restart {LOGINS} {PAGES}")  # fmt: skip
    yield
    guest.shell(f"rm -r {folders}; systemctl daemon-reload; systemctl restart {LOGINS} {PAGES}")


@pytest.mark.usefixtures("short_patience")
def test_pages_and_logins_that_are_killed_or_hang_serve_again_and_the_streams_go_on(
    guest: Guest, owner: Visitor, shared: str
) -> None:
    owner.sign_in("ann", "secret")
    owner.await_content(f"{STREAM}/playlist.m3u8")
    running = guest.run("cat", f"/sys/fs/cgroup/system.slice/{STREAMS}.service/cgroup.procs")
    for starts, (signal, result) in enumerate({"KILL": "signal", "STOP": "watchdog"}.items(), 1):
        guest.run("systemctl", "kill", f"--signal={signal}", LOGINS, PAGES)
        for unit in (LOGINS, PAGES):
            guest.wait(f"test $(systemctl show --value --property=NRestarts {unit}) -ge {starts}")
            guest.wait(f"systemctl is-active --quiet {unit}")
            assert f"Failed with result '{result}'" in guest.run("journalctl", f"--unit={unit}")
        owner.sign_in("ann", "secret")
        assert owner.ask("GET", f"{API}/state").object["channels"][0]["streams"]
    assert guest.run("cat", f"/sys/fs/cgroup/system.slice/{STREAMS}.service/cgroup.procs") == running


def test_a_new_password_ends_all_sessions(guest: Guest, owner: Visitor) -> None:
    assert owner.ask("GET", f"{API}/state").status == 200
    guest.shell("echo secret | usbdev-login-users add ann")
    assert owner.ask("GET", f"{API}/state").status == 401
    owner.sign_in("ann", "secret")


def test_hashes_of_passwords_are_the_login_services_and_pictures_the_groups(guest: Guest, owner: Visitor, shared: str) -> None:
    assert guest.run("stat", "--format=%a %U", "/var/lib/usbdev/login/users") == "600 usbdev-login\n"
    assert guest.run("stat", "--format=%a %U", "/var/lib/usbdev/pages", "/var/lib/usbdev/pages/sessions") == "700 usbdev\n600 usbdev\n"
    outsider = "setpriv --reuid=4711 --regid=4711 --clear-groups"
    guest.wait(f"test -e {LINKS}/hls/channel1/playlist.m3u8")
    for user in (outsider, "setpriv --reuid=usbdev-login --regid=usbdev-login --clear-groups"):
        guest.shell(f"! {user} cat {LINKS}/hls/channel1/playlist.m3u8 2>/dev/null")
        guest.shell(f"! {user} cat /var/lib/usbdev/config/usbdev.conf 2>/dev/null")
    guest.shell("! setpriv --reuid=usbdev --regid=usbdev --groups=video cat /var/lib/usbdev/login/users 2>/dev/null")


def test_the_lines_of_the_document_open_the_pages_to_the_addresses_that_they_name(guest: Guest, owner: Visitor) -> None:
    lines = re.findall(r"`(\[Service\]|Environment=ADDRESS\S+|IPAddressAllow=\S+)`", DOCUMENT.read_text())
    assert len(lines) == 3
    folder = f"/etc/systemd/system/{PAGES}.service.d"
    guest.shell(f"mkdir {folder}; printf '%s\\n' {' '.join(lines)} >{folder}/override.conf; ip address add 192.168.7.1/24 dev lo")
    guest.shell(f"systemctl daemon-reload; systemctl restart {PAGES}")
    assert b"<html" in Visitor(guest, "http://192.168.7.1:8080").await_content("/")
    guest.shell(f"rm -r {folder}; ip address del 192.168.7.1/24 dev lo; systemctl daemon-reload; systemctl restart {PAGES}")


def documented() -> str:
    """Returns the commands of real-machine.md after which nginx runs; here it is installed, and the editor is a program."""
    _, _, block = DOCUMENT.read_text().partition("sudo apt install nginx-light\n")
    commands = re.sub(r"^sudoedit (\S+).*$", lambda it: f"{EDIT} {it[1]}", block.partition("```")[0], flags=re.MULTILINE)
    return commands.replace("sudo ", "")


@pytest.fixture
def behind_nginx(guest: Guest, tmp_path: Path) -> Iterator[Visitor]:
    """A visitor of nginx with TLS, set up as real-machine.md says."""
    subprocess.run([*CERTIFICATE, "-keyout", tmp_path / "key", "-out", tmp_path / "pem"], check=True, capture_output=True)
    for kind in ("pem", "key"):
        guest.shell(f"cat >{Path(TRUSTED).with_suffix('.' + kind)} <<'END'\n{(tmp_path / kind).read_text()}END")
    guest.shell(f"set -e; {documented()}")
    yield Visitor(guest, "https://127.0.0.1")
    guest.run("systemctl", "stop", "nginx")


def test_nginx_gives_out_the_pictures_without_the_page(guest: Guest, owner: Visitor, shared: str, behind_nginx: Visitor) -> None:
    assert behind_nginx.sign_in("ann", "secret") == "HttpOnly; Path=/; SameSite=Strict; Secure"
    playlist = opened(behind_nginx, shared)
    behind_nginx.await_content(playlist)
    guest.run("systemctl", "kill", "--signal=STOP", PAGES)
    try:
        assert behind_nginx.ask("GET", playlist).headers["Cache-Control"] == "max-age=1"
        assert {it and it[1] for it in pictures(behind_nginx, playlist)} == {TAG}
    finally:
        guest.run("systemctl", "kill", "--signal=CONT", PAGES)
    main = guest.run("systemctl", "show", "--value", "--property=MainPID", "nginx").strip()
    assert set(guest.run("ps", "-o", "user=", "--ppid", main).split()) == {"www-data"}
