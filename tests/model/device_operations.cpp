// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Devices come and go, and the conflicts between them are settled.
#include <usbdev/usbdev.h>

#include <algorithm>

#include "catalog.h"
#include "operations.h"
#include "record_text.h"
#include "text.h"

namespace model {

namespace {

constexpr int kNodes = 12;  // more than the channels

_usbdev_des described(int type, int node, const std::string &slot, const std::string &name, bool plugged) {
  _usbdev_des device{};
  device.devtype = type;
  device.node = node;
  device.plugged = plugged ? 1 : 0;
  copy(device.usbslot, slot);
  copy(device.devname, name);
  return device;
}

// The library and the model are given the event.
void event(TwinWorlds &worlds, const _usbdev_des &device) {
  struct Outputs {
    _usbdev_des device;
    int profile = 77;
    char name[256] = "untouched";
    int vnode = 77;
    _usbdev_conflict conflict = contract::zeroed<_usbdev_conflict>();
  };
  Outputs library{device};
  Outputs model{device};
  worlds.call("mn_set_usbdev_hotplug", device.devtype == 1 ? "camera" : "card", device.node, device.usbslot,
              device.devname, device.plugged == 1 ? "in" : "out");
  worlds.returned(
      mn_set_usbdev_hotplug(&library.device, &library.profile, library.name, &library.vnode, &library.conflict),
      worlds.world.mn_set_usbdev_hotplug(&model.device, &model.profile, model.name, &model.vnode, &model.conflict));
  worlds.wrote("name of the device", library.device.devname, model.device.devname);
  worlds.wroteRecord(library.profile, model.profile);
  worlds.wroteRecord(library.vnode, model.vnode);
  worlds.wrote("devname", library.name, model.name);
  worlds.wrote("report's profile name", library.conflict.profilename, model.conflict.profilename);
  worlds.wrote("report's device name", library.conflict.devname, model.conflict.devname);
  worlds.wroteRecord(library.conflict.channel, model.conflict.channel);
  worlds.wroteRecord(library.conflict.profile, model.conflict.profile);
}

int nodeOf(const TwinWorlds &worlds, const std::string &slot) {
  for (const auto &[node, camera] : worlds.world.host.cameras) {
    if (camera.slot == slot) return node;
  }
  return -1;
}

// Another camera may be in the port still, if its removal went unnoticed.
void plugCamera(TwinWorlds &worlds, Choices &choose) {
  const Camera &camera = choose.of(worlds.world.host.owned);
  const bool noticed = !choose.rarely(8);
  int node = choose.below(kNodes);
  if (nodeOf(worlds, camera.slot) != -1) worlds.detach(nodeOf(worlds, camera.slot));
  while (worlds.world.host.cameras.count(node) != 0) node = (node + 1) % kNodes;
  worlds.attach(node, camera);
  if (noticed) {
    event(worlds, described(1, node, camera.slot, camera.name, true));
  } else {
    worlds.call("(unnoticed: camera is plugged in)", node, camera.slot, camera.name);
  }
}

void unplugCamera(TwinWorlds &worlds, Choices &choose) {
  const std::string port = choose.port();
  const int node = nodeOf(worlds, port);
  if (node != -1) worlds.detach(node);
  if (choose.rarely(8)) {
    worlds.call("(unnoticed: camera is unplugged)", port);
  } else {
    event(worlds, described(1, node, port, "HD Webcam", false));
  }
}

void plugCard(TwinWorlds &worlds, Choices &choose) {
  const int number = choose.below(static_cast<int>(cards().size()));
  const Card &card = cards()[static_cast<size_t>(number)];
  worlds.attachCard(number, card);
  event(worlds, described(0, number, card.slot, card.name, true));
}

void unplugCard(TwinWorlds &worlds, Choices &choose) {
  const int number = choose.below(static_cast<int>(cards().size()));
  const Card &card = cards()[static_cast<size_t>(number)];
  if (worlds.world.host.cards.count(number) != 0) worlds.detachCard(number);
  event(worlds, described(0, number, card.slot, card.name, false));
}

void startUp(TwinWorlds &worlds, Choices &) {
  worlds.call("vl_set_devpf_list");
  worlds.returned(vl_set_devpf_list(), worlds.world.vl_set_devpf_list());
}

void synchronise(TwinWorlds &worlds, Choices &) {
  worlds.call("mn_sync_usbdev_conf");
  worlds.returned(mn_sync_usbdev_conf(), worlds.world.mn_sync_usbdev_conf());
}

void checkCodec(TwinWorlds &worlds, Choices &) {
  worlds.call("check_halvane");
  worlds.returned(check_halvane(), worlds.world.check_halvane());
}

void handOver(TwinWorlds &worlds, Choices &choose) {
  const int channel = choose.below(12) - 1;
  const int value = choose.rarely(4) ? choose.channel() : -1;
  const int mode = choose.eventCode();
  int library = 77;
  int model = 77;
  worlds.call("updateConflict", channel, value, mode);
  worlds.returned(updateConflict(channel, value, mode, &library),
                  worlds.world.updateConflict(channel, value, mode, &model));
  worlds.wroteRecord(library, model);
}

void findConflict(TwinWorlds &worlds, Choices &choose) {
  const int channel = choose.below(12) - 1;
  int library[USBDEV_CHANNELS] = {};
  int model[USBDEV_CHANNELS] = {};
  worlds.call("getConflictCH", channel);
  worlds.returned(getConflictCH(channel, library), worlds.world.getConflictCH(channel, model));
  worlds.wroteRecord(library, model);
}

void recompute(TwinWorlds &worlds, Choices &choose) {
  int library[USBDEV_CHANNELS];
  for (int &state : library) state = choose.of<int>({-1, 1, 1, 1, 0, 0, 5, 999});
  int model[USBDEV_CHANNELS];
  std::copy(std::begin(library), std::end(library), std::begin(model));
  worlds.call("syncConflict", library[0], library[1], library[2], "...");
  worlds.returned(syncConflict(library), worlds.world.syncConflict(model));
  worlds.wroteRecord(library, model);
}

void compare(TwinWorlds &worlds, Choices &choose) {
  const std::string other = choose.port();
  const std::string port = choose.port();
  const std::string bridge = worlds.world.host.bridgeOf(choose.below(kNodes));
  const int node = choose.below(kNodes + 1) - 1;
  std::string library = other;
  std::string model = other;
  worlds.call("chkconflict", other, port, bridge, node);
  worlds.returned(chkconflict(library.data(), port.c_str(), !bridge.empty(), node, bridge.c_str()),
                  worlds.world.chkconflict(model.data(), port.c_str(), !bridge.empty(), node, bridge.c_str()));
  worlds.wrote("port", library, model);
}

void compareAges(TwinWorlds &worlds, Choices &choose) {
  const std::string a = worlds.world.channels[choose.channel()].text("createtime");
  const std::string b = worlds.world.channels[choose.channel()].text("createtime");
  worlds.call("isElderPf", a, b);
  worlds.returned(isElderPf(a.c_str(), b.c_str()), World::isElderPf(a.c_str(), b.c_str()));
}

void countTimeout(TwinWorlds &worlds, Choices &choose) {
  const int index = choose.below(6) - 1;
  worlds.call("vl_add_shm_timeout_log", index);
  worlds.returned(vl_add_shm_timeout_log(index), worlds.world.vl_add_shm_timeout_log(index));
}

struct Key {
  const char *key;
  std::vector<std::string> values;
};

// What an older version may have left, or another program stored.
const std::vector<Key> kStored = {
    {"exists", {"1", "0", "-1"}},
    {"profile", {"-1", "0", "1", "2", "3"}},
    {"usbslot", {"1-1.2", "1-1.4", "1-2", "2-1", "6-1", "7-1", ""}},
    {"devname", {"HD Webcam", "Garden Cam", "KAB-1", "USB Mic"}},
    {"slot_switch", {"0", "1"}},
    {"conflictch", {"-1", "-1", "0", "1", "2", "7", "999"}},
    {"createtime", {"2024-03-05 08:15:00", "2024-03-04 23:00:00", "2031-01-01 00:00:00", ""}},
    {"profilename", {"Front door", ""}},
    {"hlspath", {"abcdef", ""}},
    {"video/vnode", {"-1", "0", "1", "5", "11"}},
    {"video/vcodec", {"0", "1"}},
    {"video/cap", {"0", "1", "0 1", ""}},
    {"video/framerate", {"15.00", "7.50", ""}},
    {"video/osdenable", {"0"}},
    {"audio/anode", {"-1", "0", "2", "3"}},
    {"audio/aenable", {"0", "1"}},
    {"audio/acap", {"1", "0 1"}},
    {"audio/volume", {"0", "80"}},
    {"sharelink/shrenable", {"0", "1"}},
    {"sharelink/ssid", {"12345678", "1234567890123456", ""}},
    {"sharelink/hash_string", {"fedcba", ""}},
};

void storeKey(TwinWorlds &worlds, Choices &choose) {
  const Key &key = choose.of(kStored);
  const int channel = choose.channel();
  if (choose.rarely(3)) {
    worlds.call("(somebody removes)", channel, key.key);
    worlds.forget(channel, key.key);
    return;
  }
  const std::string &value = choose.of(key.values);
  worlds.call("(somebody stores)", channel, key.key, value);
  worlds.store(channel, key.key, value);
}

// A version that attached sound cards has left one with a channel that streams.
void storeCard(TwinWorlds &worlds, Choices &choose) {
  int channel = 0;
  if (worlds.world.trsProfiletoPlugCh(choose.profile(), &channel) != 0) return;
  worlds.call("(somebody stores)", channel, "audio/anode", 2);
  worlds.store(channel, "audio/anode", "2");
}

}  // namespace

const std::vector<Happening> &deviceHappenings() {
  static const std::vector<Happening> all = {{40, plugCamera},  {14, unplugCamera}, {6, plugCard},    {4, unplugCard},
                                             {3, startUp},      {3, synchronise},   {1, checkCodec},  {4, handOver},
                                             {3, findConflict}, {3, recompute},     {8, storeKey},    {4, storeCard},
                                             {2, compare},      {1, compareAges},   {2, countTimeout}};
  return all;
}

}  // namespace model
