// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A profile that is given to a camera, taken from it, renamed; and the settings of its stream.
#include <usbdev/usbdev.h>

#include "scenario.h"

namespace calls {
namespace {

using contract::Listing;

constexpr int kReportAll = 5;

// A camera without a profile, and one behind its bridge.
void twoBehindOneBridge(World &w) {
  makeIdentifiers(w.host);
  cameraOn(w.host, 0, "3-1", 1);
  cameraOn(w.host, 1, "1-1", 2);
  for (const int node : {1, 2}) w.host.camera(node, "3-1").behindBridge(contract::kController);
}

// A profile with both links, and one that waits for it.
void assigned(World &w) {
  cameraOn(w.host, 0, "3-1", 1, 0).profileName("Door").set("hlspath", "live").set("sharelink/hash_string", "shared");
  cameraOn(w.host, 1, "3-1.2", 2, 1).conflict(0).createTime("2024-03-05 08:15:00");
  linkOnDisk(w.host, "live");
  linkOnDisk(w.host, "shared");
}

Scenarios assignment() {
  return {
      {"vl_chk_usbdev_profile", "", twoBehindOneBridge,
       [](World &, Outputs &out) { return vl_chk_usbdev_profile("3-1", 0, &out.record<int>()); }},
      {"vl_set_usbchn_profile", "another camera behind its bridge", twoBehindOneBridge,
       [](World &, Outputs &out) { return vl_set_usbchn_profile(out.text("3-1"), 0); }},
      {"vl_set_usbchn_profile", "on a one-channel host",
       [](World &w) {
         twoBehindOneBridge(w);
         w.host.limitToOneChannel();
       },
       [](World &, Outputs &out) { return vl_set_usbchn_profile(out.text("3-1"), 0); }},
      {"vl_set_usbchn_profile", "assigned already", assigned,
       [](World &, Outputs &out) { return vl_set_usbchn_profile(out.text("3-1"), 0); }},
      {"vl_clear_usbchn_profile", "with links, another camera takes over", assigned,
       [](World &, Outputs &) { return vl_clear_usbchn_profile(0, "192.0.2.1", 0); }},
      {"vl_clear_usbchn_profile", "without links", [](World &w) { cameraOn(w.host, 0, "3-1", 1, 0); },
       [](World &, Outputs &) { return vl_clear_usbchn_profile(0, nullptr, 2); }},
      {"vl_set_profile_channelname", "another name", assigned,
       [](World &, Outputs &) { return vl_set_profile_channelname(0, "Gate", 0); }},
      {"vl_set_profile_channelname", "the same name, everything is reported", assigned,
       [](World &, Outputs &) { return vl_set_profile_channelname(0, "Door", kReportAll); }},
  };
}

_streaminfo streamOf(int codec) {
  _streaminfo stream = contract::zeroed<_streaminfo>();
  stream.stream_type = 3;
  stream.vcodec = codec;
  stream.width = 640;
  stream.height = 480;
  stream.framerate = 30;
  stream.aenable = 1;
  return stream;
}

// A camera of two formats with sound.
void streaming(World &w) {
  allowEncoding(w.host);
  cameraOn(w.host, 0, "3-1", 1, 0).anode(2);
  w.host.camera(1, "3-1").listing(Listing()
                                      .format("MJPG")
                                      .size(640, 480)
                                      .rate("90.000")
                                      .rate("15.000")
                                      .format("YUYV")
                                      .size(640, 480)
                                      .rate("30.000")
                                      .rate("7.500")
                                      .text());
}

int change(Outputs &out, const _streaminfo &before, const _streaminfo &after, int event) {
  return vl_set_usbchn_stream(0, &out.record(after), &before, event);
}

Scenarios streamSettings() {
  return {
      {"vl_set_usbchn_stream", "another rate of MJPEG", streaming,
       [](World &, Outputs &out) {
         _streaminfo after = streamOf(1);
         after.framerate = 20;
         return change(out, streamOf(1), after, 0);
       }},
      {"vl_set_usbchn_stream", "H.264 and another sound", streaming,
       [](World &, Outputs &out) {
         _streaminfo after = streamOf(0);
         after.osdenable = after.flip = after.acodec = 1;
         after.volume = 70;
         return change(out, streamOf(1), after, 0);
       }},
      {"vl_set_usbchn_stream", "nothing new, everything is reported", streaming,
       [](World &, Outputs &out) { return change(out, streamOf(1), streamOf(1), kReportAll); }},
      {"vl_set_usbchn_stream", "nothing new", streaming,
       [](World &, Outputs &out) {
         _streaminfo before = streamOf(1);
         before.framerate = 15;
         return change(out, before, before, 0);
       }},
      {"findclosedFPS", "", streaming,
       [](World &, Outputs &out) {
         const _streaminfo request = streamOf(1);
         return findclosedFPS(0, &request, &out.record<float>());
       }},
      {"Add_setStream_log", "", emptyHost,
       [](World &, Outputs &) {
         const _streaminfo stream = streamOf(0);
         Add_setStream_log(0, &stream, &stream, 90, kReportAll);
         return 0;
       }},
  };
}

}  // namespace

Scenarios assignmentScenarios() { return assignment() + streamSettings(); }

}  // namespace calls
