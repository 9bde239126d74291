// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <map>

#include "text.h"
#include "world.h"

namespace model {

namespace {

_usbdev_des plugged(int type, int node, const std::string &slot, const std::string &name) {
  _usbdev_des device{};
  device.devtype = type;
  device.node = node;
  device.plugged = 1;
  copy(device.usbslot, slot);
  copy(device.devname, name);
  return device;
}

// All that is read of a node's number, so that video12 is taken for video2.
int lastDigit(int number) { return number % 10; }

}  // namespace

// What a start-up finds under the host's drivers.
struct World::Present {
  struct Record {
    bool known = false;  // a device was stored, and not displaced
    int vnode = -1;
    int profile = -1;
    std::string slot;
    std::string name;
  };
  Record records[USBDEV_CHANNELS];
  int states[USBDEV_CHANNELS];
  std::vector<std::pair<int, Camera>> new_cameras;
  std::vector<std::pair<int, Card>> new_cards;

  // That of the camera in the same port, whose microphone the card is, else its own.
  std::string nameOf(const Card &card) const {
    for (const Record &record : records) {
      if (record.slot == card.slot) return record.name;
    }
    for (const auto &[node, camera] : new_cameras) {
      if (camera.slot == card.slot) return camera.name;
    }
    return card.name;
  }
};

// A host that cannot encode streams MJPEG only.
int World::check_halvane() {
  if (host.encoder) return 0;
  for (Channel &channel : channels) {
    if (!channel.hasVideo() || !(channel.exists() || channel.hasProfile())) continue;
    if (!contains(channel.text("video/cap"), "1")) {
      channel.set("conflictch", 999);
    } else if (channel.number("video/vcodec", 1) == 0) {
      channel.set("video/vcodec", 1);
    }
  }
  return 0;
}

void World::scanCameras(Present *present) const {
  for (const auto &[long_node, attached] : host.cameras) {
    const int node = lastDigit(long_node);
    if (host.cameras.count(node) == 0) continue;
    const Camera camera{attached.slot, host.cameras.at(node).name, "", "", {}};
    bool taken = false;
    for (int n = 0; n < USBDEV_CHANNELS; ++n) {
      const Channel &channel = channels[n];
      Present::Record &record = present->records[n];
      const int exists = channel.number("exists", -1);
      if (channel.slot() != camera.slot) continue;
      if (taken || channel.name() != camera.name) {
        record.vnode = -1;
        if (exists == 1) present->states[n] = 0;
        continue;
      }
      taken = true;
      record.vnode = node;
      record.slot = camera.slot;
      record.name = camera.name;
      present->states[n] = channel.conflict() != 999 || exists == 0 ? 1 : host.encoder ? 0 : 999;
    }
    if (!taken && present->new_cameras.size() < 10) present->new_cameras.emplace_back(node, camera);
  }
}

void World::scanCards(Present *present) const {
  for (const auto &[number, card] : host.cards) {
    const std::string name = present->nameOf(card);
    bool matched = false;
    for (int n = 0; n < USBDEV_CHANNELS; ++n) {
      if (beginsWith(channels[n].name(), "KAB")) {
        present->records[n].profile = -1;
      } else if (channels[n].slot() == card.slot && channels[n].name() == name) {
        matched = true;
      }
    }
    if (!matched && !beginsWith(card.name, "KAB") && present->new_cards.size() < 10) {
      present->new_cards.emplace_back(lastDigit(number), Card{card.slot, name});
    }
  }
}

// The new hash of a profile that had none, and the links of a profile's stream.
void World::linkPresent(Channel *channel, const Channel &before, int profile) {
  std::string hash = before.text("hlspath");
  if (hash.empty()) {
    hash = newHash();
    channel->set("hlspath", hash);
  }
  addLink(profile, hash);
  const std::string shared = before.text("sharelink/hash_string");
  if (before.number("sharelink/shrenable", 0) != 0 && !shared.empty()) addLink(profile, shared);
}

void World::storePresent(const Present &present) {
  int slot_switch = 1;  // a channel without a switch has that of the channel before
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    const Present::Record &record = present.records[n];
    if (!record.known) continue;
    Channel &channel = channels[n];
    const Channel before = channel;
    channel.set("video/vnode", record.vnode);
    channel.set("audio/anode", -1);
    channel.set("exists", record.vnode == -1 ? 0 : 1);
    if (record.vnode != -1) {
      channel.set("video/fetype", host.typeOf(record.vnode, record.slot));
      channel.set("video/ldspoutput", 0);
      if (record.profile != -1) linkPresent(&channel, before, record.profile);
    } else {
      channel.set("conflictch", -1);
      if (record.profile == -1) {
        channel.set("profile", -1);
        for (const char *key : {"createtime", "profilename", "hlspath"}) channel.set(key, "");
      }
    }
    const int stored = before.number("slot_switch", -1);
    if (stored == 0 || stored == 1) slot_switch = stored;
    channel.set("slot_switch", slot_switch);
  }
}

int World::mn_sync_usbdev_conf() {
  Present present;
  std::fill_n(present.states, USBDEV_CHANNELS, -1);
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    present.records[n].known = channels[n].number("exists", -1) != -1;
    if (present.records[n].known) present.records[n].profile = channels[n].profile();
  }
  scanCameras(&present);
  scanCards(&present);
  storePresent(present);
  syncConflict(present.states);
  int profile = -1;
  int vnode = -1;
  char name[256];
  _usbdev_conflict conflict{};
  for (const auto &[node, camera] : present.new_cameras) {
    _usbdev_des device = plugged(1, node, camera.slot, camera.name);
    mn_set_usbdev_hotplug(&device, &profile, name, &vnode, &conflict);
  }
  for (const auto &[number, card] : present.new_cards) {
    _usbdev_des device = plugged(0, number, card.slot, card.name);
    mn_set_usbdev_hotplug(&device, &profile, name, &vnode, &conflict);
  }
  for (int n = 0; host.one_channel && n < USBDEV_CHANNELS; ++n) {
    const int others = present.records[n].profile;
    if (others != -1 && others != 0) vl_clear_usbchn_profile(others, nullptr, 3);
  }
  return 1;
}

int World::vl_set_devpf_list() {
  check_halvane();
  mn_sync_usbdev_conf();
  return 0;
}

}  // namespace model
