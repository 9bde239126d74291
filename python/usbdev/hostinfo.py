# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""<usbdev/hostinfo.h>: what the settings pages show of the host, and the time-out counters."""

from __future__ import annotations

from types import TracebackType
from typing import Any

from usbdev._library import NAME_SIZE, ask, call, encoded, ffi, text_if_set
from usbdev.errors import UsbdevError
from usbdev.records import Package, from_c

COUNTERS = 4
_NO_PORT = -1


def http_port() -> int | None:
    """Reads the TCP port of the host's web pages (vl_get_nas_HTTPport)."""
    port = ffi.new("int *", _NO_PORT)
    call("vl_get_nas_HTTPport", port)
    return None if port[0] == _NO_PORT else int(port[0])


def version() -> str | None:
    """Reads the version of the host's system (vl_get_nas_version)."""
    return text_if_set("vl_get_nas_version", size=NAME_SIZE)


def package(name: str) -> Package:
    """Reads what the host's registry stores about an application package (vl_get_bndl_info)."""
    info = ffi.new("BndlInfo *")
    call("vl_get_bndl_info", encoded(name), info)
    return from_c(Package, info)


class Counters:
    """The attached segment of the time-out counters; a context manager that detaches it."""

    def __init__(self, address: Any) -> None:
        self._address = address

    @property
    def address(self) -> Any:
        """Where the segment is attached; raises ValueError if it is not any more."""
        if self._address is None:
            raise ValueError("the counters are not attached")
        return self._address

    def values(self) -> tuple[int, ...]:
        return tuple(ffi.cast("unsigned int *", self.address)[0:COUNTERS])

    def close(self) -> None:
        """Detaches the segment; it may be called again."""
        if self._address is not None:
            ffi.dlopen(None).shmdt(self._address)
            self._address = None

    def __enter__(self) -> Counters:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, problem: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.close()


def create_counters() -> int:
    """Finds or creates the segment of the time-out counters; returns its id (vl_create_log_shm)."""
    result = int(ask("vl_create_log_shm"))
    if result == -1:
        raise UsbdevError("vl_create_log_shm", result)
    return result


def attach_counters(segment: int) -> Counters:
    """Attaches the segment with the id (vl_attach_log_shm)."""
    address = ask("vl_attach_log_shm", segment)
    if address == ffi.NULL:
        raise UsbdevError("vl_attach_log_shm", 0)
    return Counters(address)


def clear_counters(counters: Counters) -> None:
    """Sets the counters to zero (vl_log_shm_init)."""
    ask("vl_log_shm_init", counters.address)


def count_timeout(index: int) -> None:
    """Adds one to a counter (vl_add_shm_timeout_log)."""
    call("vl_add_shm_timeout_log", index)
