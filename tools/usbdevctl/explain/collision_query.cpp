// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/collision_query.h"

#include <usbdev/core.h>
#include <usbdev/devices.h>

namespace usbdevctl {

namespace {

constexpr std::size_t kPathSize = 256;  // as the library's functions require

bool hasVideo(const ChannelRow &row) { return row.state == ChannelState::plugged && row.video_node; }

/// Asked once, because it takes commands and the host stays what it is.
bool isLimitedToOneChannel() {
  static const bool limited = AMDmodel_oneChannelLimited() != 0;
  return limited;
}

/// The camera whose collisions are asked for. Behind a bridge, another port of its controller is no way out for one on
/// its root port either, so the controller is what both share.
class Tested {
 public:
  explicit Tested(const ChannelRow &row) : row_(row) {}

  Collision against(const ChannelRow &other) {
    if (isLimitedToOneChannel()) return Collision::host;
    findController();
    if (rootPort(other.slot) == rootPort(row_.slot))
      return *behind_bridge_ ? Collision::controller : Collision::root_port;
    char port[sizeof(_usbdev_des::usbslot)] = {};  // the library cuts it
    other.slot.copy(port, sizeof port - 1);
    const bool conflicts = chkconflict(port, row_.slot.c_str(), *behind_bridge_, *other.video_node, path_) != 0;
    return conflicts ? Collision::controller : Collision::none;
  }

 private:
  void findController() {
    if (behind_bridge_) return;
    behind_bridge_ =
        row_.video_node && isPCIbridge(*row_.video_node) != 0 && get_pcibridgePath(*row_.video_node, path_) != 0;
  }

  const ChannelRow &row_;
  char path_[kPathSize] = "";
  std::optional<bool> behind_bridge_;
};

}  // namespace

Collisions readCollisions(const ChannelRows &rows, int channel, std::optional<int> only) {
  Collisions collisions = {};
  Tested tested(rows[static_cast<std::size_t>(channel)]);
  for (int other = 0; other < USBDEV_CHANNELS; ++other) {
    if (other == channel || other != only.value_or(other) || !hasVideo(rowOf(rows, other))) continue;
    collisions[static_cast<std::size_t>(other)] = tested.against(rowOf(rows, other));
  }
  return collisions;
}

}  // namespace usbdevctl
