# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The page of the metrics: who gets them, in which format, and what it does with whatever else comes."""

from __future__ import annotations

import asyncio
import shutil
import signal
from collections.abc import Callable, Coroutine, Iterator
from pathlib import Path
from socket import create_connection
from typing import Any

import pytest
from conftest import PATIENCE, VERSIONS, Certificates, free_port, made_up, soon
from fleetlib import lock_probe, metrics, metrics_page
from fleetlib.settings import Metrics, server_context
from prometheus_client.core import Metric
from prometheus_client.openmetrics.parser import text_string_to_metric_families as openmetrics
from prometheus_client.parser import text_string_to_metric_families as plain
from servicelib import counts
from tornado.httpclient import HTTPClientError, HTTPRequest, HTTPResponse
from tornado.simple_httpclient import SimpleAsyncHTTPClient

LOGIN = {"auth_username": "prometheus", "auth_password": "secret"}
OPENMETRICS = "application/openmetrics-text; version=0.0.1; charset=utf-8"
NO_ANSWER = 599
PLAIN = "text/plain; version=0.0.4; charset=utf-8"


@pytest.fixture(autouse=True)
def host(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    """Files of services and a configuration that are not the machine's own."""
    monkeypatch.setattr(counts, "FOLDER", tmp_path)
    monkeypatch.setattr(lock_probe, "CONFIGURATION", tmp_path / "usbdev.conf")


Fetch = Callable[..., Coroutine[Any, Any, HTTPResponse]]


def served(scenario: Callable[[Fetch, int], Coroutine[Any, Any, None]], host: metrics.Host | None = None, **members: Any) -> None:
    """Runs the scenario with a page, which it gets answers from."""
    given = {"certificate": None, "key": None, "user": None, "password": None, **members}
    settings = Metrics("127.0.0.1", free_port(), **given)

    async def work() -> None:
        made = host or metrics.Host(VERSIONS)
        made.note(made_up())
        context = server_context(settings)
        where = metrics_page.listen(settings, made, context)
        loop = asyncio.get_running_loop()
        loop.add_signal_handler(signal.SIGHUP, metrics_page.read_certificate_again, settings, context)
        client = SimpleAsyncHTTPClient(force_instance=True)

        async def fetch(path: str = "/metrics", scheme: str = where.split()[2].split(":")[0], **options: Any) -> HTTPResponse:
            url = f"{scheme}://127.0.0.1:{settings.port}{path}"
            request = HTTPRequest(url, request_timeout=PATIENCE, **options)
            try:
                return await client.fetch(request, raise_error=False)
            except (OSError, HTTPClientError):
                return HTTPResponse(request, NO_ANSWER)

        await scenario(fetch, settings.port)

    asyncio.run(work())


@pytest.mark.parametrize(("accept", "kind"), [
    ("application/openmetrics-text;q=0.75,text/plain;q=0.5,*/*;q=0.1", OPENMETRICS),
    ("text/plain", PLAIN), ("", PLAIN), ("text/html", PLAIN)])  # fmt: skip
def test_who_asks_for_openmetrics_gets_it_and_others_the_older_format(accept: str, kind: str) -> None:
    async def scenario(fetch: Fetch, port: int) -> None:
        answer = await fetch(headers={"Accept": accept}, decompress_response=True)
        assert (answer.code, answer.headers["Content-Type"]) == (200, kind)
        families = list((openmetrics if kind == OPENMETRICS else plain)(answer.body.decode()))
        assert "usbdev_channels" in {family.name for family in families}

    served(scenario)


def test_with_a_password_nobody_gets_in_without_it() -> None:
    async def scenario(fetch: Fetch, port: int) -> None:
        for login in ({}, {**LOGIN, "auth_password": "wrong"}, {**LOGIN, "auth_username": "root"}, {**LOGIN, "auth_password": "\xff" * 99}):
            answer = await fetch(**login)
            assert answer.code == 401 and b"usbdev" not in answer.body and answer.headers["WWW-Authenticate"].startswith("Basic ")
        for header in ("Basic", "Basic \x80", "Bearer secret", "Basic " + "x" * 5000):
            assert (await fetch(headers={"Authorization": header.encode("latin-1").decode("latin-1")})).code in (401, 429)

    served(scenario, user="prometheus", password="secret")


def test_with_the_password_the_metrics_are_there() -> None:
    async def scenario(fetch: Fetch, port: int) -> None:
        assert (await fetch(**LOGIN)).code == 200

    served(scenario, user="prometheus", password="secret")


def test_passwords_cannot_be_tried_out_and_who_asks_without_one_is_not_counted() -> None:
    async def scenario(fetch: Fetch, port: int) -> None:
        for _ in range(10):
            assert (await fetch()).code == 401
        for number in range(5):
            assert (await fetch(auth_username="prometheus", auth_password=str(number))).code == 401
        refused = await fetch(**LOGIN)
        assert refused.code == 429 and 0 < int(refused.headers["Retry-After"]) <= 60

    served(scenario, user="prometheus", password="secret")


def test_with_a_certificate_only_tls_is_spoken(ours: Certificates, foreign: Certificates) -> None:
    async def scenario(fetch: Fetch, port: int) -> None:
        assert (await fetch(ca_certs=ours.ca)).code == 200
        assert (await fetch(ca_certs=foreign.ca)).code == NO_ANSWER
        assert (await fetch(scheme="http")).code == NO_ANSWER

    served(scenario, certificate=ours.server, key=ours.server_key)


def test_a_renewed_certificate_is_read_at_a_reload_and_one_without_its_key_changes_nothing(
    ours: Certificates, foreign: Certificates, tmp_path: Path, capfd: pytest.CaptureFixture[str]
) -> None:
    certificate, key = (shutil.copy(file, tmp_path) for file in (ours.server, ours.server_key))

    async def scenario(fetch: Fetch, port: int) -> None:
        assert (await fetch(ca_certs=ours.ca)).code == 200
        shutil.copy(foreign.server, certificate)
        signal.raise_signal(signal.SIGHUP)
        await soon(lambda: "goes on with the old certificate" in capfd.readouterr().err)
        assert (await fetch(ca_certs=ours.ca)).code == 200
        shutil.copy(foreign.server_key, key)
        signal.raise_signal(signal.SIGHUP)
        await soon(lambda: "read the certificate again" in capfd.readouterr().err)
        assert (await fetch(ca_certs=foreign.ca)).code == 200

    served(scenario, certificate=certificate, key=key)


@pytest.mark.parametrize(("path", "options", "code"), [
    ("/", {}, 404), ("/metrics/", {}, 404), ("/metrics?name=x", {}, 200), ("/api/v1/state", {}, 404),
    ("/metrics", {"method": "POST", "body": ""}, 405), ("/metrics", {"method": "DELETE"}, 405),
    ("/metrics", {"method": "PUT", "body": "x" * 5000}, 413), ("/metrics", {"headers": {"X-Long": "x" * 70000}}, NO_ANSWER),
    ("/metrics", {"headers": {"Transfer-Encoding": "chunked"}}, 400),
])  # fmt: skip
def test_there_is_nothing_else(path: str, options: dict[str, Any], code: int) -> None:
    async def scenario(fetch: Fetch, port: int) -> None:
        answer = await fetch(path, **options)
        assert answer.code == code
        assert (await fetch()).code == 200

    served(scenario)


def test_who_opens_many_connections_keeps_nobody_out() -> None:
    async def scenario(fetch: Fetch, port: int) -> None:
        many = [create_connection(("127.0.0.1", port)) for _ in range(450)]
        for one in many[::2]:
            one.send(b"GET /metrics HTTP/1.1\r\nHost: x\r\n")  # and no end
        assert (await fetch()).code == 200
        for one in many:
            one.close()

    served(scenario)


def test_what_fails_is_not_told_to_who_asks(capfd: pytest.CaptureFixture[str]) -> None:
    class Failing(metrics.Host):
        def collect(self) -> Iterator[Metric]:
            raise ValueError("a secret")

    async def scenario(fetch: Fetch, port: int) -> None:
        answer = await fetch()
        assert answer.code == 500 and b"secret" not in answer.body and b"ValueError" not in answer.body

    served(scenario, Failing(VERSIONS))
    assert "ValueError in test_metrics_page.py" in (said := capfd.readouterr().err) and "secret" not in said
