// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "situations.h"

namespace contract {

namespace {

char text[256];
int number;

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

// The identifier, four values and the link.
constexpr Costs kBound = answers() + writing(4) + programs();
// Nodes and links are read, twelve values cleared.
constexpr Costs kCleared = reading(4) + writing(12);

Situations assignment() {
  return {
      {"vl_chk_usbdev_profile", "", kAllChannels,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1);
         vl_chk_usbdev_profile("3-1", 0, &number);
       }},
      {"vl_set_usbchn_profile", "no other camera", kAllChannels + kBound,
       [](Host &host) {
         makeIdentifiers(host);
         cameraOn(host, 0, "3-1", 1);
         bind("3-1", 0);
       }},
      {"vl_set_usbchn_profile", "another camera elsewhere, no bridge", kAllChannels + kOneChannel + kNoBridge + kBound,
       [](Host &host) {
         makeIdentifiers(host);
         cameraOn(host, 0, "3-1", 1);
         cameraOn(host, 1, "1-1", 2);
         bind("3-1", 0);
       }},
      {"vl_set_usbchn_profile", "assigned already", kAllChannels,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         bind("3-1", 0);
       }},
      {"vl_clear_usbchn_profile", "without links", lookUp(0) + kCleared + kNobodyWaits,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_clear_usbchn_profile(0, "192.0.2.1", 0);
       }},
      {"vl_clear_usbchn_profile", "with a live link and a share link",
       lookUp(0) + kCleared + programs(2) + kNobodyWaits,
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).set("hlspath", "live").set("sharelink/hash_string", "shared");
         linkOnDisk(host, "live");
         linkOnDisk(host, "shared");
         vl_clear_usbchn_profile(0, nullptr, 0);
       }},
      {"vl_set_profile_channelname", "another name", lookUp(0) + reading(1) + writing(1),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_set_profile_channelname(0, "Front door", 0);
       }},
      {"vl_set_profile_channelname", "the same name", lookUp(0) + reading(1),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0).profileName("Front door");
         vl_set_profile_channelname(0, "Front door", 0);
       }},
  };
}

Situations streamSettings() {
  return {
      // The nodes and the stored rate, then the camera's formats; the switch to video, width, rate and tag are written.
      {"vl_set_usbchn_stream", "another size", lookUp(0) + reading(3) + kCapability + kFormats + writing(4),
       [](Host &host) { change(host, 640); }},
      {"vl_set_usbchn_stream", "a size that the camera does not have", lookUp(0) + reading(3) + kCapability + kFormats,
       [](Host &host) { change(host, 641); }},
      {"findclosedFPS", "", kCapability + kFormats,
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

}  // namespace

Situations assignmentSituations() {
  Situations all = assignment();
  for (const Situation &situation : streamSettings()) all.push_back(situation);
  return all;
}

}  // namespace contract
