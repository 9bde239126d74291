// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera or a sound card that comes or goes.
#include <usbdev/usbdev.h>

#include "scenario.h"

namespace calls {
namespace {

_usbdev_des deviceOfType(int devtype, int plugged) {
  _usbdev_des device = contract::zeroed<_usbdev_des>();
  device.devtype = devtype;
  device.node = 1;
  device.plugged = plugged;
  strcpy(device.usbslot, "3-1");
  strcpy(device.devname, "HD Webcam");
  return device;
}

int report(Outputs &out, const _usbdev_des &event) {
  _usbdev_des &device = out.record(event);
  int &profile = out.record<int>();
  char *const name = out.text();
  int &vnode = out.record<int>();
  return mn_set_usbdev_hotplug(&device, &profile, name, &vnode, &out.record<_usbdev_conflict>());
}

int plugIn(World &, Outputs &out) { return report(out, deviceOfType(1, 1)); }
int pullOut(World &, Outputs &out) { return report(out, deviceOfType(1, 0)); }
int plugCard(World &, Outputs &out) { return report(out, deviceOfType(0, 1)); }

// The camera in port 3-1, and the two lists that it is looked up in.
void aCamera(World &w) {
  plugged(w.host, "3-1", 1);
  w.host.files.write("/etc/config/.usbFECam.dat", "046d:0825=3\n");
  w.host.files.write("/etc/config/.usbnosupportlist.dat", "Other\n");
}

// Another one, with a profile.
void anotherAt(World &w, const char *slot) {
  aCamera(w);
  cameraOn(w.host, 1, slot, 2, 1).profileName("Door");
}

void anotherBehindTheBridge(World &w) {
  anotherAt(w, "1-1");
  for (const int node : {1, 2}) w.host.camera(node, "3-1").behindBridge(contract::kController);
}

Scenarios arrivals() {
  return {
      {"mn_set_usbdev_hotplug", "a known camera is plugged in again and streams",
       [](World &w) {
         aCamera(w);
         cameraOn(w.host, 0, "3-1", 1, 0).exists(0).vcodec(1);
       },
       plugIn},
      {"mn_set_usbdev_hotplug", "a new camera is plugged in", aCamera, plugIn},
      {"mn_set_usbdev_hotplug", "a new camera with an encoder and high rates",
       [](World &w) {
         aCamera(w);
         allowEncoding(w.host);
         w.host.camera(1, "3-1").listing(
             contract::Listing().format("YUYV").size(640, 480).rate("90.000").rate("30.000").text());
       },
       plugIn},
      {"mn_set_usbdev_hotplug", "a new camera waits for one at its root port", [](World &w) { anotherAt(w, "3-1.2"); },
       plugIn},
      {"mn_set_usbdev_hotplug", "a new camera waits for one behind its bridge", anotherBehindTheBridge, plugIn},
      {"mn_set_usbdev_hotplug", "a new camera waits on a one-channel host",
       [](World &w) {
         anotherAt(w, "1-1");
         w.host.limitToOneChannel();
       },
       plugIn},
      {"mn_set_usbdev_hotplug", "a known camera makes one without a profile wait",
       [](World &w) {
         aCamera(w);
         cameraOn(w.host, 0, "3-1", 1, 0).exists(0).profileName("Door");
         cameraOn(w.host, 1, "3-1.2", 2);
       },
       plugIn},
      {"mn_set_usbdev_hotplug", "another camera in a port with a profile",
       [](World &w) {
         aCamera(w);
         cameraOn(w.host, 0, "3-1", 2, 0).name("Other camera");
       },
       plugIn},
      {"mn_set_usbdev_hotplug", "a camera that is not supported",
       [](World &w) {
         aCamera(w);
         w.host.files.write("/etc/config/.usbnosupportlist.dat", "HD Webcam\n");
       },
       plugIn},
      {"mn_set_usbdev_hotplug", "a sound card is plugged in", [](World &w) { w.host.sound.card(1, 1, 2, 2, "Card"); },
       plugCard},
  };
}

Scenarios departures() {
  return {
      {"mn_set_usbdev_hotplug", "a camera is pulled out", [](World &w) { cameraOn(w.host, 0, "3-1", 1, 0); }, pullOut},
      {"mn_set_usbdev_hotplug", "a camera is pulled out, another one takes over",
       [](World &w) {
         cameraOn(w.host, 0, "3-1", 1, 0);
         cameraOn(w.host, 1, "3-1.2", 2, 1).conflict(0).createTime("2024-03-05 08:15:00");
         cameraOn(w.host, 2, "1-1", 3);
         for (const int node : {2, 3}) w.host.camera(node, "3-1").behindBridge(contract::kController);
       },
       pullOut},
  };
}

}  // namespace

Scenarios hotplugScenarios() { return arrivals() + departures(); }

}  // namespace calls
