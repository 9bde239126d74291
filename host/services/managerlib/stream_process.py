"""A running stream: its process, and the playlist and segments in the profile's stream directory."""

from __future__ import annotations

import asyncio
from pathlib import Path

from managerlib import encoder
from managerlib.library import Stream

DIRECTORY = "/mnt/ext/opt/apps/Velmora2/hls/channel{}"
SECONDS_TO_END = 5


class StreamProcess:
    def __init__(self, profile: int, stream: Stream) -> None:
        self.stream = stream
        self._playlist = Path(DIRECTORY.format(profile + 1)) / "playlist.m3u8"

    async def start(self) -> None:
        self._playlist.parent.mkdir(parents=True, exist_ok=True)
        self._remove_files()  # of a stream whose manager was killed
        self._process = await asyncio.create_subprocess_exec(
            encoder.name(self.stream), *encoder.arguments(self.stream, self._playlist), executable=encoder.PROGRAM
        )

    async def end(self) -> int:
        """Waits until the process has ended by itself."""
        return await self._process.wait()

    @property
    def runs(self) -> bool:
        return self._process.returncode is None

    async def stop(self) -> None:
        if self.runs:
            self._process.terminate()
            try:
                await asyncio.wait_for(self._process.wait(), SECONDS_TO_END)
            except asyncio.TimeoutError:
                self._process.kill()
                await self._process.wait()
        self._remove_files()

    def _remove_files(self) -> None:
        """What is not there any more is not live any more. The playlist goes first: it names the others."""
        self._playlist.unlink(missing_ok=True)
        for pattern in ("*.ts", "*.tmp"):
            for file in self._playlist.parent.glob(pattern):
                file.unlink(missing_ok=True)
