// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The USB slots that the channels' devices sit in.
#pragma once

#include <usbdev/records.h>

#include <string>

#include "output/fields.h"

namespace usbdevctl {

struct Slot {
  _usbdev_entry device = {};  // of the channel whose settings count
  _streaminfo settings = {};
  std::string codecs;  // "0 1", as stored; empty where there is no picture
};

Fields slotFields(const Slot &slot);

}  // namespace usbdevctl
