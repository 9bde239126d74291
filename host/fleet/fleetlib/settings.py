# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The file of settings. Whatever is in it is checked before anything is sent."""

from __future__ import annotations

import ipaddress
import re
import socket
import ssl
from configparser import ConfigParser
from configparser import Error as ParserError
from dataclasses import dataclass
from pathlib import Path

FILE = Path("/etc/usbdev-host/fleet.ini")
MANUAL = "usbdev-fleet(8) and docs/fleet.md describe it"
PORT, PORT_WITH_TLS = 1883, 8883
METRICS_PORT = 10172
LONGEST_PASSWORD = 256  # bytes
NAME = re.compile(r"[A-Za-z0-9_-]{1,64}")  # a part of topics, and of the names of devices
PREFIX = re.compile(r"[A-Za-z0-9_-]{1,64}(/[A-Za-z0-9_-]{1,64}){0,3}")
LOOPBACK = ("127.0.0.1", "::1", "localhost")
CREDENTIALS = {"user", "password_file", "certificate", "key"}
SECTIONS = {
    "broker": {"address", "port", "tls", "ca"} | CREDENTIALS,
    "host": {"name"},
    "discovery": {"on", "prefix"},
    "commands": {"on"} | CREDENTIALS,
    "metrics": {"on", "address", "port"} | CREDENTIALS,
}


class SettingsError(Exception):
    """The service cannot start with these settings; the text gives the reason."""


@dataclass(frozen=True)
class Login:
    """Who connects: a user with a password, a certificate with its key, both or nobody."""

    user: str | None = None
    password: str | None = None
    certificate: str | None = None
    key: str | None = None


@dataclass(frozen=True)
class Broker:
    address: str
    port: int
    tls: bool
    ca: str | None  # without it the machine's authorities are trusted


@dataclass(frozen=True)
class Metrics:
    """Where metrics are served, with which certificate, and to whom."""

    address: str
    port: int
    certificate: str | None
    key: str | None
    user: str | None
    password: str | None


@dataclass(frozen=True)
class Settings:
    """Of what is published to a broker."""

    broker: Broker
    login: Login
    host: str
    discovery: bool
    prefix: str  # of the discovery's topics
    commands: Login | None


def read(file: Path = FILE) -> tuple[Settings | None, Metrics | None]:
    """Returns what is published to a broker, and what is served; raises SettingsError if it is neither."""
    parser = ConfigParser(interpolation=None, default_section="")
    if not file.exists():
        raise SettingsError(f"{file} is missing; {MANUAL}")
    try:
        parser.read_string(file.read_text(encoding="utf-8"), str(file))
        return _all(parser)
    except (OSError, ParserError, ValueError) as problem:  # text that is not UTF-8 is a ValueError
        raise SettingsError(f"{file}: {' '.join(str(problem).split())}") from None


def _all(parser: ConfigParser) -> tuple[Settings | None, Metrics | None]:
    for section in parser.sections():
        if unknown := set(parser[section]) - SECTIONS.get(section, set()):
            raise ValueError(f"[{section}] has no setting {min(unknown)}")
    metrics = _metrics(parser) if parser.getboolean("metrics", "on", fallback=False) else None
    if metrics is not None and not {"broker", "discovery", "commands"} & set(parser.sections()):
        return None, metrics
    return _settings(parser), metrics


def _settings(parser: ConfigParser) -> Settings:
    broker = _broker(parser)
    login = _login(parser, "broker", broker)
    commands = _login(parser, "commands", broker) if parser.getboolean("commands", "on", fallback=False) else None
    if commands is not None and (commands == login or not (commands.user or commands.certificate)):
        raise ValueError("[commands] needs a user or a certificate of its own")
    return Settings(
        broker, login, host=_host(parser), commands=commands,
        discovery=parser.getboolean("discovery", "on", fallback=False),
        prefix=_proper(PREFIX, parser.get("discovery", "prefix", fallback="homeassistant"), "prefix"),
    )  # fmt: skip


def _broker(parser: ConfigParser) -> Broker:
    address = parser.get("broker", "address", fallback="")
    if not address:
        raise ValueError("[broker] needs an address")
    tls = parser.getboolean("broker", "tls", fallback=True)
    if not tls and address not in LOOPBACK:
        raise ValueError("[broker] may have tls = no only for a broker on this machine")
    port = _port(parser, "broker", PORT_WITH_TLS if tls else PORT)
    return Broker(address, port, tls, parser.get("broker", "ca", fallback=None))


def _metrics(parser: ConfigParser) -> Metrics:
    """Others than this machine get nothing without a password, and no password without TLS."""
    given = _credentials(parser, "metrics")
    address = parser.get("metrics", "address", fallback="127.0.0.1")
    if (given["user"] is None) != (given["password_file"] is None):
        raise ValueError("[metrics] needs a user and a password_file together")
    if not ipaddress.ip_address(address).is_loopback and None in given.values():
        raise ValueError(f"[metrics] needs a certificate, a key, a user and a password_file to be served at {address}")
    file = given["password_file"]
    found = Metrics(address, _port(parser, "metrics", METRICS_PORT), given["certificate"], given["key"], given["user"],
                    file and _password(Path(file)))  # fmt: skip
    server_context(found)  # which fails if the files are missing, or do not belong together
    return found


def server_context(metrics: Metrics) -> ssl.SSLContext | None:
    if metrics.certificate is None:
        return None
    context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
    context.load_cert_chain(metrics.certificate, metrics.key, password="")  # nobody is there to type one
    return context


def _credentials(parser: ConfigParser, section: str) -> dict[str, str | None]:
    given = {name: parser.get(section, name, fallback=None) for name in CREDENTIALS}
    if (given["certificate"] is None) != (given["key"] is None):
        raise ValueError(f"[{section}] needs a certificate and its key together")
    return given


def _port(parser: ConfigParser, section: str, usual: int) -> int:
    port = parser.getint(section, "port", fallback=usual)
    if not 0 < port < 65536:
        raise ValueError(f"[{section}] has the port {port}")
    return port


def _login(parser: ConfigParser, section: str, broker: Broker) -> Login:
    given = _credentials(parser, section)
    if given["certificate"] and not broker.tls:
        raise ValueError(f"[{section}] has a certificate, which needs tls")
    file = given["password_file"]
    if file is not None and given["user"] is None:
        raise ValueError(f"[{section}] has a password and no user")
    return Login(given["user"], file and _password(Path(file)), given["certificate"], given["key"])


def _password(file: Path) -> str:
    if file.stat().st_mode & 0o077:
        raise ValueError(f"{file} has a password, which others may read; 'chmod 600' mends that")
    with file.open(encoding="utf-8") as opened:
        password = opened.readline(LONGEST_PASSWORD + 1).removesuffix("\n")
    if not 0 < len(password) <= LONGEST_PASSWORD:
        raise ValueError(f"{file} has no password in its first line")
    return password


def _host(parser: ConfigParser) -> str:
    given = parser.get("host", "name", fallback=None)
    return _proper(NAME, given if given is not None else socket.gethostname().partition(".")[0], "name")


def _proper(pattern: re.Pattern[str], text: str, what: str) -> str:
    if not pattern.fullmatch(text):
        raise ValueError(f"the {what} {text!r} does not consist of letters, digits, - and _")
    return text
