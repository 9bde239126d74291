// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera that is plugged in beside nine others, on a sandboxed host with ten cameras of which the last is the one to
// plug in: see bench/run.
#include <usbdev/hotplug.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bare_host.h"
#include "pairs.h"

namespace {

constexpr int kNewChannel = 9;

/// Nine cameras that are there, and the one that comes.
struct Scene {
  Scene() {
    auto pass = bench::Pass::reading();
    for (int i = 0; i < bench::kChannels; ++i) {
      const bench::Camera camera{pass.get(i, bench::number("video", "vnode")), pass.getText(i, bench::text("usbslot"))};
      if (pass.get(i, bench::number("exists")) != 1) return;
      if (i == kNewChannel) {
        comes = camera;
        complete = true;
      } else {
        others.push_back(camera);
      }
    }
  }

  std::vector<bench::Camera> others;
  bench::Camera comes;
  bool complete = false;
};

void forget() {
  const auto pass = bench::Pass::writing();
  pass.set(kNewChannel, bench::number("exists"), 0);
  pass.set(kNewChannel, bench::text("usbslot"), "");
  pass.set(kNewChannel, bench::number("profile"), -1);
  pass.set(kNewChannel, bench::number("video", "vnode"), -1);
  pass.set(kNewChannel, bench::number("conflictch"), -1);
}

void plugInByLibrary(const bench::Camera &camera) {
  _usbdev_des device = {};
  device.devtype = 1;
  device.plugged = 1;
  device.node = camera.node;
  std::strncpy(device.usbslot, camera.slot.c_str(), sizeof device.usbslot - 1);
  std::strcpy(device.devname, "Camera");
  _usbdev_conflict conflict = {};
  char devname[256] = "";
  int profile = 0;
  int vnode = 0;
  if (mn_set_usbdev_hotplug(&device, &profile, devname, &vnode, &conflict) != kNewChannel) std::abort();
}

void plugInBarely(const Scene &scene) {
  bench::Answers answers;
  bench::askEncoding();
  bench::plugIn(answers, kNewChannel, scene.comes, scene.others);
}

}  // namespace

int main(int, char **argv) {
  const Scene scene;
  if (!scene.complete) {
    std::fputs("needs a sandboxed host with ten cameras, all of them in channels\n", stderr);
    return 1;
  }
  return bench::compare(std::atof(argv[1]),
                        {[&] { plugInByLibrary(scene.comes); }, [&] { plugInBarely(scene); }, forget});
}
