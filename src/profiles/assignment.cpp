#include <arpa/inet.h>
#include <usbdev/devices.h>
#include <usbdev/profiles.h>

#include "core/change_notification.h"
#include "core/event_log.h"
#include "core/local_time.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/conflicts.h"
#include "web/link_ids.h"
#include "web/links.h"

namespace usbdev {
namespace {

/// The attached channel that holds a profile; a channel whose device is gone is not asked.
int findProfile(const ChannelSnapshots &channels, int profile) {
  for (int i = 0; i < kChannels; ++i) {
    if (channels[i].exists != 0 && channels[i].profile == profile) return i;
  }
  return kNone;
}

/// The attached channel whose device sits in a port.
int findSlot(const ChannelSnapshots &channels, const char *usbslot) {
  for (int i = 0; i < kChannels; ++i) {
    if (channels[i].exists != 0 && isSame(channels[i].usbslot, usbslot)) return i;
  }
  return kNone;
}

void findConflicts(const ChannelSnapshots &channels, int target, ChannelMarks &conflicting) {
  HostAnswers host;
  ConflictTest test(host, channels[target].usbslot, channels[target].vnode);
  markConflicts(test, channels, target, conflicting);
}

/// The identifiers that a profile gets with its camera.
struct NewLink {
  char tag[16] = "";
  char hash[kLinkNameSize] = "";
};

bool writeAssignment(int target, int profile, const NewLink &link, const ChannelMarks &conflicting) {
  WriterOverCommands config;
  if (!config) return false;
  char now[kTimeTextSize];
  formatLocalTime(now);
  const Section &channel = config.channel(target);
  channel.set(keys::profile, profile);
  channel.set(keys::createtime, now);
  channel.set(keys::vtag, link.tag);
  channel.set(keys::hlspath, link.hash);
  makeStreamLink(profile, link.hash);
  writeParked(config, conflicting, target);
  if (config.save()) return true;
  takeBackStreamLink(link.hash);
  return false;
}

bool writeCleared(int channel_number) {
  ConfigWriter config;
  if (!config) return false;
  const Section &channel = config.channel(channel_number);
  writeUnbound(channel);
  channel.set(keys::vtag, "");
  channel.set(keys::spsstate, 0);
  channel.set(keys::shrenable, 0);
  channel.set(keys::pwdenable, 0);
  channel.set(keys::shrpwd, "");
  withdrawShareLink(channel);
  return config.save();
}

}  // namespace
}  // namespace usbdev

using namespace usbdev;

int vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned) {
  if (usbslot == nullptr || unassigned == nullptr || !isProfile(profile)) return -1;
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return -1;
  const int channel = findSlot(channels, usbslot);
  if (channel == kNone) return 0;
  if (channels[channel].profile == kNone) {
    *unassigned = 1;
    return 0;
  }
  return channels[channel].profile == profile ? 0 : -1;
}

int vl_set_usbchn_profile(char *usbslot, int profile) {
  if (usbslot == nullptr || !isProfile(profile)) return -1;
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return -1;
  const int holder = findProfile(channels, profile);
  if (holder != kNone) return isSame(channels[holder].usbslot, usbslot) ? 0 : -1;
  const int target = findSlot(channels, usbslot);
  if (target == kNone || channels[target].profile != kNone) return -1;

  ChannelMarks conflicting;
  findConflicts(channels, target, conflicting);
  NewLink link;
  makeShareId(link.tag);
  makeHash(link.hash);
  if (!writeAssignment(target, profile, link, conflicting)) return -1;
  logEvent(EventLevel::information, "Modified Channel %d USB device name: %s (%s)", profile + 1,
           channels[target].devname, usbslot);
  return 0;
}

int vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code) {
  const int channel_number = channelOfProfile(profile);
  if (channel_number == kNone) return -1;
  ChangeNotification notification(profile, static_cast<EventCode>(event_code));
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
  sendNotification(notification);
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
    ConfigWriter config;
    if (!config) return -1;
    config.channel(channel_number).set(keys::profilename, new_name);
    if (!config.save()) return -1;
  }
  if (changed || static_cast<EventCode>(event_code) == EventCode::report_all) {
    logEvent(EventLevel::information, "Modified Channel %d channel name: %s", profile + 1, new_name);
  }
  return 0;
}
