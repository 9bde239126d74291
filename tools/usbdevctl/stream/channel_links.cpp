// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/channel_links.h"

#include <platform/xmlcfg.h>

#include "channel/channel_reset.h"
#include "output/output.h"
#include "output/printable.h"
#include "stream/live_link.h"

namespace usbdevctl {

namespace {

/// Longer than the library's own names of links.
constexpr int kLongestLinkName = 127;

std::string readName(void *configuration, int channel, const char *key, const char *sub_key) {
  char name[kLongestLinkName + 1] = {};  // the host may leave it unterminated
  const std::string section = "ch" + std::to_string(channel);
  xmlcfg_get_str(configuration, "", name, kLongestLinkName, kConfigurationRoot, section.c_str(), key, sub_key);
  return name;
}

bool isGone(const std::string &name) {
  const LiveLink link = followLink(kApplicationFolder, name);
  if (link.state == LinkState::none || link.state == LinkState::missing) return true;
  complain("the old link could not be removed, and still opens the stream: " + printable(link.path));
  return false;
}

bool isThere(const std::string &name) {
  const LiveLink link = followLink(kApplicationFolder, name);
  if (link.state != LinkState::missing && link.state != LinkState::unreadable) return true;
  complain("the new link could not be made: " + printable(link.path));
  return false;
}

bool followed(const std::string &before, const std::string &after) {
  if (before == after) return true;
  const bool gone = isGone(before);
  return isThere(after) && gone;
}

}  // namespace

ChannelLinks linksOf(int channel) {
  ChannelLinks links;
  void *configuration = nullptr;
  if (xmlcfg_open(0, kConfigurationFile, &configuration) != 1) return links;
  links.live = readName(configuration, channel, "hlspath", nullptr);
  links.shared = readName(configuration, channel, "sharelink", "hash_string");
  xmlcfg_close(configuration, 0);
  return links;
}

ExitStatus linksFollowed(int channel, const ChannelLinks &before) {
  const ChannelLinks after = linksOf(channel);
  const bool live = followed(before.live, after.live);
  const bool shared = followed(before.shared, after.shared);
  return live && shared ? ExitStatus::ok : ExitStatus::failure;
}

}  // namespace usbdevctl
