// The datagram that tells the manager daemon what changed.
#pragma once

#include <cstddef>

#include "core/channel_keys.h"

namespace usbdev {

/// Event codes that the library itself sends; others come from its callers.
constexpr int kEventPlugged = 6;
constexpr int kEventRemoved = 7;
/// The caller's event code that asks for every setting to be reported as changed.
constexpr int kEventReportAll = 5;

struct ChangeNotification {
  char magic[16];
  unsigned char request_header[16] = {};
  int profile;
  int vnode = kNone;
  int anode = kNone;
  int flag = 0;
  int event;
  int target = kNone;

  ChangeNotification(int profile_id, int event_code);

  /// A camera that starts or ends to stream.
  static ChangeNotification ofCamera(int profile_id, bool starts);
};

static_assert(sizeof(ChangeNotification) == 56);
static_assert(offsetof(ChangeNotification, request_header) == 16);
static_assert(offsetof(ChangeNotification, profile) == 32);
static_assert(offsetof(ChangeNotification, target) == 52);

}  // namespace usbdev
