// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/share_links.h"

#include <cstring>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "web/link_ids.h"
#include "web/links.h"

namespace usbdev {
namespace {

/// The identifiers of a share link.
struct LinkIdentifiers {
  char ssid[48] = "";
  char token[64] = "";
  char hash_string[64] = "";
};

struct StoredLink {
  char hash_string[64];
  char shrpwd[32];
};

/// The share id is read into the caller's record, where it stays also when nothing can be written afterwards.
bool readStoredLink(int channel, ShareLinkInfo &info, StoredLink &stored) {
  const ConfigReader config;
  if (!config) return false;
  const Section section = config.channel(channel);
  section.get(keys::ssid, info.ssid);
  section.get(keys::hash_string, stored.hash_string);
  section.get(keys::shrpwd, stored.shrpwd);
  return true;
}

/// False when the token or the link's name could not be made: without one of them there is no link.
bool makeIdentifiers(const char *kept_ssid, LinkIdentifiers &made) {
  copyText(made.ssid, kept_ssid);
  if (kept_ssid[0] == '\0') makeShareId(made.ssid);
  makeHash(made.token);
  makeHash(made.hash_string);
  return made.token[0] != '\0' && made.hash_string[0] != '\0';
}

/// Sets the identifiers and makes the link, all under the lock.
void publish(const Section &section, int profile, const LinkIdentifiers &link, bool ssid_is_new) {
  if (ssid_is_new) section.set(keys::ssid, link.ssid);
  section.set(keys::token, link.token);
  section.set(keys::hash_string, link.hash_string);
  makeStreamLink(profile, link.hash_string);
}

/// False when nothing could be stored; a link that was made is then removed.
bool saveWithLink(WriterOverCommands &config, const LinkIdentifiers &link) {
  if (config.save()) return true;
  takeBackStreamLink(link.hash_string);
  return false;
}

/// Copies the whole fields, so that nothing of the earlier texts is left after the new ones.
void report(ShareLinkInfo &info, const LinkIdentifiers &link) {
  static_assert(sizeof info.ssid == sizeof link.ssid && sizeof info.token == sizeof link.token &&
                sizeof info.hash_string == sizeof link.hash_string);
  std::memcpy(info.ssid, link.ssid, sizeof info.ssid);
  std::memcpy(info.token, link.token, sizeof info.token);
  std::memcpy(info.hash_string, link.hash_string, sizeof info.hash_string);
}

void setProtection(const Section &section, const ShareLinkInfo &info, const char *password) {
  section.set(keys::shrenable, info.shrenable);
  section.set(keys::pwdenable, info.pwdenable);
  section.set(keys::shrpwd, password);
}

}  // namespace

bool setShareLink(ShareLinkInfo &info) {
  const int channel = channelOfProfile(info.profile);
  if (channel == kNone) return false;
  StoredLink stored;
  if (!readStoredLink(channel, info, stored)) return false;

  char password[sizeof info.shrpwd];
  copyText(password, info.shrpwd);
  const bool enabled = info.shrenable != 0;
  const bool has_ssid = info.ssid[0] != '\0';
  const bool stays = enabled && has_ssid && isSame(password, stored.shrpwd);
  const bool gets_link = enabled && !stays;
  LinkIdentifiers link;
  if (gets_link && !makeIdentifiers(info.ssid, link)) return false;

  {
    WriterOverCommands config;
    if (!config) return false;
    const Section section = config.channel(channel);
    setProtection(section, info, password);
    if (!stays) removeStreamLink(stored.hash_string);
    if (!enabled) withdrawShareLink(section);
    if (gets_link) publish(section, info.profile, link, !has_ssid);
    if (!saveWithLink(config, link)) return false;
  }
  if (gets_link) report(info, link);
  return true;
}

bool readShareLink(ShareLinkInfo &info) {
  const int channel = channelOfProfile(info.profile);
  if (channel == kNone) return false;
  const ConfigReader config;
  if (!config) return false;
  const Section section = config.channel(channel);
  section.get(keys::profilename, info.profilename);
  info.shrenable = section.get(keys::shrenable);
  section.get(keys::ssid, info.ssid);
  info.pwdenable = section.get(keys::pwdenable);
  section.get(keys::shrpwd, info.shrpwd);
  section.get(keys::token, info.token);
  section.get(keys::hash_string, info.hash_string);
  return true;
}

bool renewShareLink(ShareLinkInfo &info) {
  const int channel = channelOfProfile(info.profile);
  if (channel == kNone) return false;
  // Intended: The old link may still be there.
  removeStoredLink(channelName(channel));
  LinkIdentifiers link;
  if (!makeIdentifiers("", link)) return false;
  {
    WriterOverCommands config;
    if (!config) return false;
    // Intended: A disabled link is renewed too.
    publish(config.channel(channel), info.profile, link, true);
    if (!saveWithLink(config, link)) return false;
  }
  report(info, link);
  return true;
}

bool removeStoredLink(const char *section) {
  char name[kLinkNameSize];
  {
    const ConfigReader config;
    if (!config) return false;
    config.section(section).get(keys::hash_string, name);
  }
  removeStreamLink(name);
  return true;
}

}  // namespace usbdev
