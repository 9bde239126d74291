// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "device/devices.h"

#include "channel/channels.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

Fields channelFields(std::size_t channel, const _usbdev_entry &entry, const std::optional<Reason> &trouble) {
  ChannelRow row = channelRow(entry);
  row.trouble = trouble;
  Fields fields;
  addIdentity(fields, channel, row);
  fields.add(streamField(entry.stream_type))
      .add(switchField("audio", entry.aenable != 0))
      .add(switchField("shared", entry.shrenable != 0));
  addStanding(fields, row);
  return fields;
}

}  // namespace

FieldRows deviceFields(const std::array<_usbdev_entry, USBDEV_CHANNELS> &entries, const ChannelRows &channels) {
  FieldRows rows;
  for (std::size_t channel = 0; channel < entries.size(); ++channel) {
    if (entries[channel].exists != 0)
      rows.push_back(channelFields(channel, entries[channel], channels[channel].trouble));
  }
  return rows;
}

}  // namespace usbdevctl
