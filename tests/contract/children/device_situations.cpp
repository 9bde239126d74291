#include "situations.h"

namespace contract {

namespace {

constexpr char kController[] = "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0";

char text[256];
int number;
int ten[10];
_usbfmt_des formats[8];
_availinfo rows[10];
_streaminfo stream;

_usbdev_des cameraOnNode1() {
  _usbdev_des device = zeroed<_usbdev_des>();
  device.node = 1;
  strcpy(device.usbslot, "3-1");
  return device;
}

void useNoBridge(Host &host, int node) { host.commands.prints(classCommand(node), "    ATTRS{class}==\"0x0c0330\"\n"); }

void testConflict(const char *other_slot, bool on_bridge) {
  strcpy(text, other_slot);
  chkconflict(text, "3-1", on_bridge, 2, kController);
}

Situations identification() {
  return {
      {"find_pidvid",
       "",
       {1},
       [](Host &) {
         const _usbdev_des device = cameraOnNode1();
         find_pidvid(&device, text);
       }},
      {"get_fetypeid",
       "",
       {1},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         host.files.write("/etc/config/.usbFECam.dat", "046d:0825=3\n");
         const _usbdev_des device = cameraOnNode1();
         get_fetypeid(&device, text);
       }},
      {"isPCIbridge", "", {1}, [](Host &) { isPCIbridge(1); }},
      {"get_pcibridgePath", "", {1}, [](Host &) { get_pcibridgePath(1, text); }},
      {"get_switch_state",
       "",
       {},
       [](Host &host) {
         void *config = nullptr;
         host.config.open(0, kChannelFile, &config);
         get_switch_state(config, "3-1");
         host.config.close(config, 0);
       }},
      {"devlistcmp", "", {}, [](Host &) { devlistcmp("HD Webcam", "/etc/config/.usbnosupportlist.dat"); }},
  };
}

Situations formatQueries() {
  return {
      {"mn_get_usbchn_fmts", "without the codec package", kFormats,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         mn_get_usbchn_fmts(1, formats, &number);
       }},
      {"mn_get_usbchn_fmts",
       "with an encoder",
       {7, 1},
       [](Host &host) {
         allowEncoding(host);
         mn_get_usbchn_fmts(1, formats, &number);
       }},
      {"mn_get_usbchn_fmts",
       "the query hangs",
       {4, 2},
       [](Host &host) {
         host.commands.prints(queryProcessCommand(1), "4711\n");
         mn_get_usbchn_fmts(1, formats, &number);
       }},
      {"validate_hwenc", "without the codec package", {1}, [](Host &) { validate_hwenc(&number); }},
      {"validate_hwenc",
       "with an encoder",
       {5},
       [](Host &host) {
         allowEncoding(host);
         validate_hwenc(&number);
       }},
      {"check_gpu_status", "without a GPU", {1}, [](Host &) { check_gpu_status(&number); }},
      {"check_gpu_status",
       "with a GPU",
       {2},
       [](Host &host) {
         allowEncoding(host);
         check_gpu_status(&number);
       }},
      {"vl_force_kill_v4l2_ctl", "", {1}, [](Host &) { vl_force_kill_v4l2_ctl(1); }},
  };
}

Situations conflicts() {
  return {
      {"chkconflict", "one root port", {0, 1}, [](Host &) { testConflict("3-1.2", true); }},
      {"chkconflict", "no bridge", {0, 1}, [](Host &) { testConflict("1-1", false); }},
      {"chkconflict",
       "both behind a bridge",
       {2, 1},
       [](Host &host) {
         host.camera(2, "1-1").behindBridge(kController);
         testConflict("1-1", true);
       }},
      {"isElderPf", "", {}, [](Host &) { isElderPf("2024-03-05 08:15:00", "2024-03-05 08:15:00"); }},
      {"updateConflict", "nobody waits", {}, [](Host &) { updateConflict(0, -1, 0, &number); }},
      {"updateConflict",
       "the channel of the same root port takes over",
       {0, 1},
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1).conflict(0).createTime("2024-03-05 08:15:00");
         updateConflict(0, -1, 0, &number);
       }},
      {"getConflictCH",
       "no other camera",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         getConflictCH(0, ten);
       }},
      {"getConflictCH",
       "another camera at the root port",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1);
         getConflictCH(0, ten);
       }},
      {"getConflictCH",
       "another camera elsewhere, no bridge",
       {1, 1},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         cameraOn(host, 1, "1-1", 2, 1);
         useNoBridge(host, 1);
         getConflictCH(0, ten);
       }},
      {"getConflictCH",
       "another camera elsewhere, both behind a bridge",
       {4, 1},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         cameraOn(host, 1, "1-1", 2, 1);
         host.camera(1, "3-1").behindBridge(kController);
         host.camera(2, "1-1").behindBridge(kController);
         getConflictCH(0, ten);
       }},
      {"syncConflict",
       "two cameras at one root port",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1);
         int states[10] = {1, 1, -1, -1, -1, -1, -1, -1, -1, -1};
         syncConflict(states);
       }},
      {"syncConflict",
       "ten cameras elsewhere, no bridge",
       {10, 1},
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

Situations slots() {
  return {
      {"vl_get_available_dev",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         vl_get_available_dev(rows);
       }},
      {"vl_get_available_dev_N_channel",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_available_dev_N_channel(rows, 0);
       }},
      {"vl_get_usbslot_video_cap",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         vl_get_usbslot_video_cap("3-1", text);
       }},
      {"vl_get_usbslot_info",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         vl_get_usbslot_info("3-1", &stream);
       }},
      {"vl_HOS_CLI_usbid", "", {1}, [](Host &) { vl_HOS_CLI_usbid("3-1"); }},
      {"vl_find_HOS_model_pic", "", {}, [](Host &) { vl_find_HOS_model_pic(); }},
      {"vl_check_HOS_halvane_support", "", {}, [](Host &) { vl_check_HOS_halvane_support(&number); }},
  };
}

}  // namespace

Situations deviceSituations() {
  Situations all;
  for (const Situations &part : {identification(), formatQueries(), conflicts(), slots()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace contract
