# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The page from which a monitoring system reads the metrics."""

from __future__ import annotations

import base64
import hmac
import ssl
import sys

from prometheus_client.exposition import choose_encoder
from prometheus_client.registry import Collector, CollectorRegistry
from servicelib.attempts import Attempts
from servicelib.http import Server
from servicelib.lifecycle import say
from sharelib.answers import Answer, NothingThere
from tornado.web import Application

from fleetlib.lock_probe import LockProbe
from fleetlib.settings import Metrics, server_context

PATIENCE_SECONDS = 10


class MetricsAnswer(Answer):
    def initialize(self, settings: Metrics, registry: CollectorRegistry, probe: LockProbe, attempts: Attempts) -> None:
        self._settings = settings
        self._registry = registry
        self._probe = probe
        self._attempts = attempts

    def prepare(self) -> None:
        super().prepare()
        if self._settings.user is not None:
            self._check_password(f"{self._settings.user}:{self._settings.password}")

    async def get(self) -> None:
        await self._probe.measure()
        encode, kind = choose_encoder(self.request.headers.get("Accept", ""))
        self.set_header("Content-Type", kind)
        self.finish(encode(self._registry))

    def _check_password(self, login: str) -> None:
        visitor = (self.request.remote_ip or "", "metrics")
        if pause := self._attempts.pause(visitor):
            self._refuse(429, "Retry-After", str(pause))
            return
        expected = b"Basic " + base64.b64encode(login.encode())
        given = self.request.headers.get("Authorization", "").encode()
        if not hmac.compare_digest(given, expected):
            if given:  # many programs ask without a password first
                self._attempts.add_wrong(visitor)
            self._refuse(401, "WWW-Authenticate", 'Basic realm="metrics", charset="UTF-8"')

    def _refuse(self, status: int, header: str, value: str) -> None:
        self.set_status(status)
        self.set_header(header, value)
        self.finish()


def listen(settings: Metrics, host: Collector, context: ssl.SSLContext | None) -> str:
    """Serves the metrics as long as the event loop runs, with TLS if there is a context; returns where."""
    registry = CollectorRegistry()
    registry.register(host)
    parts = {"settings": settings, "registry": registry, "probe": LockProbe(), "attempts": Attempts()}
    server = Server(
        Application(
            [("/metrics", MetricsAnswer, parts)],
            default_handler_class=NothingThere,
            log_function=lambda _: None,
        ),
        ssl_options=context,
        idle_connection_timeout=PATIENCE_SECONDS,
        body_timeout=PATIENCE_SECONDS,
        max_body_size=sys.maxsize,  # a body that is too long gets an answer
    )
    server.listen(settings.port, settings.address)
    return f"metrics at {'https' if context else 'http'}://{settings.address}:{settings.port}/metrics"


def read_certificate_again(settings: Metrics, context: ssl.SSLContext | None) -> None:
    """Takes it for the connections that are made from now on, if it can be used."""
    if context is None or settings.certificate is None:
        return
    try:
        server_context(settings)  # the other one would keep half of a certificate and a key that do not belong together
        context.load_cert_chain(settings.certificate, settings.key, password="")
        say("read the certificate again")
    except OSError as problem:
        say(f"goes on with the old certificate: {problem}")
