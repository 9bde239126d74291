#include <arpa/inet.h>
#include <usbdev/core.h>
#include <usbdev/devices.h>
#include <usbdev/profiles.h>
#include <usbdev/web.h>

#include "core/change_notification.h"
#include "core/config.h"
#include "core/event_log.h"
#include "core/local_time.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/conflicts.h"
#include "web/links.h"

namespace usbdev {
namespace {

struct Holder {
  bool exists;
  int profile;
  int vnode;
  char usbslot[128];
  char devname[256];
};

bool readHolders(Holder (&holders)[kChannels]) {
  const ConfigReader config;
  if (!config) return false;
  for (int i = 0; i < kChannels; ++i) {
    const Section &section = config.channel(i);
    holders[i].exists = section.get(keys::exists) != 0;
    holders[i].profile = section.get(keys::profile);
    holders[i].vnode = section.get(keys::vnode);
    section.get(keys::usbslot, holders[i].usbslot);
    section.get(keys::devname, holders[i].devname);
  }
  return true;
}

/// The attached channel that holds a profile; a channel whose device is gone is not asked.
int findProfile(const Holder (&holders)[kChannels], int profile) {
  for (int i = 0; i < kChannels; ++i) {
    if (holders[i].exists && holders[i].profile == profile) return i;
  }
  return kNone;
}

/// The attached channel whose device sits in a port.
int findSlot(const Holder (&holders)[kChannels], const char *usbslot) {
  for (int i = 0; i < kChannels; ++i) {
    if (holders[i].exists && isSame(holders[i].usbslot, usbslot)) return i;
  }
  return kNone;
}

void findConflicts(const Holder (&holders)[kChannels], int target, bool (&conflicting)[kChannels]) {
  HostAnswers host;
  ConflictTest test(host, holders[target].usbslot);
  test.addNode(holders[target].vnode);
  for (int i = 0; i < kChannels; ++i) {
    const Holder &other = holders[i];
    conflicting[i] =
        i != target && other.exists && other.vnode != kNone && test.conflictsWith(other.usbslot, other.vnode);
  }
}

/// The identifiers that a profile gets with its camera.
struct NewLink {
  char tag[16] = "";
  char hash[kLinkNameSize] = "";
};

bool writeAssignment(int target, int profile, const NewLink &link, const bool (&conflicting)[kChannels]) {
  const ConfigWriter config;
  if (!config) return false;
  char now[kTimeTextSize];
  formatLocalTime(now);
  const Section &channel = config.channel(target);
  channel.set(keys::profile, profile);
  channel.set(keys::createtime, now);
  channel.set(keys::vtag, link.tag);
  channel.set(keys::hlspath, link.hash);
  makeStreamLink(profile, link.hash);
  for (int i = 0; i < kChannels; ++i) {
    if (conflicting[i]) config.channel(i).set(keys::conflictch, target);
  }
  return true;
}

bool writeCleared(int channel_number) {
  const ConfigWriter config;
  if (!config) return false;
  const Section &channel = config.channel(channel_number);
  channel.set(keys::profile, kNone);
  channel.set(keys::createtime, "");
  channel.set(keys::profilename, "");
  channel.set(keys::hlspath, "");
  channel.set(keys::vtag, "");
  channel.set(keys::spsstate, 0);
  channel.set(keys::shrenable, 0);
  channel.set(keys::pwdenable, 0);
  channel.set(keys::shrpwd, "");
  channel.set(keys::ssid, "");
  channel.set(keys::token, "");
  channel.set(keys::hash_string, "");
  return true;
}

}  // namespace
}  // namespace usbdev

using namespace usbdev;

int vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned) {
  if (usbslot == nullptr || unassigned == nullptr || !isProfile(profile)) return -1;
  Holder holders[kChannels];
  if (!readHolders(holders)) return -1;
  const int channel = findSlot(holders, usbslot);
  if (channel == kNone) return 0;
  if (holders[channel].profile == kNone) {
    *unassigned = 1;
    return 0;
  }
  return holders[channel].profile == profile ? 0 : -1;
}

int vl_set_usbchn_profile(char *usbslot, int profile) {
  if (usbslot == nullptr || !isProfile(profile)) return -1;
  Holder holders[kChannels];
  if (!readHolders(holders)) return -1;
  const int holder = findProfile(holders, profile);
  if (holder != kNone) return isSame(holders[holder].usbslot, usbslot) ? 0 : -1;
  const int target = findSlot(holders, usbslot);
  if (target == kNone || holders[target].profile != kNone) return -1;

  bool conflicting[kChannels];
  findConflicts(holders, target, conflicting);
  NewLink link;
  generate_ssid(link.tag);
  generate_hash(link.hash);
  if (!writeAssignment(target, profile, link, conflicting)) return -1;
  logEvent(EventLevel::information, "Modified Channel %d USB device name: %s (%s)", profile + 1,
           holders[target].devname, usbslot);
  return 0;
}

int vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code) {
  const int channel_number = channelOfProfile(profile);
  if (channel_number == kNone) return -1;
  ChangeNotification notification(profile, event_code);
  if (client_ip != nullptr) {
    const in_addr_t address = inet_addr(client_ip);
    std::memcpy(notification.request_header + 4, &address, sizeof address);
  }
  char share_link[kLinkNameSize];
  char live_link[kLinkNameSize];
  {
    const ConfigReader config;
    if (!config) return -1;
    const Section &channel = config.channel(channel_number);
    notification.vnode = channel.get(keys::vnode);
    notification.anode = channel.get(keys::anode);
    channel.get(keys::hash_string, share_link);
    channel.get(keys::hlspath, live_link);
  }
  removeStreamLink(share_link);
  removeStreamLink(live_link);
  if (!writeCleared(channel_number)) return -1;
  int successor = kNoSuccessor;
  updateConflict(channel_number, kNone, event_code, &successor);
  if (successor != kNoSuccessor) notification.target = successor;
  vl_settingNotify(&notification);
  return 0;
}

int vl_set_profile_channelname(int profile, const char *name, int event_code) {
  if (name == nullptr) return -1;
  const int channel_number = channelOfProfile(profile);
  if (channel_number == kNone) return -1;
  char new_name[256];
  copyText(new_name, name);
  char old_name[256];
  {
    const ConfigReader config;
    if (!config) return -1;
    config.channel(channel_number).get(keys::profilename, old_name);
  }
  const bool changed = !isSame(old_name, new_name);
  if (changed) {
    const ConfigWriter config;
    if (!config) return -1;
    config.channel(channel_number).set(keys::profilename, new_name);
  }
  if (changed || event_code == kEventReportAll) {
    logEvent(EventLevel::information, "Modified Channel %d channel name: %s", profile + 1, new_name);
  }
  return 0;
}
