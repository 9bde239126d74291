// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a camera that was plugged in can do, and which camera it conflicts with.
#pragma once

#include <usbdev/records.h>

#include "core/channel_snapshot.h"
#include "devices/host_answers.h"

namespace usbdev {

struct CameraFindings {
  char cap[16] = "";     // codec codes of its formats, as in "0 1"
  char fetype[16] = "";  // front-end camera type
  Codec vcodec = Codec::mjpeg;
  bool usable = false;  // it has a format that the host can use
};

/// Asks the camera for its formats and its type, and warns of rates that may be too high to decode. The
/// table of formats is on the stack only meanwhile, not as long as a caller runs.
[[gnu::noinline]] void probeCamera(HostAnswers &host, const _usbdev_des &device, CameraFindings &findings);

struct ConflictFindings {
  int parked_behind = kNone;  // the channel with a profile that the new camera has to wait for
  int parks = kNone;          // the channel without a profile that has to wait for the new camera
};

/// Finds the first attached camera that the new one conflicts with, and fills the caller's report.
ConflictFindings findConflicts(HostAnswers &host, const ChannelSnapshots &channels, int chosen,
                               const _usbdev_des &device, bool supported, _usbdev_conflict &report);

}  // namespace usbdev
