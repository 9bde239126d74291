# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the encoder is asked for: the camera, its size and rate, its pictures as they are or changed, and its sound."""

from __future__ import annotations

import asyncio
import itertools
import os
import stat
import subprocess
from dataclasses import replace
from pathlib import Path

import pytest
from managerlib import encoder, stream_process
from managerlib.library import Sound, Stream, wanted
from managerlib.stream_process import StreamProcess
from usbdev import Codec, StreamInfo, StreamType

MJPEG = Stream(3, True, 640, 480, 7.5)
RAW = replace(MJPEG, is_mjpeg=False)
SOUND = Sound(2, 48000, 2, 96000, 50)
FOLDER = Path("/streams/channel1")
WIDTH, HEIGHT = 64, 48


def parts(stream: Stream, reads_camera: bool = True) -> tuple[str, list[str], str]:
    """Returns the arguments for each input and those for all outputs, each as one text."""
    words = encoder.arguments(stream, FOLDER, reads_camera)
    ends = [0, *(place + 2 for place, word in enumerate(words) if word == "-i"), len(words)]
    first, *more, outputs = (" ".join(words[start:end]) for start, end in itertools.pairwise(ends))
    return first, more, outputs


@pytest.mark.parametrize(("stream", "pixels"), [(MJPEG, "mjpeg"), (RAW, "yuyv422")])
def test_a_camera_is_asked_for_the_pictures_of_the_codec_in_the_size_and_rate_of_the_profile(stream, pixels):
    camera, more, _ = parts(stream)
    assert camera.endswith(f"-f v4l2 -input_format {pixels} -video_size 640x480 -framerate 7.50 -i /dev/video3")
    assert more == []


@pytest.mark.parametrize("stream", [MJPEG, RAW, replace(RAW, sound=SOUND)])
def test_in_place_of_a_simulated_camera_there_are_test_pictures_without_sound(stream):
    camera, more, outputs = parts(stream, reads_camera=False)
    assert camera.endswith("-f lavfi -i testsrc2=size=640x480:rate=7.50")
    assert (more, "-codec:a" in outputs) == ([], False)


@pytest.mark.parametrize("stream", [MJPEG, RAW])
@pytest.mark.parametrize("reads_camera", [True, False])
def test_the_playlist_has_h264_that_every_browser_plays(stream, reads_camera):
    outputs = parts(stream, reads_camera)[-1]
    assert "-codec:v libx264" in outputs and "-pix_fmt yuv420p" in outputs
    assert f"hls_segment_filename={FOLDER}/%d.ts]{FOLDER}/playlist.m3u8" in outputs


def test_what_is_encoded_once_is_written_in_segments_and_in_fragments(tmp_path):
    sources = ("-t", "3", "-f", "lavfi", "-i", "testsrc2=size=64x48:rate=10", "-t", "3", "-f", "lavfi", "-i", "sine")
    stream = replace(RAW, sound=SOUND)
    words = encoder.arguments(stream, tmp_path, reads_camera=True)
    encoded = words[words.index("-map") :]
    assert (encoded.count("libx264"), encoded.count("aac")) == (1, 1)
    subprocess.run([encoder.PROGRAM, "-nostdin", "-v", "error", *sources, *encoded], check=True)
    segments, fragments = sorted(tmp_path.glob("*.ts")), sorted(tmp_path.glob("*.m4s"), key=lambda it: int(it.stem))
    assert (len(segments), len(fragments)) == (4, encoder.FRAGMENTS_KEPT + 1)
    begin = tmp_path / encoder.FRAGMENTS_BEGIN
    for part in (segments[-2].read_bytes(), begin.read_bytes() + fragments[-5].read_bytes()):
        assert described(part) == ["h264", "aac"]


def described(part: bytes) -> list[str]:
    """Returns the codecs that are found in a part of a stream alone."""
    fields = ("-show_entries", "stream=codec_name", "-of", "default=nw=1:nk=1")
    found = subprocess.run(["ffprobe", "-v", "error", *fields, "-"], input=part, capture_output=True, check=True).stdout
    return list(dict.fromkeys(found.decode().split()))


def test_pictures_that_the_camera_compresses_are_also_copied_one_a_second():
    outputs = parts(MJPEG)[-1]
    as_file = f"-f image2 -update 1 -atomic_writing 1 {FOLDER}/picture.jpg"
    assert outputs.endswith(f"-codec:v copy -bsf:v noise=drop=mod(n\\,8) {as_file}")
    assert "copy" not in parts(RAW)[-1] + parts(MJPEG, reads_camera=False)[-1]


@pytest.mark.parametrize(("stream", "reads_camera"), [(RAW, True), (RAW, False), (MJPEG, False)])
def test_of_other_pictures_there_is_a_small_one_a_second_changed_as_in_the_stream(stream, reads_camera):
    outputs = parts(replace(stream, flip=True), reads_camera)[-1]
    assert "-filter:v fps=1:round=up,scale=320:-2,format=yuvj420p,vflip -codec:v mjpeg -threads:v 1 " in outputs
    assert outputs.endswith(f"-f image2 -update 1 -atomic_writing 1 {FOLDER}/picture.jpg")


def test_a_slow_camera_has_every_picture_copied():
    assert "mod(n\\,1)" in parts(replace(MJPEG, rate=0.13))[-1]


@pytest.mark.parametrize("stream", [MJPEG, RAW])
def test_sound_is_recorded_from_the_card_as_the_settings_say_and_becomes_aac(stream):
    camera, sound, outputs = parts(replace(stream, sound=SOUND))
    assert camera.endswith("-i /dev/video3")
    assert [it.partition("-f ")[2] for it in sound] == ["alsa -sample_rate 48000 -channels 2 -i plughw:2"]
    assert "-map 1:a -codec:a aac -b:a 96000 -flags" in outputs


CHANGES = list(itertools.product([False, True], repeat=3))


@pytest.mark.parametrize(("overlay", "flip", "mirror"), CHANGES)
def test_the_time_is_written_after_the_picture_was_flipped_and_mirrored(overlay, flip, mirror):
    outputs = parts(replace(RAW, overlay=overlay, flip=flip, mirror=mirror))[-1].partition(" -codec:v ")[0]
    wanted_filters = [name for name, is_wanted in (("vflip", flip), ("hflip", mirror), ("drawtext", overlay)) if is_wanted]
    found = [word.split("=")[0] for word in outputs.partition("-filter:v ")[2].split(" ")[0].split(",") if word]
    assert found == wanted_filters


def changed(stream: Stream, source: str) -> list[bytes]:
    """Returns the rows of a picture from a source after the changes of the stream."""
    out = encoder.arguments(stream, FOLDER, reads_camera=False)
    at = out.index("-filter:v")
    command = [encoder.PROGRAM, "-nostdin", "-v", "error", "-f", "lavfi", "-i", source, *out[at : at + 2]]
    raw = ("-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "gray", "-")
    picture = subprocess.run([*command, *raw], capture_output=True, check=True).stdout
    width = len(picture) // HEIGHT
    return [picture[row * width : (row + 1) * width] for row in range(HEIGHT)]


RAMP = f"nullsrc=size={WIDTH}x{HEIGHT},format=gray,geq=lum=X+2*Y"


@pytest.mark.parametrize(("flip", "mirror"), [(True, False), (False, True), (True, True)])
def test_a_picture_is_turned_as_the_settings_say(flip, mirror):
    rows = changed(replace(RAW, flip=flip, mirror=mirror), RAMP)
    assert rows[0][0] == (WIDTH - 1 if mirror else 0) + (2 * (HEIGHT - 1) if flip else 0)


def test_the_time_is_in_the_upper_part_of_the_picture():
    rows = changed(replace(RAW, overlay=True), f"color=black:size={16 * WIDTH}x{HEIGHT}")
    bright = [number for number, row in enumerate(rows) if max(row) > 200]
    assert bright and max(bright) < HEIGHT / 4


INFO = StreamInfo(
    stream_type=StreamType.BOTH, vnode=3, vcodec=Codec.H264, width=640, height=480, framerate=7.5, osdenable=1, flip=1,
    mirror=1, anode=2, aenable=1, samplerate=48000, channelno=2, bitrate=96000, volume=50,
)  # fmt: skip


def test_the_settings_of_a_profile_are_those_of_its_stream():
    assert wanted(INFO) == replace(RAW, overlay=True, flip=True, mirror=True, sound=SOUND)


def test_pictures_that_the_camera_compresses_are_never_changed():
    assert wanted(replace(INFO, vcodec=Codec.MJPEG)) == replace(MJPEG, sound=SOUND)


@pytest.mark.parametrize("change", [{"stream_type": StreamType.VIDEO}, {"aenable": 0}])
def test_without_a_card_or_with_sound_off_there_is_no_sound(change):
    assert wanted(replace(INFO, **change)).sound is None


@pytest.mark.parametrize("kind", [StreamType.NONE, StreamType.AUDIO, StreamType.NOT_AVAILABLE])
def test_a_profile_without_pictures_has_no_stream(kind):
    assert wanted(replace(INFO, stream_type=kind)) is None


def test_web_servers_of_other_users_may_read_what_it_writes(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    written = tmp_path / "playlist.m3u8"
    monkeypatch.setattr(encoder, "PROGRAM", "/bin/sh")
    monkeypatch.setattr(encoder, "arguments", lambda *_: ["-c", f": >{written}"])
    monkeypatch.setattr(stream_process, "DIRECTORY", str(tmp_path))

    async def stream() -> None:
        ended = asyncio.Event()
        await StreamProcess(0, MJPEG).start(ended.set)
        await ended.wait()

    before = os.umask(0o027)
    try:
        asyncio.run(stream())
    finally:
        os.umask(before)
    assert stat.S_IMODE(written.stat().st_mode) == 0o644
