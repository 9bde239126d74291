# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The records that callers and the library exchange: each has the fields of its C record, except for reserved ones."""

from __future__ import annotations

from dataclasses import dataclass, fields
from typing import Any, ClassVar, TypeVar

from usbdev._library import encoded, ffi, text_in

CHANNELS: int = ffi.integer_const("USBDEV_CHANNELS")
PROFILES: int = ffi.integer_const("USBDEV_PROFILES")
FORMATS: int = ffi.integer_const("USBDEV_FORMATS")


@dataclass(frozen=True)
class Record:
    C_NAME: ClassVar[str]


AnyRecord = TypeVar("AnyRecord", bound=Record)


def from_c(kind: type[AnyRecord], record: Any) -> AnyRecord:
    """Makes a record of what the library stored in a C record."""
    return kind(**{field.name: _python_value(getattr(record, field.name)) for field in fields(kind)})


def to_c(record: Record) -> Any:
    """Makes a C record; raises ValueError for a text or bytes that do not fit."""
    result = ffi.new(f"{record.C_NAME} *")
    fill(result[0], record)
    return result


def fill(target: Any, record: Record) -> None:
    for field in fields(record):
        value, stored = getattr(record, field.name), getattr(target, field.name)
        if _is_text(stored):
            value = encoded(value, len(stored))
        elif isinstance(value, bytes) and len(value) > len(stored):
            raise ValueError(f"the {field.name} has {len(value)} bytes, and at most {len(stored)} are possible")
        setattr(target, field.name, value)


def is_zero(record: Any) -> bool:
    """Checks whether every byte of a C record is zero."""
    return not any(bytes(ffi.buffer(ffi.addressof(record))))


def _is_number(value: Any) -> bool:
    return isinstance(value, (int, float))


def _is_text(value: Any) -> bool:
    return not _is_number(value) and ffi.typeof(value).item is ffi.typeof("char")


def _python_value(value: Any) -> Any:
    if _is_number(value):
        return value
    return text_in(value) if _is_text(value) else bytes(value)


@dataclass(frozen=True)
class Device(Record):
    """A USB device as the hotplug handler sees it."""

    C_NAME: ClassVar[str] = "_usbdev_des"
    devtype: int  # 1 = camera; any other value = sound card
    node: int
    usbslot: str
    plugged: int = 1
    devname: str = ""


@dataclass(frozen=True)
class FrameSize:
    """A frame size of a format (_usbres_des)."""

    width: int
    height: int
    fps: tuple[float, ...]  # in the camera's order


@dataclass(frozen=True)
class Format:
    """A format of a camera (_usbfmt_des)."""

    index: int  # the camera's own
    codec: int
    sizes: tuple[FrameSize, ...]


def formats_from_c(table: Any, count: int) -> tuple[Format, ...]:
    """Returns the first formats of a capability table."""
    return tuple(Format(row.index, row.codec, tuple(_sizes(row))) for row in table[0:count])


def _sizes(row: Any) -> list[FrameSize]:
    return [FrameSize(it.width, it.height, tuple(it.fps[0 : it.fps_count])) for it in row.res[0 : row.res_count]]


@dataclass(frozen=True)
class Conflict(Record):
    """What a new camera conflicts with."""

    C_NAME: ClassVar[str] = "_usbdev_conflict"
    profilename: str
    devname: str
    channel: int
    profile: int


@dataclass(frozen=True)
class ChannelUpdate(Record):
    """A channel, or a device that was found, during synchronisation."""

    C_NAME: ClassVar[str] = "_usbdev_update"
    vnode: int = -1
    anode: int = -1
    usbslot: str = ""
    state: int = -1  # -1 = never configured
    devname: str = ""
    slot_switch: int = -1
    profile: int = -1
    hlspath: str = ""
    hash: str = ""


@dataclass(frozen=True)
class StreamInfo(Record):
    """The stream settings of a profile."""

    C_NAME: ClassVar[str] = "_streaminfo"
    header: bytes = bytes(16)  # is sent with the change notification
    channel: int = -1
    stream_type: int = 0
    slot_switch: int = 0
    vnode: int = -1
    vprofile: int = 0
    vcodec: int = 0
    venable: int = 0
    spsstate: int = 0
    width: int = 0
    height: int = 0
    framerate: float = 0
    fetype: str = ""
    anode: int = -1
    aprofile: int = 0
    acodec: int = 0
    aenable: int = 0
    samplerate: int = 0
    channelno: int = 0
    bitrate: int = 0
    volume: int = 0
    osdenable: int = 0
    flip: int = 0
    mirror: int = 0
    ldspoutput: int = 0
    vtag: str = ""


@dataclass(frozen=True)
class AvailableDevice(Record):
    """A channel of the availability queries."""

    C_NAME: ClassVar[str] = "_availinfo"
    stream_type: int
    usbslot: str
    devname: str
    vnode: int
    vcodec: int
    width: int
    height: int
    framerate: float
    fetype: str
    acodec: int
    aenable: int
    volume: int
    osdenable: int
    flip: int
    mirror: int
    ldspoutput: int
    acap: str


@dataclass(frozen=True)
class Entry(Record):
    """A row of the listings of channels and profiles."""

    C_NAME: ClassVar[str] = "_usbdev_entry"
    profilename: str
    usbslot: str
    devname: str
    slot_switch: int
    stream_type: int
    exists: int
    conflictch: int  # -1 = may stream, 0 to 9 = waits for that channel, 999 = unsupported
    createtime: str
    profile: int
    vcodec: int
    mjpeg: int
    aenable: int
    vtag: str
    shrenable: int
    hlspath: str

    @property
    def waits_for(self) -> int | None:
        """The channel that this one waits for."""
        return self.conflictch if 0 <= self.conflictch < CHANNELS else None


@dataclass(frozen=True)
class ProfileInfo(Record):
    """All settings of a profile."""

    C_NAME: ClassVar[str] = "_profile_info"
    exists: int
    stream_type: int
    profilename: str
    usbslot: str
    devname: str
    vnode: int
    vprofile: int
    vcodec: int
    venable: int
    spsstate: int
    width: int
    height: int
    framerate: float
    fetype: str
    anode: int
    aprofile: int
    acodec: int
    aenable: int
    samplerate: int
    channelno: int
    bitrate: int
    volume: int
    osdenable: int
    flip: int
    mirror: int
    ldspoutput: int
    acap: str


@dataclass(frozen=True)
class NasServer(Record):
    """A web server, and the user and password for it."""

    C_NAME: ClassVar[str] = "NasServer"
    host: str
    port: int
    user: str = ""
    password: str = ""


@dataclass(frozen=True)
class ShareLink(Record):
    """The share link of a profile."""

    C_NAME: ClassVar[str] = "ShareLinkInfo"
    profile: int
    profilename: str = ""
    shrenable: int = 0
    pwdenable: int = 0
    shrpwd: str = ""
    ssid: str = ""
    token: str = ""
    hash_string: str = ""


@dataclass(frozen=True)
class Package(Record):
    """An installed application package."""

    C_NAME: ClassVar[str] = "BndlInfo"
    version: str
    build: str
    install_path: str
    enabled: int
