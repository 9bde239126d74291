// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Who may see a live stream: the checks before a viewer is served.
#pragma once

namespace usbdev {

/// Why a stream cannot be seen, as the viewers' pages know it.
enum class ViewCode : int {
  serve = -1,
  wrong_token = 9000,
  unplugged = 9001,
  no_video = 9003,
  audio_only = 9004,
  conflict = 9007,
  switched_off = 9009,
  not_shared = 9010,
  unknown_link = 9011,
};

/// The profile of the first channel with a share id; kNone when none has it.
int profileOfShareId(const char *ssid);

/// Checks a profile's live view; false, the code untouched, when no channel serves the profile.
bool checkLiveView(int profile, ViewCode &code);

/// Checks a viewer's share id and token. `profile` is set to that of the last channel looked at.
ViewCode checkViewer(const char *ssid, const char *token, int &profile);

}  // namespace usbdev
