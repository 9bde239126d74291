// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "text.h"
#include "world.h"

namespace model {

namespace {

constexpr int kCamera = 1;
constexpr int kIgnored = 999;  // "conflictch" of a device that is not supported

}  // namespace

// What is found out about a device that is plugged in.
struct World::Findings {
  bool unsupported = false;
  std::string cap;
  std::string type;
  int behind = -1;   // the channel that the camera has to wait for
  int waiting = -1;  // the channel that has to wait for the camera's
};

// A channel that knows the device wins over one that knows its port, and that one over the first free one.
World::Choice World::choosePlugged(_usbdev_des *device, int *profile) const {
  Choice choice;
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    const Channel &channel = channels[n];
    const bool is_there = channel.number("exists", 0) == 1;
    const bool same_name = channel.name() == device->devname;
    const auto choose = [&] {
      choice.channel = n;
      *profile = channel.profile();
    };
    if (channel.slot() != device->usbslot) {
      if (choice.channel != -1) continue;
      if (channel.slot().empty() || (!channel.hasProfile() && !is_there)) choose();
    } else if (choice.replaced != -1) {
      continue;
    } else if (!channel.hasProfile()) {
      choose();
      if (device->devtype != kCamera && channel.exists()) copy(device->devname, channel.name());
    } else if (same_name || (is_there && device->devtype != kCamera)) {
      choose();
      choice.exact = true;
      return choice;
    } else if (is_there) {
      choice.replaced = n;
      *profile = -1;
    }
  }
  return choice;
}

World::Choice World::chooseRemoved(const _usbdev_des &device, int *profile, char *devname, int *vnode) const {
  Choice choice;
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    const Channel &channel = channels[n];
    if (channel.slot() != device.usbslot || channel.number("exists", 0) != 1) continue;
    choice.channel = n;
    *profile = channel.profile();
    *vnode = channel.vnode();
    if (device.devtype == kCamera) snprintf(devname, 256, "%s", channel.name().c_str());
    return choice;
  }
  return choice;
}

int World::switchStateOf(const std::string &slot) const {
  for (const Channel &channel : channels) {
    if (channel.slot() == slot && channel.number("slot_switch", -1) != -1) return channel.number("slot_switch", -1);
  }
  return 1;
}

World::Findings World::examine(const _usbdev_des &device, int chosen, _usbdev_conflict *answer) {
  Findings findings;
  findings.unsupported = host.unsupported.count(device.devname) != 0;
  if (device.devtype != kCamera) return findings;
  if (isOver60(device.node)) {
    log(1,
        format("Camera[%s %s] has image size over 60 fps. It may cause decode error.", device.usbslot, device.devname));
  }
  findings.cap = capOf(device.node);
  if (findings.cap.empty()) findings.unsupported = true;
  findings.type = host.typeOf(device.node, device.usbslot);
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    const Channel &other = channels[n];
    if (n == chosen) continue;
    copy(answer->devname, other.name());
    if (!other.exists() || !other.hasVideo() || other.isParked()) continue;
    if (!conflicts(other.slot(), device.usbslot, host.bridgeOf(device.node), other.vnode())) continue;
    if (other.hasProfile()) {
      findings.behind = n;
    } else if (channels[chosen].hasProfile()) {
      findings.waiting = n;
    }
    break;
  }
  report(findings, chosen, answer);
  return findings;
}

void World::report(const Findings &findings, int chosen, _usbdev_conflict *answer) const {
  if (findings.behind != -1 && !findings.unsupported) {
    answer->channel = findings.behind;
    answer->profile = channels[findings.behind].profile();
    copy(answer->profilename, channels[findings.behind].text("profilename"));
  } else if (findings.waiting != -1) {
    answer->channel = chosen;
    answer->profile = -1;
    copy(answer->profilename, channels[chosen].text("profilename"));
  }
}

void World::storePlugged(const _usbdev_des &device, const Choice &choice, const Findings &findings, int slot_switch) {
  Channel &channel = channels[choice.channel];
  channel.set("slot_switch", slot_switch);
  if (device.devtype == kCamera) {
    channel.set("exists", 1);
    channel.set("video/vnode", device.node);
    channel.set("video/spsstate", 0);
    channel.set("conflictch", findings.behind);
    channel.set("video/cap", findings.cap);
    channel.set("video/fetype", findings.type);
    channel.set("video/ldspoutput", 0);
  }
  if (device.devtype == kCamera && !choice.exact) {
    channel.set("usbslot", device.usbslot);
    channel.set("devname", device.devname);
    channel.set("profile", -1);
    for (const char *key : {"createtime", "profilename", "hlspath"}) channel.set(key, "");
    channel.set("video/venable", 1);
    channel.set("video/vcodec", contains(findings.cap, "1") ? 1 : 0);
    channel.set("video/width", 1280);
    channel.set("video/height", 720);
    channel.set("video/framerate", "30.00");
    channel.set("video/osdenable", 1);
    channel.set("video/flip", 0);
    channel.set("video/mirror", 0);
  }
  // Sound cards are not attached.
  channel.set("audio/anode", -1);
  channel.set("audio/aenable", 0);
  if (findings.unsupported) {
    channel.set("conflictch", kIgnored);
  } else if (findings.waiting != -1) {
    channels[findings.waiting].set("conflictch", choice.channel);
  }
  if (choice.replaced != -1) {
    channels[choice.replaced].set("exists", -1);
    channels[choice.replaced].set("audio/anode", -1);
  }
}

void World::storeRemoved(int channel) {
  channels[channel].set("exists", 0);
  channels[channel].set("video/vnode", -1);
  channels[channel].set("audio/anode", -1);
  channels[channel].set("video/spsstate", 0);
  channels[channel].set("conflictch", -1);
}

int World::mn_set_usbdev_hotplug(_usbdev_des *device, int *profile, char *devname, int *vnode,
                                 _usbdev_conflict *conflict) {
  *profile = -1;
  const bool camera = device->devtype == kCamera;
  const bool plugged = device->plugged == 1;
  const Choice choice = plugged ? choosePlugged(device, profile) : chooseRemoved(*device, profile, devname, vnode);
  if (choice.channel == -1 || (!camera && beginsWith(device->devname, "KAB"))) return -1;
  const Channel before = channels[choice.channel];
  int next = 99;
  if (!plugged) {
    storeRemoved(choice.channel);
    if (!before.isParked()) updateConflict(choice.channel, -1, 0, &next);
    if (camera) notify(7, before.profile(), -1, -1, 0, next == 99 ? -1 : next);
    return choice.channel;
  }
  const int slot_switch = switchStateOf(device->usbslot);
  const Findings findings = examine(*device, choice.channel, conflict);
  storePlugged(*device, choice, findings, slot_switch);
  const bool waits = findings.behind != -1;
  if (host.one_channel && waits) updateConflict(choice.channel, findings.behind, 1, &next);
  const bool streams = choice.exact && !waits && before.number("video/vcodec", 1) == 1 && slot_switch == 1;
  if (camera && streams) notify(6, before.profile(), 0, 1, 0, next == 99 ? before.profile() : next);
  return choice.channel;
}

int World::mn_set_usbchn_sps(int profile, int value) {
  const int n = channelOf(profile);
  if (n == -1) return -1;
  channels[n].set("video/spsstate", value);
  return 0;
}

// 0 is silence, which the host's audio library calls -1.
int World::mn_set_usbdev_volume(int profile) {
  const int n = channelOf(profile);
  if (n == -1 || !channels[n].exists() || !channels[n].hasAudio()) return -1;
  const int card = channels[n].anode();
  const int volume = channels[n].number("audio/volume", 50);
  done.push_back(format("volume %d %d", card, volume == 0 ? -1 : volume));
  return host.cards.count(card) != 0 ? 0 : -1;
}

}  // namespace model
