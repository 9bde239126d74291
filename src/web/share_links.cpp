// The links by which a profile's live stream is shared.
#include <usbdev/web.h>

#include <cstring>

#include "core/config.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "web/link_ids.h"
#include "web/links.h"

namespace usbdev {
namespace {

/// What names a share link and lets its viewers in.
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
  const Section &section = config.channel(channel);
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

/// False when nothing could be stored; the link, if one was made, is then gone again.
bool saveWithLink(WriterOverCommands &config, const LinkIdentifiers &link) {
  if (config.save()) return true;
  takeBackStreamLink(link.hash_string);
  return false;
}

/// The whole fields, so that nothing of what stood there before is left behind the texts.
void tell(ShareLinkInfo &info, const LinkIdentifiers &link) {
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

/// Removes the link that a section of the file names.
int removeStoredLink(const char *section) {
  char name[kLinkNameSize];
  {
    const ConfigReader config;
    if (!config) return -1;
    config.section(section).get(keys::hash_string, name);
  }
  removeStreamLink(name);
  return 0;
}

}  // namespace
}  // namespace usbdev

int vl_set_share_link(ShareLinkInfo *info) {
  if (info == nullptr) return -1;
  const int channel = usbdev::channelOfProfile(info->profile);
  if (channel == usbdev::kNone) return -1;
  usbdev::StoredLink stored;
  if (!usbdev::readStoredLink(channel, *info, stored)) return -1;

  char password[sizeof info->shrpwd];
  usbdev::copyText(password, info->shrpwd);
  const bool enabled = info->shrenable != 0;
  const bool has_ssid = info->ssid[0] != '\0';
  const bool stays = enabled && has_ssid && usbdev::isSame(password, stored.shrpwd);
  const bool gets_link = enabled && !stays;
  usbdev::LinkIdentifiers link;
  if (gets_link && !usbdev::makeIdentifiers(info->ssid, link)) return -1;

  {
    usbdev::WriterOverCommands config;
    if (!config) return -1;
    const usbdev::Section &section = config.channel(channel);
    usbdev::setProtection(section, *info, password);
    if (!stays) usbdev::removeStreamLink(stored.hash_string);
    if (!enabled) usbdev::withdrawShareLink(section);
    if (gets_link) usbdev::publish(section, info->profile, link, !has_ssid);
    if (!usbdev::saveWithLink(config, link)) return -1;
  }
  if (gets_link) usbdev::tell(*info, link);
  return 0;
}

int vl_get_share_link(ShareLinkInfo *info) {
  if (info == nullptr) return -1;
  const int channel = usbdev::channelOfProfile(info->profile);
  if (channel == usbdev::kNone) return -1;
  const usbdev::ConfigReader config;
  if (!config) return -1;
  const usbdev::Section &section = config.channel(channel);
  section.get(usbdev::keys::profilename, info->profilename);
  info->shrenable = section.get(usbdev::keys::shrenable);
  section.get(usbdev::keys::ssid, info->ssid);
  info->pwdenable = section.get(usbdev::keys::pwdenable);
  section.get(usbdev::keys::shrpwd, info->shrpwd);
  section.get(usbdev::keys::token, info->token);
  section.get(usbdev::keys::hash_string, info->hash_string);
  return 0;
}

int vl_renew_share_link(ShareLinkInfo *info) {
  if (info == nullptr) return -1;
  const int channel = usbdev::channelOfProfile(info->profile);
  if (channel == usbdev::kNone) return -1;
  usbdev::removeStoredLink(usbdev::channelName(channel));  // the new link is made whether or not the old one went
  usbdev::LinkIdentifiers link;
  if (!usbdev::makeIdentifiers("", link)) return -1;
  {
    usbdev::WriterOverCommands config;
    if (!config) return -1;
    usbdev::publish(config.channel(channel), info->profile, link, true);
    if (!usbdev::saveWithLink(config, link)) return -1;
  }
  usbdev::tell(*info, link);
  return 0;
}

int remove_hash_link(const char *section) { return section == nullptr ? -1 : usbdev::removeStoredLink(section); }
