// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/troubles.h"

#include <algorithm>

#include "output/printable.h"

namespace usbdevctl {

void addTroubles(ChannelRows &rows, const Machine &machine) {
  for (ChannelRow &row : rows) {
    if (row.state == ChannelState::free) continue;
    const Reasons reasons = machine.reasons(placeOf(row));
    if (!reasons.empty()) row.trouble = reasons.front();
  }
}

std::vector<std::string> portsWithoutChannel(const ChannelRows &rows, const Machine &machine) {
  std::vector<std::string> ports;
  if (!machine.isReal()) return ports;
  for (const std::string &port : machine.usb().cameras()) {
    const bool known = std::any_of(rows.begin(), rows.end(), [&port](const ChannelRow &row) {
      return row.state == ChannelState::plugged && row.slot == port;
    });
    if (!known) ports.push_back(port);
  }
  return ports;
}

Reasons withoutChannel(const std::string &port, const Machine &machine) {
  CameraPlace place;
  place.port = port;
  Reasons reasons = machine.reasons(place);
  if (!anyHinders(reasons)) reasons.insert(reasons.begin(), reasonFor(Cause::no_channel));
  return reasons;
}

std::string machineCameraText(const std::string &port, const Machine &machine) {
  const std::string product = machine.usb().attribute(port, "product");
  return product.empty() ? port : port + "  \"" + printable(product) + '"';
}

std::string withoutChannelText(const std::string &port, const Machine &machine) {
  return machineCameraText(port, machine) + ": " + sentences(withoutChannel(port, machine).front());
}

}  // namespace usbdevctl
