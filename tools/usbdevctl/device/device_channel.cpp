// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "device/device_channel.h"

#include <algorithm>

#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr char kOwnCard[] = "KAB";

bool isCamera(const _usbdev_des &device) { return device.devtype == 1; }

bool isOwnCard(const _usbdev_des &device) {
  return !isCamera(device) && fieldText(device.devname).compare(0, sizeof kOwnCard - 1, kOwnCard) == 0;
}

bool isPlugged(const ChannelRow &row) { return row.state == ChannelState::plugged; }

bool takes(const ChannelRow &row, const _usbdev_des &device) {
  const bool same_port = row.slot == fieldText(device.usbslot);
  if (!row.profile) return same_port || !isPlugged(row);
  const bool same_device = row.device == fieldText(device.devname) || (isPlugged(row) && !isCamera(device));
  return row.slot.empty() || (same_port && same_device);
}

bool gives(const ChannelRow &row, const _usbdev_des &device) {
  return isPlugged(row) && row.slot == fieldText(device.usbslot);
}

}  // namespace

bool hasChannel(const ChannelRows &rows, const _usbdev_des &device) {
  const auto fits = device.plugged != 0 ? takes : gives;
  return !isOwnCard(device) &&
         std::any_of(rows.begin(), rows.end(), [&](const ChannelRow &row) { return fits(row, device); });
}

}  // namespace usbdevctl
