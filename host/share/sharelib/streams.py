"""The files of the streams, under the hashes of their share links."""

from __future__ import annotations

from pathlib import Path

from tornado.web import HTTPError, StaticFileHandler

from sharelib.answers import Answer

APPLICATION = Path("/mnt/ext/opt/apps/Velmora2")
STREAMS = APPLICATION / "hls"
TYPES = {
    ".m3u8": "application/vnd.apple.mpegurl",
    ".ts": "video/mp2t",
    ".m4s": "video/iso.segment",
    ".mp4": "video/mp4",
}
# A hash cannot be guessed, and whoever knows it may see the stream. Nothing else of the application is served.
ROUTE = r"/([0-9a-f]{32}/[A-Za-z0-9_-]+\.(?:m3u8|ts|m4s|mp4))"


class StreamFile(Answer, StaticFileHandler):
    def validate_absolute_path(self, root: str, absolute_path: str) -> str | None:
        if not Path(absolute_path).resolve().is_relative_to(STREAMS):
            raise HTTPError(404)
        return super().validate_absolute_path(root, absolute_path)

    def get_content_type(self) -> str:
        return TYPES[Path(self.absolute_path or "").suffix]

    def set_extra_headers(self, path: str) -> None:
        self.set_header("Cache-Control", "no-store")

    def compute_etag(self) -> None:
        """Returns None: versions would be kept in memory and never removed, and a playlist's would never change."""
