// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The formats listing of a camera, line by line, into a capability table.
#pragma once

#include <usbdev/records.h>

#include "core/channel_keys.h"

namespace usbdev {

class FormatListing {
 public:
  /// `vnode` is named in messages; raw formats are kept only where the host may encode them.
  FormatListing(int vnode, bool keep_raw) : vnode_(vnode), keep_raw_(keep_raw) {}

  /// Reads one line, which is cut in place; false when the rest of the listing must be dropped.
  bool take(char *line);

  int formatCount() const { return count_; }
  bool hasRateOver60() const { return over60_; }
  /// USBDEV_FORMATS records; those beyond the count are zero.
  const _usbfmt_des (&table() const)[USBDEV_FORMATS] { return table_; }

 private:
  void takeIndex(const char *value);
  void takePixelFormat(const char *value);
  void takeSize(char *value);
  bool takeInterval(char *value);
  void openFormat(Codec codec);

  int vnode_;
  bool keep_raw_;
  bool over60_ = false;
  int index_ = 0;
  int count_ = 0;
  _usbfmt_des *format_ = nullptr;  // the format that sizes go to, null when none is accepted
  _usbres_des *size_ = nullptr;    // the size that rates go to, null when none is accepted
  _usbfmt_des table_[USBDEV_FORMATS] = {};
};

}  // namespace usbdev
