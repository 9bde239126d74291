# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The pictures of a profile, for a user who is signed in: no share link is needed."""

from __future__ import annotations

from pathlib import Path

from servicelib.places import STREAMS
from sharelib.live import LiveAnswer
from sharelib.streams import PLAYLIST, StreamFile, read_file
from tornado.web import HTTPError

from ownerlib.answers import SignedIn, SignedInSocket
from ownerlib.host import Host

FILES = r"([A-Za-z0-9_-]+\.(?:m3u8|ts|m4s|mp4))"
LARGEST_PICTURE = 8 << 20


class Live(SignedInSocket, LiveAnswer):
    """The stream as it comes, as long as the session is open."""

    def initialize(self, host: Host) -> None:  # type: ignore[override]
        self.host = host
        LiveAnswer.initialize(self, host.feeds)

    def folder(self) -> Path | None:
        return STREAMS / f"channel{int(self.path_args[0]) + 1}" if self.host.sessions.is_open(self.session_id) else None


class File(SignedIn, StreamFile):
    """The playlist and the segments."""

    def initialize(self, host: Host) -> None:  # type: ignore[override]
        self.host = host
        StreamFile.initialize(self, str(STREAMS))

    async def get(self, profile: str, file: str) -> None:  # type: ignore[override]
        try:
            await StreamFile.get(self, f"channel{int(profile) + 1}/{file}")
        except HTTPError:
            if file != PLAYLIST:
                raise
            self.finish_empty()  # it is no mistake to ask for a stream that has not begun


class Picture(SignedIn):
    """The latest small picture, which the manager's encoder replaces."""

    def get(self, profile: str) -> None:
        try:
            content = read_file(STREAMS / f"channel{int(profile) + 1}" / "picture.jpg", LARGEST_PICTURE)
        except OSError:
            self.finish_empty()
            return
        self.set_header("Content-Type", "image/jpeg")
        self.finish(content)
