#include "situations.h"

namespace contract {

namespace {

constexpr char kController[] = "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0";

char text[256];
int number;
_usbdev_entry entries[10];
_usbfmt_des formats[8];

void bind(const char *slot, int profile) {
  strcpy(text, slot);
  vl_set_usbchn_profile(text, profile);
}

_streaminfo streamOf(int width) {
  _streaminfo stream = zeroed<_streaminfo>();
  stream.vcodec = 1;
  stream.width = width;
  stream.height = 480;
  return stream;
}

void change(Host &host, int width) {
  cameraOn(host, 0, "3-1", 1, 0);
  _streaminfo after = streamOf(width);
  const _streaminfo before = streamOf(1280);
  vl_set_usbchn_stream(0, &after, &before, 0);
}

Situations assignment() {
  return {
      {"vl_chk_usbdev_profile",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         vl_chk_usbdev_profile("3-1", 0, &number);
       }},
      {"vl_set_usbchn_profile",
       "no other camera",
       {1, 0, 1},
       [](Host &host) {
         host.commands.allowInsideCriticalSection();
         host.commands.prints("/bin/cat /proc/sys/kernel/random/uuid", "1b4e28ba-2fa1-11d2-883f-0016d3cca427\n");
         cameraOn(host, 0, "3-1", 1);
         bind("3-1", 0);
       }},
      {"vl_set_usbchn_profile",
       "another camera elsewhere, no bridge",
       {2, 1, 1},
       [](Host &host) {
         host.commands.allowInsideCriticalSection();
         host.commands.prints("/bin/cat /proc/sys/kernel/random/uuid", "1b4e28ba-2fa1-11d2-883f-0016d3cca427\n");
         cameraOn(host, 0, "3-1", 1);
         cameraOn(host, 1, "1-1", 2);
         bind("3-1", 0);
       }},
      {"vl_set_usbchn_profile",
       "bound already",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         bind("3-1", 0);
       }},
      {"vl_clear_usbchn_profile",
       "without links",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_clear_usbchn_profile(0, "192.0.2.1", 0);
       }},
      {"vl_clear_usbchn_profile",
       "with both links",
       {0, 0, 2},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).set("hlspath", "live").set("sharelink/hash_string", "shared");
         linkOnDisk(host, "live");
         linkOnDisk(host, "shared");
         vl_clear_usbchn_profile(0, nullptr, 0);
       }},
      {"vl_set_profile_channelname",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_set_profile_channelname(0, "Front door", 0);
       }},
  };
}

Situations streamSettings() {
  return {
      {"vl_set_usbchn_stream", "a size that the camera has", kFormats, [](Host &host) { change(host, 640); }},
      {"vl_set_usbchn_stream", "a size that it does not have", kFormats, [](Host &host) { change(host, 641); }},
      {"findclosedFPS", "", kFormats,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         const _streaminfo request = streamOf(640);
         float rate = 0;
         findclosedFPS(0, &request, &rate);
       }},
      {"Add_setStream_log",
       "",
       {},
       [](Host &) {
         const _streaminfo stream = streamOf(640);
         Add_setStream_log(0, &stream, &stream, 30, 5);
       }},
  };
}

Situations slotSwitch() {
  return {
      {"vl_set_usbslot_switch",
       "no other camera",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_set_usbslot_switch("3-1", "enable", nullptr);
       }},
      {"vl_set_usbslot_switch",
       "on beside a streaming camera of the root port",
       {0, 1},
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1);
         vl_set_usbslot_switch("3-1.1", "enable", nullptr);
       }},
      {"vl_set_usbslot_switch",
       "on beside a camera elsewhere, both behind a bridge",
       {4, 1},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         cameraOn(host, 1, "1-1", 2, 1);
         host.camera(1, "3-1").behindBridge(kController);
         host.camera(2, "1-1").behindBridge(kController);
         vl_set_usbslot_switch("3-1", "enable", nullptr);
       }},
      {"vl_set_usbslot_switch",
       "off, another one takes over",
       {0, 1},
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1, 0);
         cameraOn(host, 1, "3-1.2", 2, 1).conflict(0).createTime("2024-03-05 08:15:00");
         vl_set_usbslot_switch("3-1.1", "disable", nullptr);
       }},
  };
}

Situations listings() {
  return {
      {"vl_get_available_profile", "", {}, [](Host &) { vl_get_available_profile(text); }},
      {"vl_get_usbdev_list", "a camera with a profile", kFormats,
       [](Host &host) {
         host.commands.allowInsideCriticalSection();
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_usbdev_list(text);
       }},
      {"vl_get_usbdev_list",
       "a camera without a profile, one parked, one with sound",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1);
         cameraOn(host, 1, "3-1.2", 2, 1).conflict(0);
         cameraOn(host, 2, "1-1", 3, 2).anode(1);
         vl_get_usbdev_list(text);
       }},
      {"vl_get_devpf_list",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_devpf_list(entries);
       }},
      {"vl_get_profile_list",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_profile_list(entries);
       }},
      {"vl_get_usbchn_cap", "", kFormats,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_usbchn_cap(0, formats);
       }},
      {"vl_get_profile_video_cap",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_profile_video_cap(0, text);
       }},
      {"vl_get_usbchn_audio_cap",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).anode(1);
         vl_get_usbchn_audio_cap(0, text);
       }},
      {"vl_get_profile_info",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         _profile_info info;
         vl_get_profile_info(0, &info);
       }},
      {"vl_get_profileID", "", {}, [](Host &) { vl_get_profileID(0); }},
      {"vl_get_stream_info",
       "",
       {},
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         _streaminfo info;
         vl_get_stream_info(0, &info);
       }},
  };
}

}  // namespace

Situations profileSituations() {
  Situations all;
  for (const Situations &part : {assignment(), streamSettings(), slotSwitch(), listings()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace contract
