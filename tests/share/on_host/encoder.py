# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A live stream in small pictures, as the host's encoder writes it."""

from __future__ import annotations

import subprocess
from pathlib import Path

PICTURES = ("-re", "-f", "lavfi", "-i", "testsrc=size=160x120:rate=10", "-pix_fmt", "yuv420p")
ENCODING = ("-c:v", "libx264", "-preset", "ultrafast", "-tune", "zerolatency", "-g", "10")
LIST = ("-f", "hls", "-hls_time", "1", "-hls_list_size", "6", "-hls_start_number_source", "epoch")
FLAGS = ("-hls_flags", "delete_segments+temp_file+omit_endlist")


class Encoder:
    def __init__(self, folder: Path) -> None:
        self._folder = folder
        self.playlist = folder / "playlist.m3u8"

    def start(self) -> None:
        segments = ("-hls_segment_filename", str(self._folder / "%d.ts"), str(self.playlist))
        command = ["ffmpeg", "-nostdin", "-loglevel", "error", *PICTURES, *ENCODING, *LIST, *FLAGS, *segments]
        self._process = subprocess.Popen(command)

    def send(self, signal: int) -> None:
        self._process.send_signal(signal)

    def end(self) -> None:
        self._process.kill()
        self._process.wait()
        for file in self._folder.iterdir():
            file.unlink()
