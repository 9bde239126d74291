// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/usbdev.h>

#include "calls.h"
#include "settled_host.h"

namespace torture {

namespace {

_streaminfo streamOf(int width) {
  _streaminfo stream{};
  stream.vcodec = 1;
  stream.width = width;
  stream.height = 480;
  stream.framerate = 30;
  return stream;
}

Calls settings() {
  return {
      {"vl_chk_usbdev_profile",
       [] {
         int unassigned = 0;
         return seen(vl_chk_usbdev_profile(portOf(3).c_str(), 3, &unassigned), unassigned);
       }},
      {"vl_set_usbchn_profile",
       [] {
         std::string port = portOf(3);
         return seen(vl_set_usbchn_profile(port.data(), 3));
       }},
      {"vl_clear_usbchn_profile", [] { return seen(vl_clear_usbchn_profile(2, "192.0.2.1", 0)); }},
      {"vl_set_profile_channelname", [] { return seen(vl_set_profile_channelname(0, "Front door", 0)); }},
      {"vl_set_usbchn_stream",
       [] {
         _streaminfo after = streamOf(640);
         const _streaminfo before = streamOf(1280);
         return seen(vl_set_usbchn_stream(0, &after, &before, 0), after);
       }},
      {"findclosedFPS",
       [] {
         const _streaminfo request = streamOf(640);
         float rate = 0;
         return seen(findclosedFPS(0, &request, &rate), rate);
       }},
      {"Add_setStream_log",
       [] {
         const _streaminfo stream = streamOf(640);
         Add_setStream_log(0, &stream, &stream, 30, 5);
         return seen(0);
       }},
  };
}

Calls listings() {
  return {
      {"trsProfiletoPlugCh",
       [] {
         int channel = -1;
         return seen(trsProfiletoPlugCh(1, &channel), channel);
       }},
      {"vl_getDevName",
       [] {
         char name[256] = "";
         return seen(vl_getDevName(1, name), name);
       }},
      {"vl_get_available_profile",
       [] {
         char out[16] = "";
         return seen(vl_get_available_profile(out), out);
       }},
      {"vl_get_usbdev_list",
       [] {
         char out[16] = "";
         return seen(vl_get_usbdev_list(out), out);
       }},
      {"vl_get_devpf_list",
       [] {
         _usbdev_entry rows[10] = {};
         return seen(vl_get_devpf_list(rows), rows);
       }},
      {"vl_get_profile_list",
       [] {
         _usbdev_entry rows[4] = {};
         return seen(vl_get_profile_list(rows), rows);
       }},
  };
}

Calls information() {
  return {
      {"vl_get_usbchn_cap",
       [] {
         _usbfmt_des table[USBDEV_FORMATS] = {};
         return seen(vl_get_usbchn_cap(0, table), table);
       }},
      {"vl_get_profile_video_cap",
       [] {
         char cap[16] = "";
         return seen(vl_get_profile_video_cap(0, cap), cap);
       }},
      {"vl_get_usbchn_audio_cap",
       [] {
         char cap[16] = "";
         return seen(vl_get_usbchn_audio_cap(1, cap), cap);
       }},
      {"vl_get_profile_info",
       [] {
         _profile_info info{};
         return seen(vl_get_profile_info(1, &info), info);
       }},
      {"vl_get_profileID", [] { return seen(vl_get_profileID(1)); }},
      {"vl_get_stream_info",
       [] {
         _streaminfo info{};
         return seen(vl_get_stream_info(1, &info), info);
       }},
  };
}

}  // namespace

Calls profileCalls() {
  Calls all = settings();
  for (const Calls &part : {listings(), information()}) all.insert(all.end(), part.begin(), part.end());
  return all;
}

}  // namespace torture
