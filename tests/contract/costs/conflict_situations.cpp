// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "situations.h"

namespace contract {

namespace {

char text[256];
int number;
int ten[10];

void testConflict(const char *other_slot, bool on_bridge) {
  strcpy(text, other_slot);
  chkconflict(text, "3-1", on_bridge, 2, kController);
}

// A camera that streams, and one at its root port that waits for it.
void twoAtOneRootPort(Host &host) {
  cameraOn(host, 0, "3-1.1", 1, 0);
  cameraOn(host, 1, "3-1.2", 2, 1).conflict(0).createTime("2024-03-05 08:15:00");
}

void twoBehindOneBridge(Host &host) {
  cameraOn(host, 0, "3-1", 1, 0);
  cameraOn(host, 1, "1-1", 2, 1);
  host.camera(1, "3-1").behindBridge(kController);
  host.camera(2, "1-1").behindBridge(kController);
}

Situations tests() {
  return {
      {"chkconflict", "one root port", kOneChannel, [](Host &) { testConflict("3-1.2", true); }},
      {"chkconflict", "no bridge", kOneChannel, [](Host &) { testConflict("1-1", false); }},
      {"chkconflict", "both behind a bridge", kOneChannel + kBridge,
       [](Host &host) {
         host.camera(2, "1-1").behindBridge(kController);
         testConflict("1-1", true);
       }},
      {"isElderPf", "", {}, [](Host &) { isElderPf("2024-03-05 08:15:00", "2024-03-05 08:15:00"); }},
  };
}

Situations handOvers() {
  return {
      {"updateConflict", "a waiting channel", kAllChannels,
       [](Host &host) {
         twoAtOneRootPort(host);
         updateConflict(1, -1, 0, &number);
       }},
      {"updateConflict", "no channel waits", kNobodyWaits, [](Host &) { updateConflict(0, -1, 0, &number); }},
      // The successor is freed and the channel waits for it, which the second pass finds again.
      {"updateConflict", "the channel of the same root port takes over",
       kAllChannels + kOneChannel + writing(2) + kAllChannels + writing(1),
       [](Host &host) {
         twoAtOneRootPort(host);
         updateConflict(0, -1, 0, &number);
       }},
  };
}

Situations searches() {
  return {
      {"getConflictCH", "no other camera", kAllChannels,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         getConflictCH(0, ten);
       }},
      {"getConflictCH", "another camera at the root port", kAllChannels,
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1);
         getConflictCH(0, ten);
       }},
      {"getConflictCH", "another camera elsewhere, no bridge", kAllChannels + kOneChannel + kNoBridge,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         cameraOn(host, 1, "1-1", 2, 1);
         getConflictCH(0, ten);
       }},
      {"getConflictCH", "another camera elsewhere, both behind a bridge", kAllChannels + kOneChannel + 2 * kBridge,
       [](Host &host) {
         twoBehindOneBridge(host);
         getConflictCH(0, ten);
       }},
      // Each channel to recompute is a pass of its own.
      {"syncConflict", "two cameras at one root port", writing(0) + 2 * kAllChannels + writing(2),
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1);
         int states[10] = {1, 1, -1, -1, -1, -1, -1, -1, -1, -1};
         syncConflict(states);
       }},
      {"syncConflict", "ten cameras elsewhere, no bridge",
       writing(0) + 10 * (kAllChannels + kNoBridge) + kOneChannel + writing(10),
       [](Host &host) {
         int states[10];
         for (int i = 0; i < 10; ++i) {
           cameraOn(host, i, std::to_string(i) + "-1", i, i < 4 ? i : -1);
           states[i] = 1;
         }
         syncConflict(states);
       }},
  };
}

// The slot's own settings, then those of all channels; the switch and the conflict are written.
constexpr Costs kSwitched = slotSettings(2) + kAllChannels + writing(2);

Situations slotSwitch() {
  return {
      {"vl_set_usbslot_switch", "no other camera", slotSettings(1) + kAllChannels + writing(2),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_set_usbslot_switch("3-1", "enable", nullptr);
       }},
      {"vl_set_usbslot_switch", "on, another camera of the root port streams", kSwitched + kOneChannel,
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1);
         vl_set_usbslot_switch("3-1.1", "enable", nullptr);
       }},
      {"vl_set_usbslot_switch", "on, another camera elsewhere, both behind a bridge",
       kSwitched + kOneChannel + 2 * kBridge,
       [](Host &host) {
         twoBehindOneBridge(host);
         vl_set_usbslot_switch("3-1", "enable", nullptr);
       }},
      {"vl_set_usbslot_switch", "off, another one takes over",
       kSwitched + kAllChannels + kOneChannel + writing(2) + kAllChannels + writing(1),
       [](Host &host) {
         twoAtOneRootPort(host);
         vl_set_usbslot_switch("3-1.1", "disable", nullptr);
       }},
  };
}

}  // namespace

Situations conflictSituations() {
  Situations all;
  for (const Situations &part : {tests(), handOvers(), searches(), slotSwitch()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace contract
