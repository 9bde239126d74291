// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The synchronisation of the configuration with the devices, its steps, and the setters of one channel.
#include <usbdev/usbdev.h>

#include "hotplug/start_fixture.h"
#include "scenario.h"

namespace calls {
namespace {

using Records = std::array<_usbdev_update, 10>;
using Ten = std::array<int, 10>;

Records neverConfigured() {
  _usbdev_update record = contract::zeroed<_usbdev_update>();
  record.vnode = record.anode = record.state = record.slot_switch = record.profile = -1;
  Records records;
  records.fill(record);
  return records;
}

Ten unmarked() {
  Ten marks;
  marks.fill(-1);
  return marks;
}

// The camera of channel 0 with a profile.
Records oneCamera(int profile, const char *link) {
  Records records = neverConfigured();
  records[0].state = 1;
  records[0].vnode = 1;
  records[0].profile = profile;
  strcpy(records[0].usbslot, "3-1");
  strcpy(records[0].devname, "HD Webcam");
  strcpy(records[0].hlspath, link);
  return records;
}

void drive(Host &host, const std::string &slot, int node) {
  const std::string number = std::to_string(node);
  host.commands.prints("/bin/ls /sys/bus/usb/drivers/uvcvideo/" + slot + ":1.0/video4linux | /bin/awk '{print $1}'",
                       "video" + number + "\n");
  host.files.write("/sys/class/video4linux/video" + number + "/name", "HD Webcam\n");
  plugged(host, slot, node);
}

void driveCard(Host &host) {
  host.commands.prints(contract::kCardList, "3-1:1.2\n");
  host.commands.prints("/bin/ls /sys/bus/usb/drivers/snd-usb-audio/3-1:1.2/sound | /bin/awk '{print $1}'", "card2\n");
  host.sound.card(2, 1, 1, 1, "Card");
}

// A known camera with its own sound card, a new camera, and a channel whose camera is gone.
void attached(World &w, int profile) {
  makeIdentifiers(w.host);
  drive(w.host, "3-1", 1);
  drive(w.host, "1-1", 2);
  driveCard(w.host);
  w.host.commands.prints(contract::kCameraList, "3-1:1.0\n1-1:1.0\n");
  w.host.files.write("/etc/config/.usbFECam.dat", "046d:0825=3\n");
  cameraOn(w.host, 0, "3-1", 1, profile).set("hlspath", "live").set("video/vcodec", 1);
  cameraOn(w.host, 1, "5-1", 3, -1).createTime("2024-03-05 08:15:00");
}

void attachedOnOneChannelHost(World &w) {
  attached(w, 1);
  w.host.limitToOneChannel();
  linkOnDisk(w.host, "live");
}

void twoToEncode(World &w) {
  cameraOn(w.host, 0, "3-1", 1, 0).vcodec(0);
  cameraOn(w.host, 1, "1-1", 2).set("video/cap", "0");
}

Scenarios wholes() {
  return {
      {"vl_set_devpf_list", "a known and a new camera, a card", [](World &w) { attached(w, 0); },
       [](World &, Outputs &) { return vl_set_devpf_list(); }},
      {"mn_sync_usbdev_conf", "a known and a new camera, a card", [](World &w) { attached(w, 0); },
       [](World &, Outputs &) { return mn_sync_usbdev_conf(); }},
      {"mn_sync_usbdev_conf", "on a one-channel host", attachedOnOneChannelHost,
       [](World &, Outputs &) { return mn_sync_usbdev_conf(); }},
      {"check_halvane", "a channel that the host would encode, and one that has nothing else", twoToEncode,
       [](World &, Outputs &) { return check_halvane(); }},
      {"check_halvane", "the same with an encoder",
       [](World &w) {
         twoToEncode(w);
         allowEncoding(w.host);
       },
       [](World &, Outputs &) { return check_halvane(); }},
  };
}

Scenarios scans() {
  return {
      {"get_conf_chinfo", "", [](World &w) { attached(w, 0); },
       [](World &, Outputs &out) {
         Records &channels = out.record(neverConfigured());
         Ten &marks = out.record(unmarked());
         int &count = out.record(0);
         return get_conf_chinfo(channels.data(), marks.data(), &count, out.record<Records>().data());
       }},
      {"get_conf_audioinfo", "a card that no channel knows", [](World &w) { attached(w, 0); },
       [](World &, Outputs &out) {
         Records &channels = out.record(neverConfigured());
         Ten &marks = out.record(unmarked());
         int &count = out.record(0);
         Records &cards = out.record<Records>();
         const Records none = neverConfigured();
         return get_conf_audioinfo(channels.data(), marks.data(), &count, cards.data(), 0, none.data());
       }},
  };
}

Scenarios updates() {
  return {
      {"update_usbinfo", "a live link and a share link", [](World &w) { attached(w, 1); },
       [](World &, Outputs &out) {
         Records records = oneCamera(1, "live");
         strcpy(records[0].hash, "shared");
         return update_usbinfo(out.record(records).data());
       }},
      {"update_usbinfo", "the name of the live link is lost", [](World &w) { attached(w, 1); },
       [](World &, Outputs &out) { return update_usbinfo(out.record(oneCamera(1, "")).data()); }},
      {"sync_usbdev", "a new camera and a new card", [](World &w) { attached(w, 0); },
       [](World &, Outputs &) {
         Records cameras = oneCamera(-1, "");
         strcpy(cameras[0].usbslot, "1-1");
         cameras[0].vnode = 2;
         Records cards = cameras;
         cards[0].anode = 2;
         cards[0].devname[0] = '\0';
         return sync_usbdev(1, cameras.data(), 1, cards.data());
       }},
      {"rmNone1stProfile", "a profile with a live link and a share link",
       [](World &w) {
         cameraOn(w.host, 0, "3-1", 1, 1).set("hlspath", "live").set("sharelink/hash_string", "shared");
         linkOnDisk(w.host, "live");
         linkOnDisk(w.host, "shared");
       },
       [](World &, Outputs &) {
         Records channels = oneCamera(1, "live");
         return rmNone1stProfile(channels.data());
       }},
  };
}

_usbdev_update &inPort(Outputs &out) {
  _usbdev_update record = neverConfigured()[0];
  strcpy(record.usbslot, "3-1");
  return out.record(record);
}

Scenarios readers() {
  return {
      {"get_video_info", "", [](World &w) { attached(w, 0); },
       [](World &, Outputs &out) { return get_video_info("3-1:1.0", &out.record<int>(), out.text()); }},
      {"get_audio_info", "", [](World &w) { attached(w, 0); },
       [](World &, Outputs &out) { return get_audio_info("3-1:1.2", &out.record<int>(), out.text()); }},
      {"get_usb_vnode", "",
       [](World &w) {
         w.host.commands.prints("/bin/ls /sys/bus/usb/drivers/uvcvideo/3-1\\:1.0/video4linux | /bin/awk '{print $1}'",
                                "video1\n");
         w.host.files.write("/sys/class/video4linux/video1/name", "HD Webcam\n");
       },
       [](World &, Outputs &out) { return get_usb_vnode(&inPort(out)); }},
      {"get_usb_anode", "",
       [](World &w) {
         w.host.commands.prints("/bin/ls /sys/bus/usb/drivers/snd-usb-audio/3-1\\:1.2/sound | /bin/awk '{print $1}'",
                                "card2\n");
         w.host.sound.card(2, 1, 1, 1, "Card");
       },
       [](World &, Outputs &out) { return get_usb_anode(&inPort(out)); }},
  };
}

Scenarios setters() {
  return {
      {"mn_set_usbchn_sps", "", [](World &w) { cameraOn(w.host, 0, "3-1", 1, 0); },
       [](World &, Outputs &) { return mn_set_usbchn_sps(0, 1); }},
      {"mn_set_usbdev_volume", "",
       [](World &w) {
         cameraOn(w.host, 0, "3-1", 1, 0).anode(2).set("audio/volume", 80);
         w.host.sound.card(2, 1, 1, 1, "Card");
       },
       [](World &, Outputs &) { return mn_set_usbdev_volume(0); }},
  };
}

}  // namespace

Scenarios startUpScenarios() { return wholes() + scans() + updates() + readers() + setters(); }

}  // namespace calls
