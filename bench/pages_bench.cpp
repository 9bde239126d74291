// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the settings pages read at once: the device table, the profile table, the stream of each profile, and what every
// slot holds. On a sandboxed host with ten cameras, which get the four profiles: see bench/run.
#include <usbdev/devices.h>
#include <usbdev/profiles.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bare_host.h"
#include "pairs.h"

namespace {

using bench::kChannels;
using bench::Key;
using bench::number;
using bench::Pass;
using bench::text;

constexpr int kProfiles = 4;
constexpr int kPagesAtOnce = 20;

constexpr Key kExists = number("exists");
constexpr Key kProfile = number("profile");
constexpr Key kSlot = text("usbslot");

constexpr Key kDevice[] = {text("profilename"),
                           text("usbslot"),
                           text("devname"),
                           number("slot_switch"),
                           number("conflictch"),
                           text("createtime"),
                           number("profile"),
                           number("video", "vnode"),
                           number("audio", "anode"),
                           number("audio", "aenable"),
                           number("sharelink", "shrenable")};
constexpr Key kProfileRow[] = {text("profilename"),
                               text("usbslot"),
                               text("devname"),
                               number("slot_switch"),
                               number("exists"),
                               number("conflictch"),
                               text("createtime"),
                               number("video", "vnode"),
                               number("audio", "anode"),
                               number("video", "vcodec"),
                               text("vtag"),
                               text("hlspath"),
                               number("sharelink", "shrenable")};
constexpr Key kSettings[] = {
    number("video", "venable"),   number("video", "vnode"),   number("video", "vcodec"),  number("video", "spsstate"),
    number("video", "width"),     number("video", "height"),  text("video", "framerate"), text("video", "fetype"),
    number("video", "osdenable"), number("video", "flip"),    number("video", "mirror"),  number("video", "ldspoutput"),
    number("audio", "aenable"),   number("audio", "anode"),   number("audio", "acodec"),  number("audio", "samplerate"),
    number("audio", "channelno"), number("audio", "bitrate"), number("audio", "volume"),  number("slot_switch")};
constexpr Key kOfStream[] = {number("exists"), number("conflictch"), text("vtag")};
constexpr Key kCapability[] = {number("video", "vnode"), number("slot_switch"), text("video", "cap")};

struct Page {
  _usbdev_entry devices[kChannels];
  _usbdev_entry profiles[kProfiles];
  _streaminfo stream;
};

bool bindProfiles(Page &page) {
  bool bound = vl_get_devpf_list(page.devices) == 0 && page.devices[kChannels - 1].exists == 1;
  for (int i = 0; i < kProfiles; ++i) bound = vl_set_usbchn_profile(page.devices[i].usbslot, i) == 0 && bound;
  return bound;
}

void readByLibrary(Page &page) {
  vl_get_devpf_list(page.devices);
  vl_get_profile_list(page.profiles);
  for (int i = 0; i < kProfiles; ++i) vl_get_stream_info(i, &page.stream);
  for (const _usbdev_entry &device : page.devices) {
    char capability[16] = "";
    vl_get_usbslot_info(device.usbslot, &page.stream);
    vl_get_usbslot_video_cap(device.usbslot, capability);
  }
}

void readTables() {
  {
    Pass pass = Pass::reading();
    for (int i = 0; i < kChannels; ++i) {
      if (pass.get(i, kExists) != 0) pass.getAll(i, kDevice);
    }
  }
  Pass pass = Pass::reading();
  for (int i = 0; i < kChannels; ++i) {
    if (pass.get(i, kProfile) != -1) pass.getAll(i, kProfileRow);
  }
}

void readStream(int profile) {
  int channel = 0;
  {
    const Pass pass = Pass::reading();
    while (pass.get(channel, kProfile) != profile) ++channel;
  }
  Pass pass = Pass::reading();
  pass.getAll(channel, kOfStream);
  pass.getAll(channel, kSettings);
}

bool sitsIn(Pass &pass, int channel, const char *slot) {
  return pass.get(channel, kExists) != 0 && std::strcmp(pass.getText(channel, kSlot), slot) == 0;
}

void readSlot(const char *slot) {
  {
    Pass pass = Pass::reading();
    for (int i = 0; i < kChannels; ++i) {
      if (!sitsIn(pass, i, slot)) continue;
      pass.get(i, kProfile);
      pass.getAll(i, kSettings);
    }
  }
  Pass pass = Pass::reading();
  int channel = 0;
  while (!sitsIn(pass, channel, slot)) ++channel;
  pass.getAll(channel, kCapability);
}

void readBarely(const Page &page) {
  readTables();
  for (int i = 0; i < kProfiles; ++i) readStream(i);
  for (const _usbdev_entry &device : page.devices) readSlot(device.usbslot);
}

template <typename Read>
bench::Step often(Read read) {
  return [read] {
    for (int i = 0; i < kPagesAtOnce; ++i) read();
  };
}

}  // namespace

int main(int, char **argv) {
  static Page page;
  if (!bindProfiles(page)) {
    std::fputs("needs a sandboxed host with ten cameras, all of them in channels\n", stderr);
    return 1;
  }
  return bench::compare(std::atof(argv[1]), {often([] { readByLibrary(page); }), often([] { readBarely(page); })});
}
