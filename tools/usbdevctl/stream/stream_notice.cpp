// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/stream_notice.h"

#include <usbdev/core.h>
#include <usbdev/profiles.h>

#include "events/event_codes.h"
#include "events/notification.h"

namespace usbdevctl {

void notifyOfStream(int profile) {
  Notification notification = {{}, profile, -1, -1, 0, kLogChangesOnly, profile};
  _streaminfo stream = {};
  if (vl_get_stream_info(profile, &stream) == 0) {
    notification.video_node = stream.vnode;
    notification.audio_node = stream.anode;
  }
  vl_settingNotify(encodeNotification(notification).data());  // a manager that does not run looks when it starts
}

}  // namespace usbdevctl
