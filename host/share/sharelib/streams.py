# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The files of the streams, under the hashes of their share links."""

from __future__ import annotations

import os
import stat
from pathlib import Path

from servicelib.places import APPLICATION, STREAMS
from tornado.web import HTTPError

from sharelib.answers import FileAnswer

PLAYLIST = "playlist.m3u8"
TYPES = {
    ".m3u8": "application/vnd.apple.mpegurl",
    ".ts": "video/mp2t",
    ".m4s": "video/iso.segment",
    ".mp4": "video/mp4",
}
# A hash cannot be guessed, and whoever knows it may see the stream. Nothing else of the application is served.
ROUTE = r"/([0-9a-f]{32}/[A-Za-z0-9_-]+\.(?:m3u8|ts|m4s|mp4))"


def changed(stream: str) -> float | None:
    """Returns when the playlist of a stream was written last, in seconds; None before the stream has begun."""
    try:
        return os.stat(APPLICATION / stream / PLAYLIST).st_mtime
    except (OSError, ValueError):
        return None


def read_file(path: Path, largest: int) -> bytes:
    """Reads a file of a stream; raises OSError for what is not a file, or too large."""
    with open(os.open(path, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC), "rb") as file:
        status = os.fstat(file.fileno())
        if not stat.S_ISREG(status.st_mode) or status.st_size > largest:
            raise OSError("not a file of a stream")
        return file.read(largest)


class StreamFile(FileAnswer):
    async def get(self, path: str, include_body: bool = True) -> None:
        try:
            await super().get(path, include_body)
        except OSError as gone:  # the encoder removes segments at any time, also between two questions about one
            raise HTTPError(404) from gone

    def validate_absolute_path(self, root: str, absolute_path: str) -> str | None:
        leads_to = os.path.realpath(absolute_path)
        if not Path(leads_to).is_relative_to(STREAMS) or not os.path.isfile(leads_to):
            raise HTTPError(404)
        return super().validate_absolute_path(root, absolute_path)

    def get_content_type(self) -> str:
        return TYPES[Path(self.absolute_path or "").suffix]

    def set_extra_headers(self, path: str) -> None:
        self.set_header("Cache-Control", "no-store")

    def compute_etag(self) -> None:
        """Returns None: versions would be kept in memory and never removed, and a playlist's would never change."""
