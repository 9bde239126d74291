// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "situations.h"

namespace contract {

namespace {

char text[256];
_usbdev_entry entries[10];
_usbfmt_des formats[8];

void fourStreams(Host &host) {
  host.commands.allowInsideCriticalSection();  // the list asks its cameras with the lock held
  for (int i = 0; i < 4; ++i) cameraOn(host, i, std::to_string(i + 1) + "-1", i, i);
}

// Of each channel the profile; of one that has one four values more, and its camera's formats.
constexpr Costs kFourListed = reading(10 + 4 * 4) + 4 * kListing + repeats(3);

Situations listings() {
  return {
      {"vl_get_available_profile", "", reading(10), [](Host &) { vl_get_available_profile(text); }},
      {"vl_get_usbdev_list", "four cameras with profiles, without the codec package", kPackageMissing + kFourListed,
       [](Host &host) {
         fourStreams(host);
         vl_get_usbdev_list(text);
       }},
      {"vl_get_usbdev_list", "four cameras with profiles, with an encoder", kEncoder + kFourListed,
       [](Host &host) {
         allowEncoding(host);
         fourStreams(host);
         vl_get_usbdev_list(text);
       }},
      // The file alone decides for all three: profile, conflict mark and card.
      {"vl_get_usbdev_list", "a camera without a profile, one that waits, one with sound", reading(10 + 2 + 3),
       [](Host &host) {
         cameraOn(host, 0, "3-1.1", 1);
         cameraOn(host, 1, "3-1.2", 2, 1).conflict(0);
         cameraOn(host, 2, "1-1", 3, 2).anode(1);
         vl_get_usbdev_list(text);
       }},
      // Of each channel its presence, and of one that is there the twelve values of a row.
      {"vl_get_devpf_list", "one camera", reading(10 + 12),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_devpf_list(entries);
       }},
      // Of each channel its profile, and of one with a profile ten values, with video four more.
      {"vl_get_profile_list", "one camera", reading(10 + 10 + 4),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_profile_list(entries);
       }},
  };
}

Situations ofOneProfile() {
  return {
      {"vl_get_usbchn_cap", "", kCapability + kFormats,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_usbchn_cap(0, formats);
       }},
      {"vl_get_profile_video_cap", "", kCapability,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_profile_video_cap(0, text);
       }},
      {"vl_get_usbchn_audio_cap", "", kCapability,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).anode(1);
         vl_get_usbchn_audio_cap(0, text);
       }},
      // Twenty settings, and the nodes that make the stream type.
      {"vl_get_profile_info", "", lookUp(0) + reading(20 + 2),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         _profile_info info;
         vl_get_profile_info(0, &info);
       }},
      {"vl_get_profileID", "", reading(1), [](Host &) { vl_get_profileID(0); }},
      // What may keep it from streaming, twelve settings of the picture, seven of the sound, and the tag.
      {"vl_get_stream_info", "", lookUp(0) + reading(3 + 12 + 7 + 1),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         _streaminfo info;
         vl_get_stream_info(0, &info);
       }},
      {"vl_get_stream_info", "a waiting channel", lookUp(0) + reading(3),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).conflict(1);
         _streaminfo info;
         vl_get_stream_info(0, &info);
       }},
  };
}

}  // namespace

Situations profileSituations() {
  Situations all = listings();
  for (const Situation &situation : ofOneProfile()) all.push_back(situation);
  return all;
}

}  // namespace contract
