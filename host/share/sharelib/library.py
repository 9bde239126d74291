# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the share page asks the library."""

from __future__ import annotations

from dataclasses import dataclass

from usbdev import NotViewableError, ShareLink, UsbdevError, ViewerCode, hostinfo, web

DEFAULT_PORT = 8080


@dataclass(frozen=True)
class Link:
    """The stream of a share link, and the password that still has to be checked."""

    name: str  # empty if it has none
    stream: str
    password: bytes | None


class Library:
    def web_port(self) -> int:
        """Returns the TCP port of the host's web pages."""
        try:
            port = hostinfo.http_port() or 0
        except UsbdevError:
            return DEFAULT_PORT
        return port if port > 0 else DEFAULT_PORT

    def open(self, ssid: str, token: str) -> tuple[int, Link | None]:
        """Checks whether a share id and token open a stream: returns the result code, and the link if they do."""
        try:
            link = web.share_link(web.opened_profile(ssid, token))
        except NotViewableError as problem:
            return problem.code or ViewerCode.WRONG_TOKEN, None
        except UsbdevError:
            return ViewerCode.WRONG_TOKEN, None
        # The link may have been renewed between the two calls, and the old token must not open it.
        if (link.ssid, link.token) != (ssid, token):
            return ViewerCode.WRONG_TOKEN, None
        return ViewerCode.OPENS, _link(link)


def _link(link: ShareLink) -> Link:
    name = link.profilename.encode("utf-8", "surrogateescape").decode(errors="replace")
    password = link.shrpwd.encode("utf-8", "surrogateescape")
    return Link(name, link.hash_string, password if link.pwdenable else None)
