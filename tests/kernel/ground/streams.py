# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The stream of profile 0 on the guest, in a size and at a rate that the emulated processor can encode."""

from __future__ import annotations

from ground.guest import Guest

WIDTH, HEIGHT = 160, 120
SMALL = ("--size", f"{WIDTH}x{HEIGHT}", "--fps", "5")
FOLDER = "/var/lib/usbdev/apps/Velmora2/hls/channel1"
PLAYLIST = f"{FOLDER}/playlist.m3u8"


def wait_for_playlist(guest: Guest) -> None:
    """Waits for the playlist of the small stream. An assignment begins a stream too, as the camera was set before."""
    guest.wait(f"pgrep --full '[-]video_size {WIDTH}x{HEIGHT} -framerate 5.00' >/dev/null")
    guest.wait(f"test -s {PLAYLIST}")
