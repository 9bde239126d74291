// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The datagram that reports to the manager what changed.
#pragma once

#include <cstddef>

#include "core/channel_keys.h"

namespace usbdev {

/// What changed. Callers may pass other codes, which are sent as they are.
enum class EventCode : int {
  one_channel_host = 3,  // a profile that a one-channel host gives up
  report_all = 5,        // a caller's change of which every setting is reported as changed
  plugged = 6,
  removed = 7,
};

struct ChangeNotification {
  char magic[16];
  unsigned char request_header[16] = {};
  int profile;
  int vnode = kNone;
  int anode = kNone;
  int flag = 0;
  EventCode event;
  int target = kNone;

  ChangeNotification(int profile_id, EventCode event_code);

  /// A camera that starts or ends to stream.
  static ChangeNotification ofCamera(int profile_id, bool starts);
};

static_assert(sizeof(ChangeNotification) == 56);
static_assert(offsetof(ChangeNotification, request_header) == 16);
static_assert(offsetof(ChangeNotification, profile) == 32);
static_assert(offsetof(ChangeNotification, target) == 52);

/// Sends a notification and does not wait for an answer; false, with a message, when it cannot be sent.
bool sendNotification(const ChangeNotification &notification);

}  // namespace usbdev
