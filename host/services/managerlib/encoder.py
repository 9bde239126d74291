# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The process that makes a stream: ffmpeg with test pictures in place of a camera."""

from __future__ import annotations

from pathlib import Path

from managerlib.library import Stream

PROGRAM = "/usr/bin/ffmpeg"
SEGMENT_SECONDS = 1
SEGMENTS_KEPT = 6


def name(stream: Stream) -> str:
    """Returns the name, with the node, that the library searches the process list for.

    Pictures that the camera compresses are read from its node; raw ones come through a pipe to the host's encoder.
    """
    return f"v4l2_read {stream.node}" if stream.is_mjpeg else f"HDpipe {stream.node}"


def arguments(stream: Stream, playlist: Path) -> list[str]:
    pictures = f"testsrc2=size={stream.width}x{stream.height}:rate={stream.rate:.2f}"
    return [
        *("-nostdin", "-hide_banner", "-loglevel", "error"),
        *("-re", "-f", "lavfi", "-i", pictures),
        # browsers play only H.264, whatever the camera sends
        *("-codec:v", "libx264", "-preset", "ultrafast", "-tune", "zerolatency", "-pix_fmt", "yuv420p"),
        *("-force_key_frames", f"expr:gte(t,n_forced*{SEGMENT_SECONDS})"),
        *("-f", "hls", "-hls_time", str(SEGMENT_SECONDS), "-hls_list_size", str(SEGMENTS_KEPT)),
        *("-hls_flags", "delete_segments+temp_file"),
        # a stream that is started again continues with higher numbers, so that no viewer confuses new and old segments
        *("-hls_start_number_source", "epoch"),
        *("-hls_segment_filename", str(playlist.with_name("%d.ts")), str(playlist)),
    ]
