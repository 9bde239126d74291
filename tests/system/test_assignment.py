# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A profile's live-view link, made and removed by a library that runs the programs itself."""


def test_an_assigned_profile_has_a_link_to_its_stream_folder_until_it_is_cleared(sandbox):
    result = sandbox(
        "cd /mnt/ext/opt/apps/Velmora2 && sim plug hd-usb-camera 3-1 >/dev/null && usbdevctl assign 3-1 2 >/dev/null"
        " && find . -maxdepth 1 -type l -exec readlink {} + && usbdevctl clear 2 >/dev/null && find . -maxdepth 1 -type l"
    )
    assert result.stdout == "/mnt/ext/opt/apps/Velmora2/hls/channel3\n"
