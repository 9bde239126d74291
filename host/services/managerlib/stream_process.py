# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A running stream: its process, and the playlist and segments in the profile's stream folder."""

from __future__ import annotations

import asyncio
from collections.abc import Callable
from pathlib import Path

from servicelib.places import STREAMS

from managerlib import camera, encoder
from managerlib.library import Stream

DIRECTORY = str(STREAMS / "channel{}")
SECONDS_TO_END = 5
REMEMBERED_BYTES = 4096


def folder(profile: int) -> Path:
    return Path(DIRECTORY.format(profile + 1))


class StreamProcess:
    def __init__(self, profile: int, stream: Stream) -> None:
        self._stream = stream
        self._folder = folder(profile)
        self._last_written: int | None = None
        self.reads_camera = not camera.is_simulated(stream.node)
        self.said = b""  # the last of what the process has printed about errors

    async def start(self, at_end: Callable[[], None]) -> None:
        """Calls `at_end` once the process has ended, for whatever reason."""
        self._folder.mkdir(parents=True, exist_ok=True)
        self._remove_files()  # of a stream whose manager was killed
        arguments = encoder.arguments(self._stream, self._folder, self.reads_camera)
        self._process = await asyncio.create_subprocess_exec(
            encoder.name(self._stream), *arguments, executable=encoder.PROGRAM, stderr=asyncio.subprocess.PIPE,
            umask=0o022,  # web servers of other users give the pictures out
        )  # fmt: skip
        self._use_camera(True)
        self._end = asyncio.get_running_loop().create_task(self._listen())
        self._end.add_done_callback(lambda _: at_end())

    @property
    def status(self) -> int | None:
        """Returns the exit status of the process, if it has ended."""
        return self._process.returncode if self._end.done() else None

    def has_grown(self) -> bool:
        """Returns whether the playlist was written since the last call."""
        before, self._last_written = self._last_written, self._written()
        return self._last_written not in (None, before)

    async def stop(self) -> None:
        """Lets a stream end in order. One without a picture has nothing to end, and would wait for its camera before it did."""
        if self.status is None and self._written() is not None:
            self._process.terminate()
            await asyncio.wait((self._end,), timeout=SECONDS_TO_END)
        await self.kill()

    async def kill(self) -> None:
        """Ends the process, even if it does not react any more. One that the kernel keeps ends when it lets go of it."""
        if self.status is None:
            self._process.kill()
            await asyncio.wait((self._end,), timeout=SECONDS_TO_END)
        self._remove_files()

    async def _listen(self) -> None:
        assert self._process.stderr is not None
        while said := await self._process.stderr.read(REMEMBERED_BYTES):
            self.said = (self.said + said)[-REMEMBERED_BYTES:]
        await self._process.wait()
        self._use_camera(False)

    def _use_camera(self, streams: bool) -> None:
        if not self.reads_camera:
            camera.simulate_stream(self._stream.node, streams)

    def _written(self) -> int | None:
        try:
            return (self._folder / encoder.PLAYLIST).stat().st_mtime_ns
        except FileNotFoundError:
            return None

    def _remove_files(self) -> None:
        """Removes the files of a stream that has ended. The playlist is removed first, because it names the others."""
        for pattern in (encoder.PLAYLIST, encoder.FRAGMENTS_BEGIN, encoder.FRAGMENTS_LIST, encoder.PICTURE, "*.ts", "*.m4s", "*.tmp"):
            for file in self._folder.glob(pattern):
                file.unlink(missing_ok=True)
