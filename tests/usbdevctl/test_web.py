"""login, session, share, status, package and timeouts."""

from __future__ import annotations

import json
import os
import pty
import select
import subprocess
from typing import Any

import pytest
from conftest import SANDBOX, RunOnHost

LINKS = "/mnt/ext/opt/apps/Velmora2"
SHARED_CAMERA = """
sim plug --hardware-only usb2-camera 3-1 >/dev/null
cat >/etc/config/usbdev.conf <<'END'
<velmora>
  <ch4><exists>1</exists><profile>2</profile><usbslot>3-1</usbslot><devname>Cam</devname><profilename>Door</profilename>
    <video><vnode>0</vnode></video></ch4>
</velmora>
END
link() { usbdevctl share show 2 --json | /usr/bin/python3 -c "import json, sys; print(json.load(sys.stdin)['$1'])"; }
"""
# An HTTP server that breaks the connection once it has the request.
RUDE_SERVER = """
import socket, struct
listener = socket.create_server(("127.0.0.1", 58080))
print(flush=True)
connection = listener.accept()[0]
connection.recv(1)
connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
connection.close()
"""


@pytest.fixture
def on_services() -> RunOnHost:
    """Runs a script on a fresh host whose services run."""

    def run(script: str) -> subprocess.CompletedProcess[str]:
        return subprocess.run(with_services(script), check=False, capture_output=True, text=True, timeout=60)

    return run


def with_services(script: str) -> list[str]:
    return [str(SANDBOX), "run", "--services", "--build", os.environ["USBDEV_BUILD_DIR"], "--", "sh", "-c", script]


def documents(text: str) -> list[dict[str, Any]]:
    """The JSON objects of an output, each of which has the schema's number."""
    found, decoder = [], json.JSONDecoder()
    while text := text.lstrip():
        document, end = decoder.raw_decode(text)
        assert document.pop("schema") == 1
        found.append(document)
        text = text[end:]
    return found


def test_the_host_accepts_the_right_password_only(on_services: RunOnHost) -> None:
    result = on_services(
        "echo secret | login-users add ann; echo secret | usbdevctl login ann; echo $?; "
        "echo Secret | usbdevctl login ann; echo $?"
    )
    assert result.stdout.split() == ["0", "1"]
    assert "usbdevctl: the host did not accept this user and password, or has no login service\n" in result.stderr


def test_a_session_is_open_until_it_is_logged_out(on_services: RunOnHost) -> None:
    result = on_services(
        """
        echo secret | login-users add ann
        ask() { /usr/bin/python3 -c "import sys, urllib.request as u; print(u.urlopen(sys.argv[1]).read().decode())" \
            "http://127.0.0.1:58080/cgi-bin/$1"; }
        sid=$(ask 'authLogin.cgi?user=ann&pwd=c2VjcmV0' | sed -n 's/.*authSid><!.CDATA.\\(.*\\)]]>.*/\\1/p')
        usbdevctl session "$sid" --json; echo $? >&2
        ask "authLogout.cgi?logout=1&sid=$sid" >/dev/null
        usbdevctl session "$sid" --json; echo $? >&2
        """
    )
    assert documents(result.stdout) == [{"open": True}, {"open": False}]
    assert result.stderr.split() == ["0", "3"]


@pytest.mark.parametrize("command", ["echo secret | usbdevctl login ann", "usbdevctl session 0123 --json"])
def test_a_login_service_that_breaks_off_is_a_failure(on_host: RunOnHost, command: str) -> None:
    result = on_host(f"/usr/bin/python3 -c '{RUDE_SERVER}' | {{ read -r ready; {command}; }}")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr.endswith("usbdevctl: the login service broke off\n")


def test_a_password_that_cannot_be_one_is_not_sent(on_host: RunOnHost) -> None:
    passwords = ("", "x" * 65, "a\\0b")
    result = on_host("; ".join(f"printf '{password}' | usbdevctl login ann; echo $?" for password in passwords))
    assert result.stdout.split() == ["2", "2", "2"]
    assert result.stderr.splitlines() == [
        "usbdevctl: there is no password",
        "usbdevctl: the password is longer than 64 bytes",
        "usbdevctl: the password has a zero byte",
    ]


def test_a_terminal_does_not_show_the_password() -> None:
    terminal, inner = pty.openpty()
    script = "echo secret | login-users add ann; usbdevctl login ann"
    with subprocess.Popen(with_services(script), stdin=inner, stdout=inner, stderr=inner, start_new_session=True) as process:
        os.close(inner)
        shown = read_until(terminal, b"Password: ")
        os.write(terminal, b"secret\n")
        shown += read_until(terminal, b"authentication OK")
        assert process.wait(timeout=20) == 0
    os.close(terminal)
    assert b"secret" not in shown


def read_until(terminal: int, awaited: bytes) -> bytes:
    shown = b""
    while awaited not in shown:
        assert select.select([terminal], [], [], 20)[0], f"{awaited!r} did not come, but {shown!r}"
        shown += os.read(terminal, 1024)
    return shown


def test_a_profile_that_is_not_shared_has_no_link(on_host: RunOnHost) -> None:
    result = on_host(SHARED_CAMERA + "usbdevctl share show 2 --json")
    assert documents(result.stdout) == [
        {
            "profile": 2,
            "profile_name": "Door",
            "sharing": False,
            "password": False,
            "ssid": None,
            "token": None,
            "hash": None,
            "page": None,
        }
    ]


def test_a_shared_profile_has_a_page_and_a_public_link(on_host: RunOnHost) -> None:
    result = on_host(SHARED_CAMERA + f"usbdevctl share on 2 --json; readlink {LINKS}/$(link hash) >&2")
    link = documents(result.stdout)[0]
    assert link["sharing"] is True
    assert link["page"] == f"/share?ssid={link['ssid']}&token={link['token']}"
    assert result.stderr == f"{LINKS}/hls/channel3\n"


def test_sharing_again_keeps_link_and_password(on_host: RunOnHost) -> None:
    result = on_host(
        SHARED_CAMERA + "echo pass | usbdevctl share on 2 --password-stdin --json; usbdevctl share on 2 --json"
    )
    first, second = documents(result.stdout)
    assert first["password"] is True
    assert second == first
    assert "pass" not in result.stdout.replace('"password"', "")


def test_a_new_password_gives_a_new_link(on_host: RunOnHost) -> None:
    result = on_host(
        SHARED_CAMERA + "usbdevctl share on 2 --json; echo pass | usbdevctl share on 2 --password-stdin --json"
    )
    open_link, protected = documents(result.stdout)
    assert protected["ssid"] == open_link["ssid"]
    assert {protected[key] == open_link[key] for key in ("token", "hash", "page")} == {False}


def test_a_share_password_is_not_cut(on_host: RunOnHost) -> None:
    result = on_host(SHARED_CAMERA + f"echo {'x' * 32} | usbdevctl share on 2 --password-stdin; usbdevctl share show 2")
    assert result.stderr == "usbdevctl: the password is longer than 31 bytes\n"
    assert result.stdout.splitlines()[2].split() == ["sharing", "off"]


def test_a_link_taken_back_leaves_nothing(on_host: RunOnHost) -> None:
    result = on_host(
        SHARED_CAMERA + "echo pass | usbdevctl share on 2 --password-stdin >/dev/null; usbdevctl share off 2; "
        f"usbdevctl share show 2 --json; ls {LINKS} | grep -x '[0-9a-f]\\{{32\\}}'"
    )
    link = documents(result.stdout)[0]
    assert (link["sharing"], link["password"], link["hash"]) == (False, False, None)


def test_a_renewed_link_replaces_the_old_one(on_host: RunOnHost) -> None:
    result = on_host(
        SHARED_CAMERA + "usbdevctl share on 2 >/dev/null; ssid=$(link ssid); token=$(link token); "
        'usbdevctl share renew 2 >/dev/null; usbdevctl share check "$ssid" "$token"; echo $?; '
        'usbdevctl share check "$(link ssid)" "$(link token)"'
    )
    assert result.stdout.split() == ["3", "opens", "yes", "profile", "2"]
    assert result.stderr == "usbdevctl: the link opens nothing: no profile has this share id\n"


def test_a_link_with_another_token_opens_nothing(on_host: RunOnHost) -> None:
    result = on_host(
        SHARED_CAMERA + "usbdevctl share on 2 >/dev/null; "
        'usbdevctl share check "$(link ssid)" 0 --json; usbdevctl share check "$(link ssid)" "$(link token)" --json'
    )
    assert documents(result.stdout) == [
        {"opens": False, "code": 9000, "reason": "the token is another one", "profile": 2},
        {"opens": True, "code": None, "reason": None, "profile": 2},
    ]


def test_a_profile_without_a_camera_cannot_be_shared(on_host: RunOnHost) -> None:
    result = on_host("for change in show on off renew; do usbdevctl share $change 1; echo $?; done")
    assert result.stdout.split() == ["1"] * 4
    assert set(result.stderr.splitlines()) == {
        "usbdevctl: profile 1 is bound to no camera, or the configuration cannot be written"
    }


def test_a_configuration_that_cannot_be_read_is_a_failure(on_host: RunOnHost) -> None:
    result = on_host(
        "echo '<velmora' >/etc/config/usbdev.conf; "
        "for ask in 'share show 1' 'share check 1 2' status; do usbdevctl $ask; echo $?; done"
    )
    assert result.stdout.split() == ["1"] * 3
    assert result.stderr.count("usbdevctl: the channel configuration cannot be read\n") == 3


def test_the_state_of_the_streams_is_shown(on_host: RunOnHost) -> None:
    result = on_host(
        SHARED_CAMERA + f"mkdir -p {LINKS}/web/hls/channel3; touch {LINKS}/web/hls/channel3/playlist.m3u8; "
        "reader=v4l2_read; bash -c \"exec -a '$reader 0' sleep 60\" & "
        'until [ "$(cat /proc/$!/comm)" = sleep ]; do :; done; usbdevctl status --json'
    )
    streams = documents(result.stdout)[0]["streams"]
    assert streams[2] == {
        "profile": 2,
        "profile_name": "Door",
        "camera": "0c45:6366",
        "source": "v4l2_read",
        "playlist": True,
        "live_view": True,
        "code": None,
        "reason": None,
    }
    assert [(row["profile"], row["live_view"], row["camera"]) for row in streams if row["profile"] != 2] == [
        (profile, None, None) for profile in (0, 1, 3)
    ]


def test_a_stream_that_cannot_be_shown_has_a_reason(on_host: RunOnHost) -> None:
    result = on_host(
        "echo '<velmora><ch0><exists>0</exists><profile>1</profile><usbslot>3-1</usbslot></ch0></velmora>' "
        ">/etc/config/usbdev.conf; usbdevctl status"
    )
    assert result.stdout.splitlines()[2].split(maxsplit=5) == ["1", "-", "-", "-", "off", "no, the device is not attached"]


def test_a_package_is_shown_as_it_is_registered(on_host: RunOnHost) -> None:
    result = on_host("usbdevctl package Velmora2 --json")
    assert documents(result.stdout) == [
        {
            "package": "Velmora2",
            "version": "2.1.0",
            "build": "20240318",
            "install_path": LINKS,
            "enabled": True,
        }
    ]


def test_a_package_that_the_host_does_not_have_is_none(on_host: RunOnHost) -> None:
    result = on_host("usbdevctl package Nothing --json")
    assert (result.stdout, result.stderr) == ("", "usbdevctl: the host has no package 'Nothing'\n")
    assert result.returncode == 3


def test_timeouts_are_counted_until_they_are_reset(on_host: RunOnHost) -> None:
    result = on_host(
        "usbdevctl timeouts add 3; usbdevctl timeouts add 3; usbdevctl timeouts add 0; usbdevctl timeouts; "
        "usbdevctl timeouts reset; usbdevctl timeouts --json"
    )
    table, _, rest = result.stdout.partition("{")
    assert [line.split() for line in table.splitlines()[1:]] == [["0", "1"], ["1", "0"], ["2", "0"], ["3", "2"]]
    assert documents("{" + rest) == [{"counters": [{"profile": profile, "timeouts": 0} for profile in range(4)]}]


def test_a_wrong_change_of_the_timeouts_changes_nothing(on_host: RunOnHost) -> None:
    result = on_host(
        "for wrong in add 'add 4' 'reset 1' 2 'add 1 --json'; do usbdevctl timeouts $wrong; echo $? >&2; done "
        "2>&1 >/dev/null | grep -x '[0-9]'; usbdevctl timeouts --json"
    )
    statuses, _, counters = result.stdout.partition("{")
    assert statuses.split() == ["2"] * 5
    assert [row["timeouts"] for row in documents("{" + counters)[0]["counters"]] == [0] * 4
