// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/usbdev.h>

#include <cstring>

#include "calls.h"
#include "settled_host.h"

namespace torture {

namespace {

_usbdev_des cameraOf(int channel) {
  _usbdev_des device{};
  device.node = nodeOf(channel);
  portOf(channel).copy(device.usbslot, sizeof device.usbslot);
  return device;
}

std::string switchState() {
  contract::FakeConfig &config = contract::Host::current()->config;
  void *handle = config.openForCaller();
  const int state = get_switch_state(handle, portOf(1).c_str());
  config.close(handle, 0);
  return seen(state);
}

}  // namespace

Calls deviceCalls() {
  return {
      {"find_pidvid",
       [] {
         const _usbdev_des device = cameraOf(0);
         char pidvid[16] = "";
         return seen(find_pidvid(&device, pidvid), pidvid);
       }},
      {"get_fetypeid",
       [] {
         const _usbdev_des device = cameraOf(0);
         char fetype[16] = "";
         return seen(get_fetypeid(&device, fetype), fetype);
       }},
      {"isPCIbridge", [] { return seen(isPCIbridge(1)); }},
      {"get_pcibridgePath",
       [] {
         char path[256] = "";
         return seen(get_pcibridgePath(1, path), path);
       }},
      {"get_switch_state", switchState},
      {"devlistcmp", [] { return seen(devlistcmp(kName, "/etc/config/.usbnosupportlist.dat")); }},
      {"mn_get_usbchn_fmts",
       [] {
         _usbfmt_des table[USBDEV_FORMATS] = {};
         int over60 = 0;
         return seen(mn_get_usbchn_fmts(1, table, &over60), table, over60);
       }},
      {"vl_force_kill_v4l2_ctl", [] { return seen(vl_force_kill_v4l2_ctl(1)); }},
      {"vl_get_available_dev",
       [] {
         _availinfo rows[10] = {};
         return seen(vl_get_available_dev(rows), rows);
       }},
      {"vl_get_available_dev_N_channel",
       [] {
         _availinfo rows[10] = {};
         return seen(vl_get_available_dev_N_channel(rows, 1), rows);
       }},
      {"vl_get_usbslot_video_cap",
       [] {
         char cap[16] = "";
         return seen(vl_get_usbslot_video_cap(portOf(0).c_str(), cap), cap);
       }},
      {"vl_get_usbslot_info",
       [] {
         _streaminfo info{};
         return seen(vl_get_usbslot_info(portOf(0).c_str(), &info), info);
       }},
      {"vl_get_pidvid",
       [] {
         char pidvid[16] = "";
         return seen(vl_get_pidvid(0, pidvid), pidvid);
       }},
  };
}

Calls conflictCalls() {
  return {
      {"chkconflict",
       [] {
         char other[128] = "1-1.2";
         return seen(chkconflict(other, "1-1.3", true, 1, contract::kController), other);
       }},
      {"updateConflict",
       [] {
         int profile = 0;
         return seen(updateConflict(0, -1, 0, &profile), profile);
       }},
      {"getConflictCH",
       [] {
         int answers[10] = {};
         return seen(getConflictCH(0, answers), answers);
       }},
      {"syncConflict",
       [] {
         int states[10] = {1, 1, 1, 1, -1, -1, -1, -1, -1, -1};
         return seen(syncConflict(states), states);
       }},
      {"vl_set_usbslot_switch", [] { return seen(vl_set_usbslot_switch(portOf(1).c_str(), "enable", nullptr)); }},
  };
}

}  // namespace torture
