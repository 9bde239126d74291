#include "situations.h"

namespace contract {

namespace {

constexpr char kController[] = "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0";
constexpr char kCameraList[] = "/bin/ls /sys/bus/usb/drivers/uvcvideo | grep \\: | /bin/awk '{print $1}'";
constexpr char kCardList[] = "/bin/ls /sys/bus/usb/drivers/snd-usb-audio | grep \\: | /bin/awk '{print $1}'";

char text[256];
int number;

// Channel records as the synchronisation has them for channels that were never configured.
struct Records {
  Records() {
    for (_usbdev_update &record : list) {
      record = zeroed<_usbdev_update>();
      record.vnode = record.anode = record.state = record.slot_switch = record.profile = -1;
    }
    for (int &entry : map) entry = -1;
  }
  _usbdev_update list[10];
  int map[10];
};

void event(int devtype, int plugged, const char *slot = "3-1", int node = 1) {
  _usbdev_des device = zeroed<_usbdev_des>();
  device.devtype = devtype;
  device.plugged = plugged;
  device.node = node;
  strcpy(device.usbslot, slot);
  strcpy(device.devname, "HD Webcam");
  _usbdev_conflict report;
  int profile = 0;
  int vnode = 0;
  mn_set_usbdev_hotplug(&device, &profile, text, &vnode, &report);
}

// The channel's camera under its driver, and its listing.
HostChannel driven(Host &host, int profile) {
  host.commands.allowInsideCriticalSection();  // the scans and the record update hold the lock
  host.commands.prints(kCameraList, "3-1:1.0\n");
  host.commands.prints("/bin/ls /sys/bus/usb/drivers/uvcvideo/3-1:1.0/video4linux | /bin/awk '{print $1}'", "video1\n");
  host.files.write("/sys/class/video4linux/video1/name", "HD Webcam\n");
  return cameraOn(host, 0, "3-1", 1, profile).set("hlspath", "link");
}

void drivenCard(Host &host) {
  host.commands.allowInsideCriticalSection();
  host.commands.prints(kCardList, "3-1:1.2\n");
}

_usbdev_update present(int profile, const char *link) {
  _usbdev_update record = zeroed<_usbdev_update>();
  record.state = 1;
  record.vnode = 1;
  record.anode = -1;
  record.profile = profile;
  strcpy(record.usbslot, "3-1");
  strcpy(record.hlspath, link);
  return record;
}

void update(Host &host, const _usbdev_update &record) {
  host.commands.allowInsideCriticalSection();
  Records records;
  records.list[0] = record;
  update_usbinfo(records.list);
}

Situations events() {
  return {
      {"mn_set_usbdev_hotplug", "a camera comes, no other there", kLoneCamera,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         event(1, 1);
       }},
      {"mn_set_usbdev_hotplug",
       "a camera comes beside one with a profile at its root port",
       {4, 2},
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 2, 0).conflict(-1);
         event(1, 1, "3-1.2");
       }},
      {"mn_set_usbdev_hotplug",
       "a camera comes beside nine elsewhere, no bridge",
       {5, 2},
       [](Host &host) {
         for (int i = 1; i < 10; ++i) cameraOn(host, i, std::to_string(i) + "-1", 1 + i, i < 4 ? i : -1);
         event(1, 1, "11-1");
       }},
      {"mn_set_usbdev_hotplug",
       "a camera comes beside one elsewhere, both behind a bridge",
       {8, 2},
       [](Host &host) {
         cameraOn(host, 1, "1-1", 2);
         host.camera(1, "3-1").behindBridge(kController);
         host.camera(2, "1-1").behindBridge(kController);
         event(1, 1);
       }},
      {"mn_set_usbdev_hotplug",
       "a camera goes",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         event(1, 0);
       }},
      {"mn_set_usbdev_hotplug",
       "a camera goes, another one takes over",
       {0, 1},
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1).conflict(0).createTime("2024-03-05 08:15:00");
         event(1, 0, "3-1.1");
       }},
      {"mn_set_usbdev_hotplug", "a sound card comes", {}, [](Host &) { event(0, 1); }},
  };
}

Situations startUp() {
  return {
      {"vl_set_devpf_list",
       "nothing configured, nothing there",
       {4},
       [](Host &host) {
         host.commands.allowInsideCriticalSection();
         vl_set_devpf_list();
       }},
      {"check_halvane", "without the codec package", {1}, [](Host &) { check_halvane(); }},
      {"check_halvane",
       "with an encoder",
       {5},
       [](Host &host) {
         allowEncoding(host);
         check_halvane();
       }},
      {"mn_sync_usbdev_conf",
       "nothing configured, nothing there",
       {3},
       [](Host &host) {
         host.commands.allowInsideCriticalSection();
         mn_sync_usbdev_conf();
       }},
      {"mn_sync_usbdev_conf",
       "a known camera with profile 0",
       {5, 0, 1},
       [](Host &host) {
         driven(host, 0);
         mn_sync_usbdev_conf();
       }},
      {"mn_sync_usbdev_conf",
       "a known camera with another profile",
       {5, 1, 1},
       [](Host &host) {
         driven(host, 1);
         mn_sync_usbdev_conf();
       }},
      {"mn_sync_usbdev_conf",
       "a new camera",
       {4 + kLoneCamera.answers, kLoneCamera.effects},
       [](Host &host) {
         driven(host, -1).exists(0).slot("").name("");
         mn_sync_usbdev_conf();
       }},
      {"get_conf_chinfo",
       "a camera",
       {3},
       [](Host &host) {
         driven(host, 0);
         Records channels;
         Records cameras;
         number = 0;
         get_conf_chinfo(channels.list, channels.map, &number, cameras.list);
       }},
      {"get_conf_audioinfo",
       "a sound card",
       {2},
       [](Host &host) {
         drivenCard(host);
         Records channels;
         Records cards;
         number = 0;
         get_conf_audioinfo(channels.list, channels.map, &number, cards.list, 0, cards.list);
       }},
      {"update_usbinfo", "nothing there", {}, [](Host &host) { update(host, Records().list[0]); }},
      {"update_usbinfo", "a camera without a profile", {1}, [](Host &host) { update(host, present(-1, "")); }},
      {"update_usbinfo", "a camera with a profile", {1, 0, 1}, [](Host &host) { update(host, present(1, "link")); }},
      {"update_usbinfo",
       "a camera with a profile and a share link",
       {1, 0, 2},
       [](Host &host) {
         _usbdev_update record = present(1, "link");
         strcpy(record.hash, "shared");
         update(host, record);
       }},
      {"update_usbinfo",
       "a camera with a profile, its link lost",
       {2, 0, 1},
       [](Host &host) {
         host.commands.prints("/bin/cat /proc/sys/kernel/random/uuid", "1b4e28ba-2fa1-11d2-883f-0016d3cca427\n");
         update(host, present(1, ""));
       }},
      {"sync_usbdev", "a new camera", kLoneCamera,
       [](Host &host) {
         driven(host, -1).exists(0).slot("");
         Records cameras;
         cameras.list[0] = present(-1, "");
         sync_usbdev(1, cameras.list, 0, cameras.list);
       }},
      {"rmNone1stProfile",
       "profile 0 alone",
       {},
       [](Host &) {
         Records channels;
         channels.list[0] = present(0, "");
         rmNone1stProfile(channels.list);
       }},
      {"rmNone1stProfile",
       "another profile with both links",
       {0, 0, 2},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 1).set("hlspath", "live").set("sharelink/hash_string", "shared");
         linkOnDisk(host, "live");
         linkOnDisk(host, "shared");
         Records channels;
         channels.list[0] = present(1, "live");
         rmNone1stProfile(channels.list);
       }},
  };
}

Situations readersAndSetters() {
  return {
      {"get_video_info", "", {1}, [](Host &) { get_video_info("3-1:1.0", &number, text); }},
      {"get_audio_info", "", {1}, [](Host &) { get_audio_info("3-1:1.2", &number, text); }},
      {"get_usb_vnode",
       "",
       {2},
       [](Host &) {
         _usbdev_update record = present(-1, "");
         get_usb_vnode(&record);
       }},
      {"get_usb_anode",
       "",
       {2},
       [](Host &) {
         _usbdev_update record = present(-1, "");
         get_usb_anode(&record);
       }},
      {"mn_set_usbchn_sps",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         mn_set_usbchn_sps(0, 1);
       }},
      {"mn_set_usbdev_volume",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).anode(2);
         mn_set_usbdev_volume(0);
       }},
  };
}

}  // namespace

Situations hotplugSituations() {
  Situations all;
  for (const Situations &part : {events(), startUp(), readersAndSetters()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace contract
