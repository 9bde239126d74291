// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A start-up with ten cameras: start_up_bench known, where they were and four of them with a profile, or new, where no
// channel knows them yet. On a sandboxed host with ten cameras: see bench/run.
#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "bare_host.h"
#include "pairs.h"

namespace {

using bench::Camera;
using bench::Key;
using bench::number;
using bench::Pass;
using bench::text;

constexpr int kProfiles = 4;
constexpr Key kRecord[] = {number("exists"), number("slot_switch"), number("profile"), text("hlspath"),
                           number("sharelink", "shrenable")};
constexpr Key kKnown[] = {number("exists"), text("usbslot"), text("devname"), number("conflictch")};
constexpr Key kActive[] = {number("exists"),     number("profile"),     number("video", "vnode"),
                           number("conflictch"), number("slot_switch"), text("usbslot")};

bool bindProfiles() {
  _usbdev_entry rows[bench::kChannels];
  bool bound = vl_get_devpf_list(rows) == 0 && rows[bench::kChannels - 1].exists == 1;
  for (int i = 0; i < kProfiles; ++i) bound = vl_set_usbchn_profile(rows[i].usbslot, i) == 0 && bound;
  vl_set_devpf_list();  // from now on a start-up changes nothing
  return bound;
}

void forgetAll() { std::ofstream("/etc/config/usbdev.conf") << "<velmora/>\n"; }

template <std::size_t Count>
void readAll(const Key (&keys)[Count]) {
  Pass pass = Pass::reading();
  for (int i = 0; i < bench::kChannels; ++i) pass.getAll(i, keys);
}

std::vector<std::string> interfacesOf(const std::string &driver) {
  return bench::ask("/bin/ls /sys/bus/usb/drivers/" + driver + " | grep \\: | /bin/awk '{print $1}'");
}

/// What both start-ups begin with: the encoding question, the records, and the two drivers' devices.
std::vector<Camera> scan() {
  bench::askEncoding();
  readAll(kRecord);
  std::vector<Camera> cameras;
  for (const std::string &line : interfacesOf("uvcvideo")) {
    const std::string interface = line.substr(0, line.size() - 1);
    const std::string listing = "/bin/ls /sys/bus/usb/drivers/uvcvideo/" + interface + "/video4linux";
    const std::vector<std::string> nodes = bench::ask(listing + " | /bin/awk '{print $1}'");
    if (nodes.empty()) continue;  // the camera's other interface
    const std::string &node = nodes[0];
    cameras.push_back({node[node.size() - 2] - '0', interface.substr(0, interface.find(':'))});
    bench::linesOf("/sys/class/video4linux/video" + std::to_string(cameras.back().node) + "/name");
  }
  readAll(kKnown);
  interfacesOf("snd-usb-audio");
  readAll(kKnown);
  return cameras;
}

/// The channels as they were, each with its camera and, the first four, with a profile.
struct Channels {
  Channels() {
    Pass pass = Pass::reading();
    for (int i = 0; i < bench::kChannels; ++i) {
      cameras.push_back({pass.get(i, number("video", "vnode")), pass.getText(i, text("usbslot"))});
      links.emplace_back(pass.getText(i, text("hlspath")));
      active.push_back(i < kProfiles && pass.get(i, number("conflictch")) == -1);
    }
  }

  std::vector<Camera> cameras;
  std::vector<std::string> links;
  std::vector<bool> active;
};

void updateChannels(const Channels &channels) {
  const Pass pass = Pass::writing();
  for (int i = 0; i < bench::kChannels; ++i) {
    const int node = channels.cameras[static_cast<std::size_t>(i)].node;
    pass.set(i, number("video", "vnode"), node);
    pass.set(i, number("audio", "anode"), -1);
    pass.set(i, number("exists"), 1);
    bench::askCameraType(node);
    pass.set(i, text("video", "fetype"), "");
    pass.set(i, number("video", "ldspoutput"), 0);
    if (i < kProfiles) bench::linkStream(i, channels.links[static_cast<std::size_t>(i)]);
    pass.set(i, number("slot_switch"), 1);
  }
}

/// The first active channel that each one conflicts with.
std::vector<int> findConflicts(const Channels &channels) {
  std::vector<int> found(bench::kChannels, -1);
  bench::Answers answers;
  for (std::size_t i = 0; i < bench::kChannels; ++i) {
    readAll(kActive);
    for (std::size_t other = 0; other < bench::kChannels && found[i] == -1; ++other) {
      if (other == i || !channels.active[other]) continue;
      if (answers.conflict(channels.cameras[i], channels.cameras[other])) found[i] = static_cast<int>(other);
    }
  }
  return found;
}

void startKnownBarely(const Channels &channels) {
  scan();
  updateChannels(channels);
  static_cast<void>(Pass::writing());  // no channel is to be cleared
  const std::vector<int> found = findConflicts(channels);
  const Pass pass = Pass::writing();
  for (int i = 0; i < bench::kChannels; ++i) pass.set(i, number("conflictch"), found[static_cast<std::size_t>(i)]);
}

void startNewBarely() {
  const std::vector<Camera> cameras = scan();
  for (int pass = 0; pass < 3; ++pass) static_cast<void>(Pass::writing());  // no channel to update yet
  bench::Answers answers;
  std::vector<Camera> others;
  for (const Camera &camera : cameras) {
    bench::plugIn(answers, static_cast<int>(others.size()), camera, others);
    others.push_back(camera);
  }
}

void startByLibrary() { vl_set_devpf_list(); }

}  // namespace

int main(int count, char **argv) {
  if (count != 3 || !bindProfiles()) {
    std::fputs("start_up_bench known|new BOUND, on a sandboxed host with ten cameras in channels\n", stderr);
    return 1;
  }
  const double bound = std::atof(argv[2]);
  if (std::strcmp(argv[1], "new") == 0) return bench::compare(bound, {startByLibrary, startNewBarely, forgetAll});
  const Channels channels;
  return bench::compare(bound, {startByLibrary, [&] { startKnownBarely(channels); }});
}
