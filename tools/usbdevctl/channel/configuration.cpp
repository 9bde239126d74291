// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/configuration.h"

#include <usbdev/profiles.h>

#include <array>

#include "output/output.h"

namespace usbdevctl {

namespace {

bool configurationOpens() {
  std::array<_usbdev_entry, USBDEV_CHANNELS> rows = {};
  return vl_get_devpf_list(rows.data()) == 0;
}

ExitStatus complainWith(ExitStatus status, const std::string &explanation) {
  if (!configurationOpens()) return configurationUnreadable();
  complain(explanation);
  return status;
}

}  // namespace

ExitStatus configurationUnreadable() {
  complain("the channel configuration cannot be read");
  return ExitStatus::failure;
}

ExitStatus nothingApplies(const std::string &explanation) { return complainWith(ExitStatus::nothing, explanation); }

ExitStatus refused(const std::string &explanation) { return complainWith(ExitStatus::failure, explanation); }

}  // namespace usbdevctl
