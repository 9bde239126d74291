# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Numbers with a meaning. Records have plain integers, because a stored number can be any; compare those with these."""

from __future__ import annotations

from enum import IntEnum


class Codec(IntEnum):
    """The codec of a stream or a format."""

    H264 = 0  # raw pictures of the camera, encoded by the host
    MJPEG = 1


class StreamType(IntEnum):
    """What a stream consists of."""

    NOT_AVAILABLE = -1
    NONE = 0
    AUDIO = 1
    VIDEO = 2
    BOTH = 3


class EventCode(IntEnum):
    """Why a setting is changed."""

    CHANGED = 0
    EVERYTHING = 5  # every setting is logged, changed or not


class ViewerCode(IntEnum):
    """Whether a stream can be shown, and why not."""

    OPENS = -1
    WRONG_TOKEN = 9000
    NOT_ATTACHED = 9001
    NO_VIDEO = 9003
    SOUND_ONLY = 9004
    WAITS = 9007
    PORT_OFF = 9009
    NOT_SHARED = 9010
    UNKNOWN_SHARE_ID = 9011
