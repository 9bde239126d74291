// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/collision_query.h"

#include <usbdev/core.h>
#include <usbdev/devices.h>

namespace usbdevctl {

namespace {

constexpr std::size_t kPathSize = 256;  // as the library's functions require

bool hasVideo(const ChannelRow &row) { return row.state == ChannelState::plugged && row.video_node; }

/// The camera whose collisions are asked for, with the controller that it is on.
class Tested {
 public:
  explicit Tested(const ChannelRow &row) : row_(row) {
    behind_bridge_ =
        row.video_node && isPCIbridge(*row.video_node) != 0 && get_pcibridgePath(*row.video_node, path_) != 0;
  }

  Collision against(const ChannelRow &other, bool one_channel) const {
    char port[sizeof(_usbdev_des::usbslot)] = {};  // the library cuts it
    other.slot.copy(port, sizeof port - 1);
    if (chkconflict(port, row_.slot.c_str(), behind_bridge_, *other.video_node, path_) == 0) return Collision::none;
    if (one_channel) return Collision::host;
    return rootPort(other.slot) == rootPort(row_.slot) ? Collision::root_port : Collision::controller;
  }

 private:
  const ChannelRow &row_;
  char path_[kPathSize] = "";
  bool behind_bridge_ = false;
};

}  // namespace

Collisions readCollisions(const ChannelRows &rows, int channel, std::optional<int> only) {
  Collisions collisions = {};
  const Tested tested(rows[static_cast<std::size_t>(channel)]);
  const bool one_channel = AMDmodel_oneChannelLimited() != 0;
  for (int other = 0; other < USBDEV_CHANNELS; ++other) {
    if (other == channel || other != only.value_or(other) || !hasVideo(rowOf(rows, other))) continue;
    collisions[static_cast<std::size_t>(other)] = tested.against(rowOf(rows, other), one_channel);
  }
  return collisions;
}

}  // namespace usbdevctl
