# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The installed service for many hosts, with a broker on the same machine, set up with the commands of fleet.md."""

from __future__ import annotations

import json
import re
import time
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

import pytest
from ground.channel import PATIENCE
from ground.ground import PAUSE, Port
from ground.grounds import RealGround
from ground.guest import Guest
from ground.streams import SMALL, wait_for_playlist
from ground.visitor import Visitor

PORT = Port("xhci", "1")
FLEET, STREAMS = "usbdev-fleet", "usbdev-streams"
DOCUMENT = Path(__file__).resolve().parents[3] / "docs/fleet.md"
FOLDER = "/etc/usbdev-host"
SECRET = f"{FOLDER}/password"
TEXTS = {
    SECRET: "rosemary",
    f"{FOLDER}/fleet.ini": f"""
[broker]
address = 127.0.0.1
tls = no
user = garden
password_file = {SECRET}
[host]
name = garden
[commands]
on = yes
user = garden-commands
password_file = {SECRET}
[metrics]
on = yes
""",
}
PASSWORDS = "/etc/mosquitto/passwords"
# The users of the example, all with the same password.
BROKER = f"""
set -e; cd /etc/mosquitto; touch {PASSWORDS}
for user in viewer operator garden garden-commands; do mosquitto_passwd -b {PASSWORDS} $user {TEXTS[SECRET]}; done
chown mosquitto {PASSWORDS}
cat >conf.d/cameras.conf <<'END'
listener 1883 127.0.0.1
allow_anonymous false
password_file {PASSWORDS}
acl_file /usr/share/doc/usbdev-host/examples/mosquitto/fleet.acl
END
systemctl restart mosquitto
"""
VIEWER = ("-h", "127.0.0.1", "-u", "viewer", "-P", TEXTS[SECRET])
OPERATOR = ("-h", "127.0.0.1", "-u", "operator", "-P", TEXTS[SECRET])
REQUEST = ("mosquitto_rr", *OPERATOR, "-W", str(PATIENCE), "-e", "usbdev/garden/response/ann")
SEEN = "/tmp/availability"
OF_THE_STREAMS = "setpriv --reuid=usbdev --regid=usbdev --groups=video,audio"
OUTSIDER = "setpriv --reuid=4711 --regid=4711 --clear-groups"


def documented() -> str:
    """Returns the commands of fleet.md after which the service runs; the editor writes what is in TEXTS."""
    _, _, block = DOCUMENT.read_text().partition("kernel.scenarios runs it -->\n```sh\n")
    edited = re.sub(r"^sudoedit (\S+).*$", lambda it: f"cat >{it[1]} <<'END'\n{TEXTS[it[1]]}\nEND", block, flags=re.MULTILINE)
    return edited.partition("```")[0].replace("sudo ", "")


@pytest.fixture(scope="module")
def ground(guest: Guest) -> Iterator[RealGround]:
    """The service publishes."""
    real = RealGround(guest).reset()
    guest.shell(BROKER)
    guest.shell(f"set -e; {documented()}")
    try:
        yield real
    finally:
        real.end()
        guest.run("systemctl", "disable", "--quiet", "--now", FLEET, "mosquitto")


def state_in_which(guest: Guest, wanted: Callable[[dict[str, Any]], bool]) -> dict[str, Any]:
    """Waits until the state that the broker keeps is so."""
    patience = time.monotonic() + PATIENCE
    while True:
        kept = guest.run("mosquitto_sub", *VIEWER, "-C", "1", "-W", str(PATIENCE), "-t", "usbdev/garden/state")
        state: dict[str, Any] = json.loads(kept)
        if wanted(state):
            return state
        assert time.monotonic() < patience, state
        time.sleep(PAUSE)


def ask(guest: Guest, request: str, **body: Any) -> dict[str, Any]:
    asked = ("-t", f"usbdev/garden/request/{request}", "-D", "publish", "correlation-data", request, "-m", json.dumps(body))
    answer: dict[str, Any] = json.loads(guest.run(*REQUEST, *asked))
    return answer


def process(guest: Guest, unit: str) -> str:
    return guest.run("systemctl", "show", "--value", "--property=MainPID", unit).strip()


def test_the_broker_has_a_camera_that_is_plugged_in_and_that_it_streams(guest: Guest, ground: RealGround) -> None:
    ground.plug("nameless-webcam", PORT)
    row = state_in_which(guest, lambda state: state["channels"][0]["state"] == "plugged")["channels"][0]
    assert (row["port"], row["profile"], row["streams"]) == (ground.slot(PORT), None, False)
    ground.usbdevctl("assign", row["port"], "0")
    ground.usbdevctl("stream", "set", "0", *SMALL, "--codec", "mjpeg")
    wait_for_playlist(guest)
    row = state_in_which(guest, lambda state: state["channels"][0]["streams"])["channels"][0]
    assert (row["profile"], row["width"], row["reasons"]) == (0, 160, [])


def test_requests_change_the_stream_and_share_it_and_what_is_stored_stays_the_groups(guest: Guest, ground: RealGround) -> None:
    assert ask(guest, "stream", profile=0, rate=10.0)["result"]["taken"] == {"rate": 10.0}
    assert ask(guest, "share", profile=0, action="on")["result"] == {"on": True, "password": False}
    row = state_in_which(guest, lambda state: state["channels"][0]["shared"])["channels"][0]
    assert row["rate"] == 10.0
    assert guest.run("stat", "--format=%a %G", "/var/lib/usbdev/config/usbdev.conf") == "660 video\n"
    ground.usbdevctl("share", "off", "0")


def test_metrics_count_what_services_of_another_user_have_counted(guest: Guest, ground: RealGround) -> None:
    answer = Visitor(guest, "http://127.0.0.1:10172").ask("GET", "/metrics")
    assert answer.status == 200
    found = dict(line.rsplit(" ", 1) for line in answer.content.decode().splitlines() if not line.startswith("#"))
    for service, runs in {"devices": "1.0", "streams": "1.0", "pages": "0.0", "fleet": "1.0", "login": "0.0"}.items():
        assert found[f'usbdev_service_up{{service="{service}"}}'] == runs
    assert (found["usbdev_up"], found['usbdev_stream_wanted{channel="0"}']) == ("1.0", "1.0")
    assert float(found['usbdev_plug_events_total{action="plugged",device="camera"}']) >= 1


def test_the_broker_says_offline_when_the_service_is_stopped_and_when_it_is_killed(guest: Guest, ground: RealGround) -> None:
    listen = " ".join(["mosquitto_sub", *VIEWER, "-W", str(3 * PATIENCE), "-C", "5", "-t", "usbdev/garden/availability"])
    listening = guest.start("sh", "-c", f"{listen} >{SEEN}")
    for seen, words in enumerate((("stop", FLEET), ("start", FLEET), ("kill", "--signal=KILL", FLEET)), 1):
        guest.wait(f"test $(wc --lines <{SEEN}) = {seen}")
        guest.run("systemctl", *words)
    assert listening.result(timeout=3 * PATIENCE).status == 0
    assert guest.run("cat", SEEN).split() == ["online", "offline", "online", "offline", "online"]


def test_the_password_is_the_services_and_roots_alone(guest: Guest, ground: RealGround) -> None:
    assert guest.run("stat", "--format=%a %U", SECRET) == "600 usbdev-fleet\n"
    seen = f"/proc/{process(guest, FLEET)}/root{SECRET}"
    guest.run("cat", seen)
    for user in (OF_THE_STREAMS, OUTSIDER):
        guest.shell(f"! {user} cat {SECRET} 2>/dev/null && ! {user} cat {seen} 2>/dev/null")
    guest.shell(f"test ! -e /proc/{process(guest, STREAMS)}/root{FOLDER}")
    guest.shell(f"! journalctl --unit={FLEET} | grep --quiet {TEXTS[SECRET]}")


def test_with_a_password_that_others_may_read_the_service_does_not_start(guest: Guest, ground: RealGround) -> None:
    guest.run("chmod", "644", SECRET)
    assert guest.start("systemctl", "restart", FLEET).result(PATIENCE).status != 0
    ended = guest.run("systemctl", "show", "--property=ActiveState,ExecMainStatus", FLEET)
    assert set(ended.split()) == {"ActiveState=failed", "ExecMainStatus=78"}
    assert "'chmod 600' mends that" in guest.run("journalctl", f"--unit={FLEET}")
    guest.run("chmod", "600", SECRET)
    guest.run("systemctl", "restart", FLEET)
