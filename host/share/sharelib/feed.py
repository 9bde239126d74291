# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The fragments of a stream, read once each when the encoder has written them, and given to everybody who watches."""

from __future__ import annotations

import os
from collections import deque
from collections.abc import Callable
from pathlib import Path
from typing import Protocol

from servicelib import changes

from sharelib.streams import read_file

BEGIN = "live.mp4"
# They contain a whole picture, with which a viewer can begin.
FRAGMENTS_TO_BEGIN = 7
# The fragment of a fifth of a second at 80 Mbit/s.
LARGEST_FILE = 2 << 20
TAG_OF_CODEC = b"avcC"
TAG_OF_SOUND = b"mp4a"


class Watching(Protocol):
    def send(self, message: str | bytes) -> None: ...

    def end(self) -> None: ...


class Feed:
    """The stream of one folder, as long as somebody watches it."""

    def __init__(self, folder: Path) -> None:
        """Raises OSError if there is no stream."""
        self._folder = folder
        self._end = changes.follow(str(folder), changes.RENAMED | changes.REMOVED, self._changed)
        self._viewers: set[Watching] = set()
        try:
            self._began = self._identity()
            begin = read_file(folder / BEGIN, LARGEST_FILE)
        except OSError:
            self._end()
            raise
        self._begin: list[str | bytes] = [_kind(begin), begin]
        self._recent: deque[bytes] = deque(maxlen=FRAGMENTS_TO_BEGIN)
        self._number = -1  # of the last fragment
        self._read()

    def join(self, viewer: Watching) -> None:
        self._viewers.add(viewer)
        for message in [*self._begin, *self._recent]:
            viewer.send(message)

    def leave(self, viewer: Watching) -> bool:
        """Returns whether nobody is left."""
        self._viewers.discard(viewer)
        return not self._viewers

    @property
    def viewers(self) -> int:
        return len(self._viewers)

    def close(self) -> None:
        self._end()

    def _changed(self, _: set[str]) -> None:
        """Passes on what is new. Another stream begins anew with everybody, and so does one that has ended."""
        try:
            is_same = self._identity() == self._began
        except OSError:
            is_same = False
        fragments = self._read() if is_same else []
        for viewer in list(self._viewers):
            for fragment in fragments:
                viewer.send(fragment)
            if not is_same:
                viewer.end()

    def _read(self) -> list[bytes]:
        """Reads the fragments that are newer than the last one, but not more than a viewer begins with."""
        found = sorted(int(path.stem) for path in self._folder.glob("*.m4s") if path.stem.isdecimal())
        new = [number for number in found if number > self._number][-FRAGMENTS_TO_BEGIN:]
        read = []
        for number in new:
            self._number = number
            try:
                read.append(read_file(self._folder / f"{number}.m4s", LARGEST_FILE))
            except OSError:
                continue  # the encoder has removed it meanwhile
        self._recent.extend(read)
        return read

    def _identity(self) -> tuple[int, int]:
        status = os.stat(self._folder / BEGIN, follow_symlinks=False)
        return status.st_ino, status.st_mtime_ns


def _kind(begin: bytes) -> str:
    """Returns the type of the stream, from which a browser knows whether it can play it."""
    _, found, codec = begin.partition(TAG_OF_CODEC)
    if not found:
        raise OSError("not the begin of a stream")
    sound = ",mp4a.40.2" if TAG_OF_SOUND in begin else ""
    return f'video/mp4; codecs="avc1.{codec[1:4].hex()}{sound}"'


class Feeds:
    """The streams that somebody watches. Each is read once, however many watch it."""

    def __init__(self, changed: Callable[[], None] = lambda: None) -> None:
        """`changed` is called when somebody comes or goes."""
        self._feeds: dict[Path, Feed] = {}
        self._changed = changed

    def join(self, folder: Path, viewer: Watching) -> None:
        """Raises OSError if there is no stream."""
        if folder not in self._feeds:
            self._feeds[folder] = Feed(folder)
        self._feeds[folder].join(viewer)
        self._changed()

    def leave(self, folder: Path, viewer: Watching) -> None:
        feed = self._feeds.get(folder)
        if feed is not None and feed.leave(viewer):
            del self._feeds[folder]
            feed.close()
        self._changed()

    def viewers(self, folder: Path) -> int:
        return self._feeds[folder].viewers if folder in self._feeds else 0
