// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Conflicts between cameras, hand-overs, and the switch of a port.
#include <usbdev/usbdev.h>

#include "scenario.h"

namespace calls {
namespace {

using Ten = std::array<int, 10>;

constexpr Ten kTwoToRecompute{1, 0, -1, -1, -1, -1, -1, -1, -1, -1};

// A camera that streams; one at its root port waits for it, and one behind its bridge has no profile.
void threeCameras(World &w) {
  cameraOn(w.host, 0, "3-1.1", 1, 0);
  cameraOn(w.host, 1, "3-1.2", 2, 1).conflict(0).createTime("2024-03-05 08:15:00");
  cameraOn(w.host, 2, "1-1", 3).conflict(-1);
  for (const int node : {1, 2, 3}) w.host.camera(node, "3-1").behindBridge(contract::kController);
}

void oneChannelHost(World &w) {
  threeCameras(w);
  w.host.limitToOneChannel();
}

// Two cameras behind one bridge, both with a profile.
void bridgedCameras(World &w) {
  cameraOn(w.host, 0, "3-1", 1, 0);
  cameraOn(w.host, 1, "1-1", 2, 1);
  for (const int node : {1, 2}) w.host.camera(node, "3-1").behindBridge(contract::kController);
}

Scenarios tests() {
  return {
      {"chkconflict", "one root port", emptyHost,
       [](World &, Outputs &out) { return chkconflict(out.text("3-1.2"), "3-1", false, 2, ""); }, 0},
      {"chkconflict", "both behind a bridge", bridgedCameras,
       [](World &, Outputs &out) { return chkconflict(out.text("1-1"), "3-1", true, 2, contract::kController); }, 0},
      {"isElderPf", "", emptyHost,
       [](World &, Outputs &) { return isElderPf("2024-03-05 08:15:00", "2024-03-04 08:15:00"); }},
  };
}

Scenarios handOvers() {
  const auto hand_over = [](World &, Outputs &out) { return updateConflict(0, -1, 0, &out.record<int>()); };
  return {
      {"updateConflict", "the channel of the same root port takes over", threeCameras, hand_over},
      {"updateConflict", "on a one-channel host", oneChannelHost, hand_over},
      {"updateConflict", "a waiting channel", threeCameras,
       [](World &, Outputs &out) { return updateConflict(1, -1, 0, &out.record<int>()); }},
      {"getConflictCH", "one root port", threeCameras,
       [](World &, Outputs &out) { return getConflictCH(1, out.record<Ten>().data()); }},
      {"getConflictCH", "both behind a bridge", bridgedCameras,
       [](World &, Outputs &out) { return getConflictCH(0, out.record<Ten>().data()); }},
      {"syncConflict", "", bridgedCameras,
       [](World &, Outputs &out) { return syncConflict(out.record(kTwoToRecompute).data()); }},
  };
}

Scenarios switching() {
  const auto on = [](World &, Outputs &) { return vl_set_usbslot_switch("3-1", "enable", nullptr); };
  return {
      {"vl_set_usbslot_switch", "on, no other camera",
       [](World &w) { cameraOn(w.host, 0, "3-1", 1, 0).slotSwitch(0).set("video/vcodec", 1); }, on},
      {"vl_set_usbslot_switch", "on, a camera behind its bridge streams", bridgedCameras, on},
      {"vl_set_usbslot_switch", "on, a camera of a one-channel host streams",
       [](World &w) {
         bridgedCameras(w);
         w.host.limitToOneChannel();
       },
       on},
      {"vl_set_usbslot_switch", "on, a camera without a profile has to wait",
       [](World &w) {
         bridgedCameras(w);
         w.host.channel(1).profile(-1);
       },
       on},
      {"vl_set_usbslot_switch", "off, another one takes over", threeCameras,
       [](World &, Outputs &) { return vl_set_usbslot_switch("3-1.1", "disable", nullptr); }},
  };
}

}  // namespace

Scenarios conflictScenarios() { return tests() + handOvers() + switching(); }

}  // namespace calls
