// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The listings, the capabilities and the information of the settings pages.
#include <usbdev/usbdev.h>

#include "scenario.h"

namespace calls {
namespace {

using Entries = std::array<_usbdev_entry, 10>;
using ProfileEntries = std::array<_usbdev_entry, 4>;
using Formats = std::array<_usbfmt_des, 8>;

// A camera with profile 0 and one with sound and profile 2; both stream.
void twoProfiles(World &w) {
  w.host.commands.allowInsideCriticalSection();  // the list of what can stream asks its cameras with the lock held
  cameraOn(w.host, 0, "3-1", 1, 0).profileName("Door").set("vtag", "12345678").set("hlspath", "live");
  cameraOn(w.host, 1, "1-1", 2, 2).anode(1).set("audio/acap", "0 1");
}

Scenarios listings() {
  return {
      {"vl_get_available_profile", "", twoProfiles,
       [](World &, Outputs &out) { return vl_get_available_profile(out.text()); }},
      {"vl_get_usbdev_list", "", twoProfiles, [](World &, Outputs &out) { return vl_get_usbdev_list(out.text()); }},
      {"vl_get_usbdev_list", "with an encoder",
       [](World &w) {
         twoProfiles(w);
         allowEncoding(w.host);
       },
       [](World &, Outputs &out) { return vl_get_usbdev_list(out.text()); }},
      {"vl_get_devpf_list", "", twoProfiles,
       [](World &, Outputs &out) { return vl_get_devpf_list(out.record<Entries>().data()); }},
      {"vl_get_profile_list", "", twoProfiles,
       [](World &, Outputs &out) { return vl_get_profile_list(out.record<ProfileEntries>().data()); }},
  };
}

Scenarios ofOneProfile() {
  return {
      {"vl_get_usbchn_cap", "", twoProfiles,
       [](World &, Outputs &out) { return vl_get_usbchn_cap(0, out.record<Formats>().data()); }},
      {"vl_get_profile_video_cap", "", twoProfiles,
       [](World &, Outputs &out) { return vl_get_profile_video_cap(0, out.text()); }},
      {"vl_get_usbchn_audio_cap", "", twoProfiles,
       [](World &, Outputs &out) { return vl_get_usbchn_audio_cap(2, out.text()); }},
      {"vl_get_profile_info", "", twoProfiles,
       [](World &, Outputs &out) { return vl_get_profile_info(2, &out.record<_profile_info>()); }},
      {"vl_get_profileID", "", twoProfiles, [](World &, Outputs &) { return vl_get_profileID(1); }},
      {"vl_get_stream_info", "", twoProfiles,
       [](World &, Outputs &out) { return vl_get_stream_info(2, &out.record<_streaminfo>()); }},
  };
}

}  // namespace

Scenarios profileScenarios() { return listings() + ofOneProfile(); }

}  // namespace calls
