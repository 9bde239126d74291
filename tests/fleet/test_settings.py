# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The file of settings."""

from __future__ import annotations

import socket
from pathlib import Path

import pytest
from conftest import FLEET, Certificates
from fleetlib import settings
from fleetlib.service import main
from fleetlib.settings import Broker, Login, Metrics, Settings, SettingsError


def read(folder: Path, text: str) -> tuple[Settings | None, Metrics | None]:
    file = folder / "fleet.ini"
    file.write_text(text)
    return settings.read(file)


def password(folder: Path, text: str = "secret\n", mode: int = 0o600) -> Path:
    file = folder / "password"
    file.write_text(text)
    file.chmod(mode)
    return file


def test_only_the_broker_has_to_be_named(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(socket, "gethostname", lambda: "garden.example.org")
    assert read(tmp_path, "[broker]\naddress = broker.example.org\n") == (Settings(
        Broker("broker.example.org", 8883, tls=True, ca=None), Login(), "garden", discovery=False, prefix="homeassistant", commands=None
    ), None)  # fmt: skip


def test_metrics_are_served_to_this_machine_when_they_are_on_and_need_no_broker(tmp_path: Path) -> None:
    assert read(tmp_path, "[metrics]\non = yes\n[host]\nname = garden\n") == (None, Metrics("127.0.0.1", 10172, *[None] * 4))
    given = read(tmp_path, "[broker]\naddress = a\n[metrics]\non = yes\nport = 9000\naddress = ::1\n")
    assert given[0] is not None and given[1] == Metrics("::1", 9000, *[None] * 4)


def test_metrics_are_served_to_others_with_tls_and_a_password(tmp_path: Path, ours: Certificates) -> None:
    text = (f"[metrics]\non = yes\naddress = 10.0.0.1\ncertificate = {ours.server}\nkey = {ours.server_key}\n"
            f"user = prometheus\npassword_file = {password(tmp_path)}\n")  # fmt: skip
    _, given = read(tmp_path, text)
    assert given == Metrics("10.0.0.1", 10172, ours.server, ours.server_key, "prometheus", "secret")
    for name in ("certificate", "key", "user", "password_file"):
        with pytest.raises(SettingsError, match="metrics. needs"):
            read(tmp_path, "".join(line for line in text.splitlines(keepends=True) if not line.startswith(name)))


def test_everything_can_be_set(tmp_path: Path) -> None:
    file = password(tmp_path)
    given = read(tmp_path, f"""
[broker]
address = 10.0.0.1
port = 2000
ca = /ca.pem
user = garden
password_file = {file}
certificate = /c.pem
key = /k.pem
[host]
name = garden-2
[discovery]
on = yes
prefix = home/assistant
[commands]
on = yes
user = garden-commands
password_file = {file}
""")
    assert given == (Settings(
        Broker("10.0.0.1", 2000, tls=True, ca="/ca.pem"), Login("garden", "secret", "/c.pem", "/k.pem"), "garden-2",
        discovery=True, prefix="home/assistant", commands=Login("garden-commands", "secret")), None)  # fmt: skip


@pytest.mark.parametrize(("text", "reason"), [
    ("", "[broker] needs an address"),
    ("[broker]\naddress =\n", "[broker] needs an address"),
    ("[broker]\naddress = 10.0.0.1\ntls = no\n", "[broker] may have tls = no only for a broker on this machine"),
    ("[broker]\naddress = a\nport = 65536\n", "[broker] has the port 65536"),
    ("[broker]\naddress = a\nport = x\n", "invalid literal"),
    ("[broker]\naddress = a\nadress = a\n", "[broker] has no setting adress"),
    ("[brokers]\naddress = a\n", "[brokers] has no setting address"),
    ("[broker]\naddress = a\n[host]\nname = a/b\n", "the name 'a/b' does not consist of letters"),
    ("[broker]\naddress = a\n[host]\nname = +\n", "the name '+' does not consist of letters"),
    (f"[broker]\naddress = a\n[host]\nname = {'a' * 65}\n", "does not consist of letters"),
    ("[broker]\naddress = a\n[discovery]\nprefix = a/#\n", "the prefix 'a/#' does not consist of letters"),
    ("[broker]\naddress = a\ncertificate = /c.pem\n", "[broker] needs a certificate and its key together"),
    ("[broker]\naddress = ::1\ntls = no\ncertificate = /c\nkey = /k\n", "[broker] has a certificate, which needs tls"),
    ("[broker]\naddress = a\n[commands]\non = yes\n", "[commands] needs a user or a certificate of its own"),
    ("[broker]\naddress = a\nuser = u\n[commands]\non = yes\nuser = u\n", "[commands] needs a user or a certificate of its own"),
    ("address = a\n", "File contains no section headers"),
    ("[broker]\naddress = a\npassword_file = /missing\n", "[broker] has a password and no user"),
    ("[broker]\naddress = a\nuser = u\npassword_file = /missing\n", "No such file"),
    ("[metrics]\non = no\n", "[broker] needs an address"),
    ("[metrics]\non = perhaps\n", "Not a boolean"),
    ("[metrics]\non = yes\naddress = garden\n", "'garden' does not appear to be an IPv4 or IPv6 address"),
    ("[metrics]\non = yes\naddress = 0.0.0.0\n", "a password_file to be served at 0.0.0.0"),
    ("[metrics]\non = yes\nport = 0\n", "[metrics] has the port 0"),
    ("[metrics]\non = yes\ntls = no\n", "[metrics] has no setting tls"),
    ("[metrics]\non = yes\nuser = u\n", "[metrics] needs a user and a password_file together"),
    ("[metrics]\non = yes\nkey = /k.pem\n", "[metrics] needs a certificate and its key together"),
    ("[metrics]\non = yes\ncertificate = /c.pem\nkey = /k.pem\n", "No such file"),
    ("[metrics]\non = yes\n[commands]\non = yes\n", "[broker] needs an address"),
])  # fmt: skip
def test_what_is_wrong_is_named(tmp_path: Path, text: str, reason: str) -> None:
    with pytest.raises(SettingsError) as raised:
        read(tmp_path, text)
    assert reason in str(raised.value)


@pytest.mark.parametrize("mode", [0o640, 0o604, 0o666])
def test_a_password_that_others_may_read_is_refused(tmp_path: Path, mode: int) -> None:
    file = password(tmp_path, mode=mode)
    with pytest.raises(SettingsError, match="others may read"):
        read(tmp_path, f"[broker]\naddress = a\nuser = u\npassword_file = {file}\n")


@pytest.mark.parametrize("text", ["", "\nsecret\n", "x" * 257])
def test_a_password_is_one_line_of_bounded_length(tmp_path: Path, text: str) -> None:
    file = password(tmp_path, text)
    with pytest.raises(SettingsError, match="no password in its first line"):
        read(tmp_path, f"[broker]\naddress = a\nuser = u\npassword_file = {file}\n")


def test_without_settings_the_service_prints_why_it_does_not_start(tmp_path: Path, capfd: pytest.CaptureFixture[str]) -> None:
    assert main(["--settings", str(tmp_path / "fleet.ini")]) == 78
    assert f"{tmp_path}/fleet.ini is missing; usbdev-fleet(8) and docs/fleet.md describe it" in capfd.readouterr().err


def test_the_example_can_be_used_as_it_is() -> None:
    published, served = settings.read(FLEET / "fleet.ini")
    assert published is not None and published.broker.address == "127.0.0.1" and served is None
