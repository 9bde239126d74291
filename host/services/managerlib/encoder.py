# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The process that makes a stream: ffmpeg, with test pictures in place of a camera that is simulated."""

from __future__ import annotations

from pathlib import Path

from managerlib import camera
from managerlib.library import Stream

PROGRAM = "/usr/bin/ffmpeg"
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"
SEGMENT_SECONDS = 1
FIRST_SEGMENT_SECONDS = 0.6  # shorter, so that there is a picture soon; a playlist rounds it to one second
SEGMENTS_KEPT = 6
PLAYLIST = "playlist.m3u8"
# The same stream in short pieces, which the server of the pages sends on as they come; not all begin with a whole picture.
FRAGMENT_SECONDS = 0.2
FRAGMENTS_KEPT = 10
FRAGMENTS = "%d.m4s"
FRAGMENTS_BEGIN = "live.mp4"  # has what a player has to know before the first
FRAGMENTS_LIST = "live.m3u8"
PICTURE = "picture.jpg"
KEY_PICTURES = f"expr:gte(t,if(n_forced,(n_forced-1)*{SEGMENT_SECONDS}+{FIRST_SEGMENT_SECONDS}))"
# Of a live stream the first picture matters, and what has to be known of the pictures is known from the settings.
AT_ONCE = ("-fflags", "nobuffer", "-analyzeduration", "0")
# The two sources wait for each other only at the output.
QUEUE = ("-thread_queue_size", "64")
# For a list of cameras. The height follows, as an even number. The first picture counts at once, and none waits in a thread of
# the encoder for the next one.
ONE_A_SECOND = ("fps=1:round=up", "scale=320:-2", "format=yuvj420p")
WITHOUT_DELAY = ("-threads:v", "1")
AS_PICTURE = ("-f", "image2", "-update", "1", "-atomic_writing", "1")
TIME = f"drawtext=fontfile={FONT}:text=%{{localtime}}:fontsize=h/20:x=h/40:y=h/40:fontcolor=white:box=1:boxcolor=black@0.5"


def name(stream: Stream) -> str:
    """Returns the name, with the node, that the library searches the process list for.

    Pictures that the camera compresses are read from its node; raw ones come through a pipe to the host's encoder.
    """
    return f"v4l2_read {stream.node}" if stream.is_mjpeg else f"HDpipe {stream.node}"


def arguments(stream: Stream, folder: Path, reads_camera: bool) -> list[str]:
    quiet = ("-nostdin", "-hide_banner", "-loglevel", "error")
    if not reads_camera:
        return [*quiet, *_test_pictures(stream), *_encoded(stream), *outputs(folder), *_small_picture(stream, folder)]
    picture = _copied_picture if stream.is_mjpeg else _small_picture
    return [
        *(*quiet, *_pictures(stream), *_sound(stream)),
        *(*_encoded(stream), *_encoded_sound(stream), *outputs(folder)),
        *picture(stream, folder),
    ]


def _test_pictures(stream: Stream) -> list[str]:
    return ["-re", "-f", "lavfi", "-i", f"testsrc2=size={stream.width}x{stream.height}:rate={stream.rate:.2f}"]


def _pictures(stream: Stream) -> list[str]:
    return [
        *(*AT_ONCE, *QUEUE, "-f", "v4l2", "-input_format", "mjpeg" if stream.is_mjpeg else "yuyv422"),
        *("-video_size", f"{stream.width}x{stream.height}", "-framerate", f"{stream.rate:.2f}"),
        *("-i", camera.NODE.format(stream.node)),
    ]


def _sound(stream: Stream) -> list[str]:
    if stream.sound is None:
        return []
    shape = ("-sample_rate", str(stream.sound.rate), "-channels", str(stream.sound.channels))
    # the card's own rates are converted
    return [*AT_ONCE, *QUEUE, "-f", "alsa", *shape, "-i", f"plughw:{stream.sound.card}"]


def _encoded(stream: Stream) -> list[str]:
    return [
        *("-map", "0:v", *_filters(_changes(stream))),
        # browsers play only H.264, whatever the camera sends
        *("-codec:v", "libx264", "-preset", "ultrafast", "-tune", "zerolatency", "-pix_fmt", "yuv420p"),
        *("-force_key_frames", KEY_PICTURES),
    ]


def _changes(stream: Stream) -> list[str]:
    """The time is written last, so that it can be read in a picture that is flipped."""
    changes = {"vflip": stream.flip, "hflip": stream.mirror, TIME: stream.overlay}
    return [change for change, is_wanted in changes.items() if is_wanted]


def _filters(filters: list[str]) -> list[str]:
    return ["-filter:v", ",".join(filters)] if filters else []


def _encoded_sound(stream: Stream) -> list[str]:
    if stream.sound is None:
        return []
    # browsers do not play G.711 in such a stream
    return ["-map", "1:a", "-codec:a", "aac", "-b:a", str(stream.sound.bits_per_second)]


def outputs(folder: Path) -> list[str]:
    """What is encoded once is written twice."""
    segments = {
        "hls_init_time": FIRST_SEGMENT_SECONDS,
        "hls_time": SEGMENT_SECONDS,
        "hls_list_size": SEGMENTS_KEPT,
        "hls_flags": "delete_segments+temp_file",
        # a stream that is started again continues with higher numbers, so that no viewer confuses new and old segments
        "hls_start_number_source": "epoch",
        "hls_segment_filename": folder / "%d.ts",
    }
    fragments = {
        "hls_segment_type": "fmp4",
        "hls_time": FRAGMENT_SECONDS,
        "hls_list_size": FRAGMENTS_KEPT,
        "hls_flags": "split_by_time+delete_segments+temp_file",
        "hls_fmp4_init_filename": FRAGMENTS_BEGIN,
        "hls_segment_filename": folder / FRAGMENTS,
    }
    both = f"{_hls(segments)}{folder / PLAYLIST}|{_hls(fragments)}{folder / FRAGMENTS_LIST}"
    return ["-flags", "+global_header", "-f", "tee", both]


def _hls(options: dict[str, object]) -> str:
    return "[" + ":".join(f"{name}={value}" for name, value in [("f", "hls"), *options.items()]) + "]"


def _copied_picture(stream: Stream, folder: Path) -> list[str]:
    """One picture of each second, in the bytes that the camera has sent."""
    all_but_one = f"noise=drop=mod(n\\,{max(1, round(stream.rate))})"
    return ["-map", "0:v", "-codec:v", "copy", "-bsf:v", all_but_one, *AS_PICTURE, str(folder / PICTURE)]


def _small_picture(stream: Stream, folder: Path) -> list[str]:
    """One picture of each second, as in the stream. It is chosen before it is changed, which costs least."""
    filters = _filters([*ONE_A_SECOND, *_changes(stream)])
    return ["-map", "0:v", *filters, "-codec:v", "mjpeg", *WITHOUT_DELAY, "-qscale:v", "6", *AS_PICTURE, str(folder / PICTURE)]
