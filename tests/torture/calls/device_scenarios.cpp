// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a device is, what formats it has, and which channels and ports are there.
#include <usbdev/usbdev.h>

#include "scenario.h"

namespace calls {
namespace {

using contract::Listing;

using Formats = std::array<_usbfmt_des, 8>;
using Available = std::array<_availinfo, 10>;

const _usbdev_des &cameraOnNode1(Outputs &out) {
  _usbdev_des device = contract::zeroed<_usbdev_des>();
  device.node = 1;
  strcpy(device.usbslot, "3-1");
  return out.record(device);
}

void knownType(World &w) {
  plugged(w.host, "3-1", 1);
  w.host.files.write("/etc/config/.usbFECam.dat", "046d:0825=3\n");
}

void bridged(World &w) { w.host.camera(1, "3-1").behindBridge(contract::kController); }

Scenarios identification() {
  return {
      {"find_pidvid", "", knownType, [](World &, Outputs &out) { return find_pidvid(&cameraOnNode1(out), out.text()); },
       0},
      {"get_fetypeid", "", knownType,
       [](World &, Outputs &out) { return get_fetypeid(&cameraOnNode1(out), out.text()); }},
      {"isPCIbridge", "", bridged, [](World &, Outputs &) { return isPCIbridge(1); }, 0},
      {"get_pcibridgePath", "", bridged, [](World &, Outputs &out) { return get_pcibridgePath(1, out.text()); }, 0},
      {"get_switch_state", "a port that is off", [](World &w) { cameraOn(w.host, 2, "3-1", 1).slotSwitch(0); },
       [](World &w, Outputs &) {
         void *config = nullptr;
         w.host.config.open(0, contract::kChannelFile, &config);
         const int state = get_switch_state(config, "3-1");
         w.host.config.close(config, 0);
         return state;
       },
       1},
      {"devlistcmp", "",
       [](World &w) { w.host.files.write("/etc/config/.usbnosupportlist.dat", "Other\nHD Webcam\n"); },
       [](World &, Outputs &) { return devlistcmp("HD Webcam", "/etc/config/.usbnosupportlist.dat"); }, 0},
  };
}

void twoFormats(World &w) {
  allowEncoding(w.host);
  w.host.camera(1, "3-1")
      .ids("046d", "0825")
      .listing(
          Listing().format("MJPG").size(640, 480).rate("30.000").format("YUYV").size(640, 480).rate("15.000").text());
}

int askFormats(World &, Outputs &out) {
  return mn_get_usbchn_fmts(1, out.record<Formats>().data(), &out.record<int>());
}

Scenarios formatQueries() {
  return {
      {"mn_get_usbchn_fmts", "without the codec package", [](World &w) { plugged(w.host, "3-1", 1); }, askFormats},
      {"mn_get_usbchn_fmts", "with an encoder", twoFormats, askFormats},
      {"mn_get_usbchn_fmts", "the query hangs",
       [](World &w) {
         w.host.camera(1, "3-1").ids("0603", "8612").listing(Listing().format("MJPG").size(640, 480).text());
         w.host.commands.prints(contract::queryProcessCommand(1), "4711\n");
       },
       askFormats},
      {"validate_hwenc", "with an encoder", twoFormats,
       [](World &, Outputs &out) { return validate_hwenc(&out.record<int>()); }},
      {"check_gpu_status", "with a GPU", twoFormats,
       [](World &, Outputs &out) { return check_gpu_status(&out.record<int>()); }},
      {"vl_force_kill_v4l2_ctl", "", [](World &w) { w.host.camera(1, "3-1").ids("0603", "8612"); },
       [](World &, Outputs &) { return vl_force_kill_v4l2_ctl(1); }, 0},
  };
}

void twoCameras(World &w) {
  cameraOn(w.host, 0, "3-1", 1, 0);
  cameraOn(w.host, 1, "1-1", 2);
}

Scenarios ports() {
  return {
      {"vl_get_available_dev", "", twoCameras,
       [](World &, Outputs &out) { return vl_get_available_dev(out.record<Available>().data()); }},
      {"vl_get_available_dev_N_channel", "", twoCameras,
       [](World &, Outputs &out) { return vl_get_available_dev_N_channel(out.record<Available>().data(), 0); }},
      {"vl_get_usbslot_video_cap", "", twoCameras,
       [](World &, Outputs &out) { return vl_get_usbslot_video_cap("1-1", out.text()); }},
      {"vl_get_usbslot_info", "", twoCameras,
       [](World &, Outputs &out) { return vl_get_usbslot_info("1-1", &out.record<_streaminfo>()); }},
  };
}

Scenarios probes() {
  return {
      {"vl_HOS_CLI_usbid", "",
       [](World &w) { w.host.commands.prints("hwinfo_app --usb_get_port_id value='3-1'", "4\n"); },
       [](World &, Outputs &) { return vl_HOS_CLI_usbid("3-1"); }},
      {"vl_find_HOS_model_pic", "the first picture",
       [](World &w) { w.host.files.write("/home/httpd/v3_menu/layout/model_0.svg", "<svg/>"); },
       [](World &, Outputs &) { return vl_find_HOS_model_pic(); }},
      {"vl_find_HOS_model_pic", "the second picture",
       [](World &w) { w.host.files.write("/home/httpd/v3_menu/layout/model_1.svg", "<svg/>"); },
       [](World &, Outputs &) { return vl_find_HOS_model_pic(); }},
      {"vl_check_HOS_halvane_support", "", [](World &w) { w.host.files.write("/tmp/gpuinfo.type", "support=1\n"); },
       [](World &, Outputs &out) { return vl_check_HOS_halvane_support(&out.record<int>()); }},
  };
}

}  // namespace

Scenarios deviceScenarios() { return identification() + formatQueries() + ports() + probes(); }

}  // namespace calls
