// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the steps of a start-up pass to each other: a record for each channel, and lists of the devices that no channel
// knows.
#pragma once

#include <usbdev/records.h>

#include <algorithm>

#include "core/channel_keys.h"
#include "core/text.h"

namespace usbdev {

using ChannelRecords = _usbdev_update[kChannels];

/// How many records the lists of new devices hold.
inline constexpr int kNewDevices = kChannels;

/// The filled records of a list.
class RecordList {
 public:
  /// A count that is larger than a list counts as the list's size, a negative one as 0.
  RecordList(const _usbdev_update *first, int count) : first_(first), count_(std::clamp(count, 0, kNewDevices)) {}

  const _usbdev_update *begin() const { return first_; }
  const _usbdev_update *end() const { return first_ + count_; }

  /// The name of the first device in a port; null when the list has none there.
  const char *nameInPort(const char *usbslot) const {
    for (const _usbdev_update &record : *this) {
      if (isSame(record.usbslot, usbslot)) return record.devname;
    }
    return nullptr;
  }

 private:
  const _usbdev_update *first_;
  int count_;
};

/// A list that a scan adds to.
class NewDevices {
 public:
  NewDevices(_usbdev_update *first, int count) : first_(first), count_(count) {}

  int count() const { return count_; }
  RecordList records() const { return {first_, count_}; }

  /// Appends a device; its record, null when the list is full.
  _usbdev_update *append(const char *usbslot, const char *name) {
    if (count_ < 0 || count_ >= kNewDevices) return nullptr;
    _usbdev_update &record = first_[count_++];
    copyText(record.usbslot, usbslot);
    copyText(record.devname, name);
    record.state = 1;
    return &record;
  }

 private:
  _usbdev_update *first_;
  int count_;
};

}  // namespace usbdev
