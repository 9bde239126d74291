// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/start_fixture.h"
#include "situations.h"

namespace contract {

namespace {

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

// A camera under its driver, to be listed with others.
void drive(Host &host, const std::string &slot, int node) {
  host.commands.allowInsideCriticalSection();  // the scans and the record update hold the lock
  const std::string name = "video" + std::to_string(node);
  host.commands.prints("/bin/ls /sys/bus/usb/drivers/uvcvideo/" + slot + ":1.0/video4linux | /bin/awk '{print $1}'",
                       name + "\n");
  host.files.write("/sys/class/video4linux/" + name + "/name", "HD Webcam\n");
  plugged(host, slot, node);
}

// The channel's camera under its driver, alone there.
HostChannel driven(Host &host, int profile) {
  drive(host, "3-1", 1);
  host.commands.prints(kCameraList, "3-1:1.0\n");
  return cameraOn(host, 0, "3-1", 1, profile).set("hlspath", "link");
}

// Each with a second interface, as cameras have it, which has no node.
void tenNewCameras(Host &host) {
  std::string list;
  for (int i = 0; i < 10; ++i) {
    const std::string slot = std::to_string(i + 1) + "-1";
    drive(host, slot, i);
    list += slot + ":1.0\n" + slot + ":1.1\n";
  }
  host.commands.prints(kCameraList, list);
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
  plugged(host, "3-1", 1);
  Records records;
  records.list[0] = record;
  update_usbinfo(records.list);
}

// The records of the channels: of a configured one four values more.
Costs records(int configured) { return reading(10 + 4 * configured); }
// A driver's list, and four values of each channel to compare its devices with; each device's node and name.
constexpr Costs kScan = reading(10 * 4) + answers();
constexpr Costs kCameraFound = answers() + files();
constexpr Costs kNoNode = answers();
constexpr Costs kCardFound = answers();
// Both scans. Whether the host may encode is asked once, for the formats of the new cameras too.
Costs scans(int cameras) { return kScan + cameras * kCameraFound + kScan; }
// No channel is to be recomputed.
constexpr Costs kNoConflicts = writing(0) + writing(0);
constexpr Costs kOneConflict = writing(0) + kAllChannels + writing(1);
// Ten new cameras, each a pass of its own, and the bridge of each that finds another one there.
constexpr Costs kNewKnowingEncoder = kChoice + files() + kListing + kCameraType + writing(kNewCameraKeys);
constexpr Costs kTenNew = 10 * kNewKnowingEncoder + repeats(9) + kOneChannel + repeats() + 9 * kNoBridge;
// Of a channel that was never used its presence, profile and node decide that the codec check leaves it alone.
constexpr int kUnused = 3;

Situations wholeStartUp() {
  const Costs nothing_there = records(0) + scans(0) + writing(0) + kNoConflicts;
  const Costs ten_new = records(0) + scans(10) + 10 * kNoNode + writing(0) + kNoConflicts + kTenNew;
  const auto start = [](Host &host) {
    host.commands.allowInsideCriticalSection();
    vl_set_devpf_list();
  };
  const auto start_with_ten = [](Host &host) {
    tenNewCameras(host);
    vl_set_devpf_list();
  };
  return {
      {"vl_set_devpf_list", "nothing configured, nothing attached",
       kPackageMissing + reading(10 * kUnused) + nothing_there, start},
      {"vl_set_devpf_list", "ten new cameras, without the codec package",
       kPackageMissing + reading(10 * kUnused) + ten_new, start_with_ten},
      {"vl_set_devpf_list", "ten new cameras, with an encoder", kEncoder + ten_new,
       [start_with_ten](Host &host) {
         allowEncoding(host);
         start_with_ten(host);
       }},
      {"mn_sync_usbdev_conf", "ten new cameras, without the codec package", kPackageMissing + ten_new,
       [](Host &host) {
         tenNewCameras(host);
         mn_sync_usbdev_conf();
       }},
      {"mn_sync_usbdev_conf", "ten new cameras, with an encoder", kEncoder + ten_new,
       [](Host &host) {
         allowEncoding(host);
         tenNewCameras(host);
         mn_sync_usbdev_conf();
       }},
  };
}

// The record update of a channel whose camera is there: node, card, presence, type, output and switch.
constexpr Costs kPresent = writing(6) + kCameraType;

Situations synchronisation() {
  return {
      {"mn_sync_usbdev_conf", "nothing configured, nothing attached",
       kPackageMissing + records(0) + scans(0) + writing(0) + kNoConflicts,
       [](Host &host) {
         host.commands.allowInsideCriticalSection();
         mn_sync_usbdev_conf();
       }},
      {"mn_sync_usbdev_conf", "a known camera with profile 0",
       kPackageMissing + records(1) + scans(1) + kPresent + programs() + kOneConflict,
       [](Host &host) {
         driven(host, 0);
         mn_sync_usbdev_conf();
       }},
      {"mn_sync_usbdev_conf", "a known camera with another profile",
       kPackageMissing + records(1) + scans(1) + kPresent + programs() + kOneConflict + kOneChannel,
       [](Host &host) {
         driven(host, 1);
         mn_sync_usbdev_conf();
       }},
      // Its old channel is emptied by the record update.
      {"mn_sync_usbdev_conf", "a camera in another port than before",
       kPackageMissing + records(1) + scans(1) + writing(9) + kNoConflicts + kNewKnowingEncoder,
       [](Host &host) {
         driven(host, -1).exists(0).slot("");
         mn_sync_usbdev_conf();
       }},
      {"get_conf_chinfo", "a camera", kScan + kPackageMissing + kCameraFound,
       [](Host &host) {
         driven(host, 0);
         Records channels;
         Records cameras;
         number = 0;
         get_conf_chinfo(channels.list, channels.map, &number, cameras.list);
       }},
      {"get_conf_audioinfo", "a sound card", kScan + kCardFound,
       [](Host &host) {
         host.commands.allowInsideCriticalSection();
         host.commands.prints(kCardList, "3-1:1.2\n");
         Records channels;
         Records cards;
         number = 0;
         get_conf_audioinfo(channels.list, channels.map, &number, cards.list, 0, cards.list);
       }},
      {"sync_usbdev", "a new camera", kNewCamera,
       [](Host &host) {
         driven(host, -1).exists(0).slot("");
         Records cameras;
         cameras.list[0] = present(-1, "");
         sync_usbdev(1, cameras.list, 0, cameras.list);
       }},
  };
}

Situations updates() {
  return {
      {"update_usbinfo", "nothing attached", writing(0), [](Host &host) { update(host, Records().list[0]); }},
      {"update_usbinfo", "a camera without a profile", kPresent, [](Host &host) { update(host, present(-1, "")); }},
      {"update_usbinfo", "a camera with a profile", kPresent + programs(),
       [](Host &host) { update(host, present(1, "link")); }},
      {"update_usbinfo", "a camera with a profile and a share link", kPresent + programs(2),
       [](Host &host) {
         _usbdev_update record = present(1, "link");
         strcpy(record.hash, "shared");
         update(host, record);
       }},
      {"update_usbinfo", "a camera with a profile, the name of its live link is lost",
       writing(7) + kCameraType + answers() + programs(),
       [](Host &host) {
         makeIdentifiers(host);
         update(host, present(1, ""));
       }},
      {"rmNone1stProfile",
       "profile 0 alone",
       {},
       [](Host &) {
         Records channels;
         channels.list[0] = present(0, "");
         rmNone1stProfile(channels.list);
       }},
      {"rmNone1stProfile", "another profile with a live link and a share link",
       lookUp(0) + reading(4) + programs(2) + writing(12) + kNobodyWaits,
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

Situations codecCheck() {
  return {
      {"check_halvane", "without the codec package", kPackageMissing + reading(10 * kUnused),
       [](Host &) { check_halvane(); }},
      // Its presence, node, formats and codec.
      {"check_halvane", "without the codec package, a channel that the host would encode",
       kPackageMissing + reading(4 + 9 * kUnused) + writing(1),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).vcodec(0);
         check_halvane();
       }},
      {"check_halvane", "with an encoder", kEncoder,
       [](Host &host) {
         allowEncoding(host);
         check_halvane();
       }},
  };
}

Situations readersAndSetters() {
  return {
      {"get_video_info", "a camera", kCameraFound,
       [](Host &host) {
         drive(host, "3-1", 1);
         get_video_info("3-1:1.0", &number, text);
       }},
      {"get_audio_info", "", kCardFound, [](Host &) { get_audio_info("3-1:1.2", &number, text); }},
      {"get_usb_vnode", "no camera", answers(2),
       [](Host &) {
         _usbdev_update record = present(-1, "");
         get_usb_vnode(&record);
       }},
      {"get_usb_anode", "", answers(2),
       [](Host &) {
         _usbdev_update record = present(-1, "");
         get_usb_anode(&record);
       }},
      {"mn_set_usbchn_sps", "", lookUp(0) + writing(1),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         mn_set_usbchn_sps(0, 1);
       }},
      {"mn_set_usbdev_volume", "", lookUp(0) + reading(3),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).anode(2);
         mn_set_usbdev_volume(0);
       }},
  };
}

}  // namespace

Situations startUpSituations() {
  Situations all;
  for (const Situations &part : {wholeStartUp(), synchronisation(), updates(), codecCheck(), readersAndSetters()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace contract
