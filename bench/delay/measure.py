# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Measures on a sandboxed host how old the pictures are that a viewer sees, and how old after ten seconds without any."""

from __future__ import annotations

import signal
import statistics
import subprocess
import sys
import tempfile
import time
from collections.abc import Callable, Iterator
from contextlib import ExitStack, contextmanager
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests/share/on_host"), str(ROOT / "host/services")]
import clock
import conftest
from managerlib import encoder
from managerlib.library import Stream
from viewer import Viewer, viewing

ON_THE_WAY = 1000  # milliseconds
SECONDS, SETTLING_SECONDS, STALL_SECONDS, AFTERWARDS_SECONDS = 60, 5, 10, 20
# Notes every 50 ms which time is seen, and how long ago that was.
READ_CLOCK = """(() => {
  const video = document.getElementById('video'), canvas = document.createElement('canvas');
  [canvas.width, canvas.height] = [%d, %d];
  const cell = Math.floor(Math.min(canvas.width, canvas.height) / 8 / 8) * 8;
  const context = canvas.getContext('2d', { willReadFrequently: true });
  window.seen = [];
  setInterval(() => {
    context.drawImage(video, 0, 0);
    const { data } = context.getImageData(0, 0, canvas.width, canvas.height);
    let value = 0n;
    for (let row = 0; row < 8; row++)
      for (let column = 0; column < 8; column++)
        value = value << 1n | (data[((row + 0.5) * cell * canvas.width + (column + 0.5) * cell) * 4] > 128 ? 1n : 0n);
    const word = value >> 32n, made = Number(word >> 8n);
    if ((word ^ 0xffffffffn) === (value & 0xffffffffn))
      window.seen.push([made, (Date.now() - made & 0xffffff)]);
  }, 50);
})()""" % (clock.WIDTH, clock.HEIGHT)

Seen = list[tuple[int, int]]  # when the picture was made, and how old it was when it was seen
Send = Callable[[int], None]


@contextmanager
def streaming() -> Iterator[Send]:
    """Streams the clock as the host's encoder streams a camera; pauses and continues with the signals that it is sent."""
    stream = Stream(0, False, clock.WIDTH, clock.HEIGHT, clock.RATE)
    made = encoder.arguments(stream, conftest.STREAM, reads_camera=False)
    raw = ("-f", "rawvideo", "-pix_fmt", "gray", "-video_size", f"{stream.width}x{stream.height}", "-framerate", str(stream.rate))
    source = ("-fflags", "nobuffer", "-use_wallclock_as_timestamps", "1", *raw, "-i", "-")
    camera = subprocess.Popen([sys.executable, clock.__file__], stdout=subprocess.PIPE)
    command = ["ffmpeg", "-loglevel", "error", *source, *made[made.index("-map") :]]
    running = subprocess.Popen(command, stdin=camera.stdout)
    try:
        yield camera.send_signal
    finally:
        for process in (running, camera):
            process.kill()
            process.wait()


def seen(viewer: Viewer, seconds: float) -> Seen:
    viewer.evaluate("void (window.seen = [])")
    time.sleep(seconds)
    return [(made, age) for made, age in viewer.evaluate("window.seen")]


def after_stall(viewer: Viewer, send: Send) -> Seen:
    """What is seen after the stall, except for what was made before it: that was on the way, or stays on the screen."""
    send(signal.SIGSTOP)
    before = seen(viewer, STALL_SECONDS)[-1][0]
    viewer.evaluate("void (window.seen = [])")
    send(signal.SIGCONT)
    return [it for it in seen(viewer, AFTERWARDS_SECONDS) if it[0] > before + ON_THE_WAY]


def report(what: str, pictures: Seen) -> None:
    ages = sorted(age for _, age in pictures)
    print(f"{what:40}{statistics.median(ages):8.0f}{ages[len(ages) * 95 // 100]:8}{ages[-1]:8}{len(ages):10}", flush=True)


def main() -> None:
    with ExitStack() as running:
        folder = Path(running.enter_context(tempfile.TemporaryDirectory()))
        conftest.store(profilename="Clock")
        link = conftest.share("on", "0", "--json")["page"]
        send = running.enter_context(streaming())
        page = conftest.SharePage(folder)
        page.start()
        running.callback(page.end)
        viewer = running.enter_context(viewing(conftest.ORIGIN))
        viewer.open(link)
        viewer.await_playing()
        viewer.evaluate(f"void {READ_CLOCK}")
        print(f"{'age of the picture, in ms':40}{'median':>8}{'95 %':>8}{'worst':>8}{'samples':>10}")
        report("after the begin", seen(viewer, SETTLING_SECONDS))
        report(f"for {SECONDS} s", seen(viewer, SECONDS))
        report(f"after {STALL_SECONDS} s without the camera", after_stall(viewer, send))
        report(f"after {STALL_SECONDS} s without the server", after_stall(viewer, page.send))


if __name__ == "__main__":
    main()
