// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "situations.h"

namespace contract {

namespace {

char text[256];
int number;
_usbfmt_des formats[8];
_availinfo rows[10];
_streaminfo stream;

_usbdev_des cameraOnNode1() {
  _usbdev_des device = zeroed<_usbdev_des>();
  device.node = 1;
  strcpy(device.usbslot, "3-1");
  return device;
}

Situations identification() {
  return {
      {"find_pidvid", "", answers(),
       [](Host &) {
         const _usbdev_des device = cameraOnNode1();
         find_pidvid(&device, text);
       }},
      {"get_fetypeid", "", kCameraType,
       [](Host &host) {
         plugged(host, "3-1", 1);
         const _usbdev_des device = cameraOnNode1();
         get_fetypeid(&device, text);
       }},
      {"isPCIbridge", "", answers(), [](Host &) { isPCIbridge(1); }},
      {"get_pcibridgePath", "", answers(), [](Host &) { get_pcibridgePath(1, text); }},
      // Of each channel the port and the switch, in the pass of its caller.
      {"get_switch_state", "a port of channel 2", keysRead(3 * 2),
       [](Host &host) {
         cameraOn(host, 2, "3-1", 1);
         void *config = nullptr;
         host.config.open(0, kChannelFile, &config);
         host.journal.clear();  // of the caller's pass
         get_switch_state(config, "3-1");
         host.config.close(config, 0);
       }},
      {"devlistcmp", "", files(), [](Host &) { devlistcmp("HD Webcam", "/etc/config/.usbnosupportlist.dat"); }},
  };
}

Situations formatQueries() {
  return {
      {"mn_get_usbchn_fmts", "without the codec package", kFormats,
       [](Host &host) {
         plugged(host, "3-1", 1);
         mn_get_usbchn_fmts(1, formats, &number);
       }},
      {"mn_get_usbchn_fmts", "with an encoder", kEncoder + kListing,
       [](Host &host) {
         allowEncoding(host);
         plugged(host, "3-1", 1);
         mn_get_usbchn_fmts(1, formats, &number);
       }},
      // The walk that shows which signal ends it, and the kill.
      {"mn_get_usbchn_fmts", "the query hangs", kFormats + answers() + effects(),
       [](Host &host) {
         host.commands.prints(queryProcessCommand(1), "4711\n");
         mn_get_usbchn_fmts(1, formats, &number);
       }},
      {"validate_hwenc", "without the codec package", kPackageMissing, [](Host &) { validate_hwenc(&number); }},
      {"validate_hwenc", "with an encoder", kEncoder,
       [](Host &host) {
         allowEncoding(host);
         validate_hwenc(&number);
       }},
      {"check_gpu_status", "without a GPU", answers(), [](Host &) { check_gpu_status(&number); }},
      {"check_gpu_status", "with a GPU", answers(2),
       [](Host &host) {
         allowEncoding(host);
         check_gpu_status(&number);
       }},
      {"vl_force_kill_v4l2_ctl", "", answers(), [](Host &) { vl_force_kill_v4l2_ctl(1); }},
  };
}

// What the records of available devices read, apart from the two nodes that make the stream type.
constexpr int kAvailable = 16;

Situations slots() {
  return {
      // Every channel without a profile that does not wait is listed, also one that was never used.
      {"vl_get_available_dev", "one channel of ten with a profile", reading(10 + 9 * (1 + kAvailable + 2)),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_available_dev(rows);
       }},
      {"vl_get_available_dev_N_channel", "", reading(10 + 1 + kAvailable + 2),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_available_dev_N_channel(rows, 0);
       }},
      // Its presence and port, node, switch and capability.
      {"vl_get_usbslot_video_cap", "", reading(2 + 3),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         vl_get_usbslot_video_cap("3-1", text);
       }},
      {"vl_get_usbslot_info", "", slotSettings(1),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         vl_get_usbslot_info("3-1", &stream);
       }},
      {"vl_HOS_CLI_usbid", "", answers(), [](Host &) { vl_HOS_CLI_usbid("3-1"); }},
      {"vl_find_HOS_model_pic", "neither picture", files(2), [](Host &) { vl_find_HOS_model_pic(); }},
      {"vl_check_HOS_halvane_support", "", files(), [](Host &) { vl_check_HOS_halvane_support(&number); }},
  };
}

}  // namespace

Situations deviceSituations() {
  Situations all;
  for (const Situations &part : {identification(), formatQueries(), slots()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace contract
