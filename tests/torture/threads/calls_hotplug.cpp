// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/usbdev.h>

#include "calls.h"
#include "settled_host.h"

namespace torture {

namespace {

/// What a start-up knows of the channels: nothing but the camera of one.
struct Records {
  explicit Records(int channel) {
    for (_usbdev_update &record : list) record.vnode = record.anode = record.state = record.profile = -1;
    for (int &mark : map) mark = -1;
    _usbdev_update &known = list[channel];
    known.vnode = nodeOf(channel);
    known.state = known.slot_switch = 1;
    known.profile = channel;
    portOf(channel).copy(known.usbslot, sizeof known.usbslot);
    std::string("live" + std::to_string(channel)).copy(known.hlspath, sizeof known.hlspath);
  }

  _usbdev_update list[10] = {};
  int map[10];
};

std::string plugAgain() {
  _usbdev_des device{};
  device.devtype = device.plugged = 1;
  device.node = nodeOf(3);
  portOf(3).copy(device.usbslot, sizeof device.usbslot);
  std::string(kName).copy(device.devname, sizeof device.devname);
  int profile = 0;
  int vnode = 0;
  char devname[256] = "";
  _usbdev_conflict conflict{};
  return seen(mn_set_usbdev_hotplug(&device, &profile, devname, &vnode, &conflict), device, profile, devname, conflict);
}

Calls events() {
  return {
      {"mn_set_usbdev_hotplug", plugAgain, Turn::device_event},
      {"vl_set_devpf_list", [] { return seen(vl_set_devpf_list()); }, Turn::device_event},
      {"mn_sync_usbdev_conf", [] { return seen(mn_sync_usbdev_conf()); }, Turn::device_event},
      {"sync_usbdev",
       [] {
         Records cameras(3);
         _usbdev_update &camera = cameras.list[0] = cameras.list[3];
         std::string(kName).copy(camera.devname, sizeof camera.devname);
         return seen(sync_usbdev(1, cameras.list, 0, cameras.list));
       },
       Turn::device_event},
  };
}

Calls steps() {
  return {
      {"check_halvane", [] { return seen(check_halvane()); }},
      {"get_conf_chinfo",
       [] {
         Records channels(0);
         Records cameras(0);
         int count = 0;
         const int result = get_conf_chinfo(channels.list, channels.map, &count, cameras.list);
         return seen(result, channels, count, cameras);
       }},
      {"get_conf_audioinfo",
       [] {
         Records channels(0);
         Records cards(0);
         int count = 0;
         const int result = get_conf_audioinfo(channels.list, channels.map, &count, cards.list, 0, cards.list);
         return seen(result, channels, count, cards);
       }},
      {"update_usbinfo",
       [] {
         Records channels(0);
         return seen(update_usbinfo(channels.list), channels);
       }},
      {"rmNone1stProfile",
       [] {
         Records channels(2);
         return seen(rmNone1stProfile(channels.list), channels);
       }},
      {"mn_set_usbchn_sps", [] { return seen(mn_set_usbchn_sps(2, 0)); }},
      {"mn_set_usbdev_volume", [] { return seen(mn_set_usbdev_volume(1)); }},
  };
}

Calls readers() {
  return {
      {"get_video_info",
       [] {
         int vnode = 0;
         char name[256] = "";
         return seen(get_video_info("1-1:1.0", &vnode, name), vnode, name);
       }},
      {"get_audio_info",
       [] {
         int card = 0;
         char name[256] = "";
         return seen(get_audio_info("2-1:1.2", &card, name), card, name);
       }},
      {"get_usb_vnode",
       [] {
         Records records(0);
         return seen(get_usb_vnode(records.list), records.list[0]);
       }},
      {"get_usb_anode",
       [] {
         Records records(1);
         return seen(get_usb_anode(&records.list[1]), records.list[1]);
       }},
  };
}

}  // namespace

Calls hotplugCalls() {
  Calls all = events();
  for (const Calls &part : {steps(), readers()}) all.insert(all.end(), part.begin(), part.end());
  return all;
}

}  // namespace torture
