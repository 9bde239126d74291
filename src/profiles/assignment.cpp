// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profiles/assignment.h"

#include <arpa/inet.h>

#include <cstring>

#include "core/config.h"
#include "core/event_log.h"
#include "core/local_time.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/conflict_hand_over.h"
#include "devices/conflicts.h"
#include "web/link_ids.h"
#include "web/links.h"

namespace usbdev {
namespace {

/// The channel that has a profile and an attached device.
int findProfile(const ChannelSnapshots &channels, int profile) {
  for (int i = 0; i < kChannels; ++i) {
    if (channels[i].exists != 0 && channels[i].profile == profile) return i;
  }
  return kNone;
}

/// The channel whose attached device is in a port.
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
  const Section channel = config.channel(target);
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
  const Section channel = config.channel(channel_number);
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

bool mayAssign(const char *usbslot, int profile, bool &unassigned) {
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return false;
  const int channel = findSlot(channels, usbslot);
  if (channel == kNone) return true;
  unassigned = channels[channel].profile == kNone;
  return unassigned || channels[channel].profile == profile;
}

bool assignProfile(const char *usbslot, int profile) {
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return false;
  const int holder = findProfile(channels, profile);
  if (holder != kNone) return isSame(channels[holder].usbslot, usbslot);
  const int target = findSlot(channels, usbslot);
  if (target == kNone || channels[target].profile != kNone) return false;

  ChannelMarks conflicting;
  findConflicts(channels, target, conflicting);
  NewLink link;
  makeShareId(link.tag);
  makeHash(link.hash);
  if (!writeAssignment(target, profile, link, conflicting)) return false;
  // Intended: Nobody is notified of an assignment.
  logEvent(EventLevel::information, "Modified Channel %d USB device name: %s (%s)", profile + 1,
           channels[target].devname, usbslot);
  return true;
}

bool clearProfile(int profile, const char *client_ip, EventCode code) {
  const int channel_number = channelOfProfile(profile);
  if (channel_number == kNone) return false;
  ChangeNotification notification(profile, code);
  if (client_ip != nullptr) {
    const in_addr_t address = inet_addr(client_ip);
    std::memcpy(notification.request_header + 4, &address, sizeof address);
  }
  char share_link[kLinkNameSize];
  char live_link[kLinkNameSize];
  {
    const ConfigReader config;
    if (!config) return false;
    const Section channel = config.channel(channel_number);
    notification.vnode = channel.get(keys::vnode);
    notification.anode = channel.get(keys::anode);
    channel.get(keys::hash_string, share_link);
    channel.get(keys::hlspath, live_link);
  }
  // Intended: The links are removed before the change is stored.
  removeStreamLink(share_link);
  removeStreamLink(live_link);
  if (!writeCleared(channel_number)) return false;
  HostAnswers host;
  int successor = kNone;
  // Intended: The event code is also the mode of the hand-over.
  handOverConflict(host, channel_number, kNone, handOverModeOf(static_cast<int>(code)), successor);
  notification.target = successor;
  sendNotification(notification);
  return true;
}

bool renameProfile(int profile, const char *name, EventCode code) {
  const int channel_number = channelOfProfile(profile);
  if (channel_number == kNone) return false;
  char new_name[256];
  copyText(new_name, name);
  char old_name[256];
  {
    const ConfigReader config;
    if (!config) return false;
    config.channel(channel_number).get(keys::profilename, old_name);
  }
  const bool changed = !isSame(old_name, new_name);
  if (changed) {
    ConfigWriter config;
    if (!config) return false;
    config.channel(channel_number).set(keys::profilename, new_name);
    if (!config.save()) return false;
  }
  if (changed || code == EventCode::report_all) {
    logEvent(EventLevel::information, "Modified Channel %d channel name: %s", profile + 1, new_name);
  }
  return true;
}

}  // namespace usbdev
