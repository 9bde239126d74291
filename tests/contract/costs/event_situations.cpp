// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "situations.h"

namespace contract {

namespace {

void event(int devtype, int plugged_in, const char *slot, int node = 1) {
  _usbdev_des device = zeroed<_usbdev_des>();
  device.devtype = devtype;
  device.plugged = plugged_in;
  device.node = node;
  strcpy(device.usbslot, slot);
  strcpy(device.devname, "HD Webcam");
  _usbdev_conflict report;
  char devname[256];
  int profile = 0;
  int vnode = 0;
  mn_set_usbdev_hotplug(&device, &profile, devname, &vnode, &report);
}

void cameraComes(Host &host, const char *slot) {
  plugged(host, slot, 1);
  event(1, 1, slot);
}

// What a removal writes; then it looks for somebody who waits.
constexpr Costs kGone = kAllChannels + writing(5);

}  // namespace

Situations eventSituations() {
  return {
      // All channels and, for the switch of its port, two values of each up to its own.
      {"mn_set_usbdev_hotplug", "a known camera is plugged in again", reading(130 + 2) + kProbe + writing(kCameraKeys),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).exists(0);
         cameraComes(host, "3-1");
       }},
      {"mn_set_usbdev_hotplug", "a new camera is plugged in, no other is there", kNewCamera,
       [](Host &host) { cameraComes(host, "3-1"); }},
      {"mn_set_usbdev_hotplug", "a new camera is plugged in, one with a profile is at its root port",
       kNewCamera + kOneChannel + repeats(),
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 2, 0);
         cameraComes(host, "3-1.2");
       }},
      {"mn_set_usbdev_hotplug", "a new camera is plugged in, nine are elsewhere, no bridge",
       kNewCamera + kOneChannel + kNoBridge + repeats(),
       [](Host &host) {
         for (int i = 1; i < 10; ++i) cameraOn(host, i, std::to_string(i) + "-1", 1 + i, i < 4 ? i : -1);
         cameraComes(host, "11-1");
       }},
      {"mn_set_usbdev_hotplug", "a new camera is plugged in, one is elsewhere, both behind a bridge",
       kNewCamera + kOneChannel + 2 * kBridge + repeats(),
       [](Host &host) {
         cameraOn(host, 1, "1-1", 2);
         host.camera(1, "3-1").behindBridge(kController);
         host.camera(2, "1-1").behindBridge(kController);
         cameraComes(host, "3-1");
       }},
      // The displaced camera counts as one at the same root port; its channel is marked with two values more.
      {"mn_set_usbdev_hotplug", "another camera is plugged into a port with a profile",
       reading(130 + 2) + kProbe + kOneChannel + writing(kNewCameraKeys + 2) + repeats(),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 2, 0).name("Other camera");
         cameraComes(host, "3-1");
       }},
      {"mn_set_usbdev_hotplug", "a camera without a usable format is plugged in",
       kNewCamera + some(&Costs::keys_written, 1),
       [](Host &host) {
         plugged(host, "3-1", 1).listing("");
         event(1, 1, "3-1");
       }},
      {"mn_set_usbdev_hotplug", "a camera is unplugged", kGone + kNobodyWaits,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         event(1, 0, "3-1");
       }},
      {"mn_set_usbdev_hotplug", "a camera is unplugged, another one takes over",
       kGone + kAllChannels + kOneChannel + writing(2) + kAllChannels + writing(0),
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1).conflict(0).createTime("2024-03-05 08:15:00");
         event(1, 0, "3-1.1");
       }},
      {"mn_set_usbdev_hotplug", "a sound card is plugged in", kChoice + files() + writing(3),
       [](Host &) { event(0, 1, "3-1"); }},
  };
}

}  // namespace contract
