// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/links.h"

#include <sys/stat.h>

#include "core/execution.h"
#include "core/text.h"

namespace usbdev {
namespace {

using LinkPath = char[127];

void formatLinkPath(LinkPath &path, const char *name) { formatText(path, "/mnt/ext/opt/apps/Velmora2/%s", name); }

}  // namespace

int streamNumber(int profile) {
  // A caller's or a stored profile may be any number, even the largest.
  return static_cast<int>(static_cast<unsigned>(profile) + 1U);
}

void makeStreamLink(int profile, const char *name) {
  if (name[0] == '\0') return;
  LinkPath target;
  LinkPath link;
  formatText(target, "/mnt/ext/opt/apps/Velmora2/hls/channel%d", streamNumber(profile));
  formatLinkPath(link, name);
  makeLink(target, link);
}

void removeStreamLink(const char *name) {
  if (name[0] == '\0') return;
  LinkPath path;
  formatLinkPath(path, name);
  struct stat status;
  // A link whose target is gone is removed too.
  if (lstat(path, &status) == 0) removePath(path);
}

// The link was just made, so nothing checks that it is there.
void takeBackStreamLink(const char *name) {
  if (name[0] == '\0') return;
  LinkPath path;
  formatLinkPath(path, name);
  removePath(path);
}

void withdrawShareLink(const Section &channel) {
  channel.set(keys::ssid, "");
  channel.set(keys::token, "");
  channel.set(keys::hash_string, "");
}

}  // namespace usbdev
