# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A live stream in small pictures, as the host's encoder writes it."""

from __future__ import annotations

import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "host/services"))
from managerlib import encoder

PICTURES = ("-re", "-f", "lavfi", "-i", "testsrc=size=160x120:rate=10", "-pix_fmt", "yuv420p")
ENCODING = ("-map", "0:v", "-c:v", "libx264", "-preset", "ultrafast", "-tune", "zerolatency", "-g", "10")


class Encoder:
    def __init__(self, folder: Path) -> None:
        self._folder = folder
        self.playlist = folder / "playlist.m3u8"

    def start(self) -> None:
        command = ["ffmpeg", "-nostdin", "-loglevel", "error", *PICTURES, *ENCODING, *encoder.outputs(self._folder)]
        self._process = subprocess.Popen(command)

    def await_pictures(self) -> None:
        while not self.playlist.exists():
            time.sleep(0.02)

    def send(self, signal: int) -> None:
        self._process.send_signal(signal)

    def end(self) -> None:
        self._process.kill()
        self._process.wait()
        for file in self._folder.iterdir():
            file.unlink()
