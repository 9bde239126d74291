// The datagram that tells the manager daemon what changed.
#pragma once

#include <cstddef>
#include <cstring>

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

  ChangeNotification(int profile_id, int event_code) : profile(profile_id), event(event_code) {
    std::memcpy(magic, "ORDA_VLM2_CFCG_N", sizeof magic);
  }

  /// A camera that starts to stream. Nodes 0 and 1 are fixed marks of the event, not node numbers.
  static ChangeNotification plugged(int profile_id) {
    ChangeNotification notification(profile_id, kEventPlugged);
    notification.vnode = 0;
    notification.anode = 1;
    notification.target = profile_id;
    return notification;
  }

  static ChangeNotification removed(int profile_id) { return {profile_id, kEventRemoved}; }
};

static_assert(sizeof(ChangeNotification) == 56);
static_assert(offsetof(ChangeNotification, request_header) == 16);
static_assert(offsetof(ChangeNotification, profile) == 32);
static_assert(offsetof(ChangeNotification, target) == 52);

}  // namespace usbdev
