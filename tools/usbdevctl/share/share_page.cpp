// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "share/share_page.h"

#include "output/printable.h"

namespace usbdevctl {

std::string pageOf(const ShareLinkInfo &link) {
  if (link.ssid[0] == '\0') return "";
  return "/share?ssid=" + fieldText(link.ssid) + "&token=" + fieldText(link.token);
}

}  // namespace usbdevctl
