// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/collision.h"

#include "output/numbers.h"
#include "output/printable.h"

namespace usbdevctl {

std::string rootPort(const std::string &port) { return port.substr(0, port.find('.')); }

std::string collisionText(Collision collision, const std::string &port) {
  switch (collision) {
    case Collision::root_port:
      return "both are on root port " + printable(rootPort(port));
    case Collision::controller:
      return "both are on one USB controller behind a PCI bridge";
    case Collision::host:
      return "this host is limited to one channel";
    case Collision::none:
      break;
  }
  return "nothing that they share is known";
}

std::string collisionWord(Collision collision) {
  switch (collision) {
    case Collision::root_port:
      return "root_port";
    case Collision::controller:
      return "controller";
    case Collision::host:
      return "host";
    case Collision::none:
      break;
  }
  return "";
}

int streamingRival(const ChannelRows &rows, int channel, const Collisions &collisions) {
  for (std::size_t other = 0; other < rows.size(); ++other) {
    if (static_cast<int>(other) == channel || collisions[other] == Collision::none) continue;
    if (streams(rows[other])) return static_cast<int>(other);
  }
  return -1;
}

std::string rivalRemedy(const ChannelRows &rows, int other, Collision collision) {
  const ChannelRow &row = rows[static_cast<std::size_t>(other)];
  if (!streams(row)) return "'usbdevctl sync' finds out again which camera waits";
  const char *elsewhere = collision == Collision::root_port    ? "plug it into a port of another root port, or "
                          : collision == Collision::controller ? "plug it into a port of another USB controller, or "
                                                               : "";
  return elsewhere + ("take the profile of channel " + std::to_string(other)) + " ('usbdevctl clear pf" +
         numberText(row.profile) + "') or switch its port off ('usbdevctl slot off " + printable(row.slot) + "')";
}

ChannelRows afterAssignment(ChannelRows rows, int channel, int profile, const Collisions &collisions) {
  for (std::size_t other = 0; other < rows.size(); ++other) {
    if (static_cast<int>(other) != channel && collisions[other] != Collision::none) rows[other].parked_behind = channel;
  }
  rows[static_cast<std::size_t>(channel)].profile = profile;
  return rows;
}

Cameras waitingSince(const ChannelRows &before, const ChannelRows &now, int channel) {
  Cameras waiting;
  for (std::size_t other = 0; other < now.size(); ++other) {
    const bool waits = now[other].parked_behind == channel;
    if (waits && before[other].parked_behind != channel) waiting.push_back({static_cast<int>(other), now[other]});
  }
  return waiting;
}

}  // namespace usbdevctl
