// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Ten cameras that come and go all at once, reported by many threads: one event at a time, as the callers have to see
// to, beside readers that have to see to nothing.
#include <usbdev/usbdev.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <random>
#include <set>

#include "contract_test.h"
#include "crew.h"
#include "thoroughness.h"

namespace torture {
namespace {

constexpr int kCameras = 10;

class APlugStorm : public contract::ContractTest, public testing::WithParamInterface<int> {
 protected:
  APlugStorm() {
    for (int camera = 0; camera < kCameras; ++camera) {
      host.camera(camera, port(camera))
          .ids("046d", "0825")
          .listing(contract::Listing().format("MJPG").size(640, 480).rate("30.000").text());
      found_[camera] = tell(camera, 1);
    }
  }

  static std::string port(int camera) { return std::to_string(camera + 1) + "-1"; }
  static std::string name(int camera) { return "Camera " + std::to_string(camera); }

  /// Reports events of cameras by chance, one at a time over all threads.
  void stormIn(int member, int events) {
    std::minstd_rand chance(static_cast<unsigned>(member) + 1);
    for (int i = 0; i < events; ++i) {
      const std::lock_guard<std::mutex> one_event(event_);
      toggle(static_cast<int>(chance() % kCameras));
    }
  }

  /// No two channels ever have a camera in the same port.
  void readIn(int times) {
    for (int i = 0; i < times; ++i) {
      _usbdev_entry rows[kCameras] = {};
      vl_get_devpf_list(rows);
      std::set<std::string> ports;
      for (const _usbdev_entry &row : rows) {
        if (row.exists == 1 && !ports.insert(row.usbslot).second) ++doubles_;
      }
    }
  }

  void plugWhatIsMissing() {
    for (int camera = 0; camera < kCameras; ++camera) {
      if (!plugged_[camera]) toggle(camera);
    }
  }

  void expectEveryCameraWhereItWasAtFirst() {
    EXPECT_EQ(strangers_, 0) << "events of a camera that ended in another channel";
    EXPECT_EQ(doubles_, 0) << "two channels with a camera in one port";
    for (int camera = 0; camera < kCameras; ++camera) {
      const contract::HostChannel channel = host.channel(camera);
      EXPECT_EQ(found_[camera], camera);
      EXPECT_EQ(channel.get("exists"), "1");
      EXPECT_EQ(channel.get("usbslot"), port(camera));
      EXPECT_EQ(channel.get("devname"), name(camera));
      EXPECT_EQ(channel.get("video/vnode"), std::to_string(camera));
    }
  }

 private:
  static int tell(int camera, int plugged) {
    _usbdev_des device{};
    device.devtype = 1;
    device.node = camera;
    device.plugged = plugged;
    port(camera).copy(device.usbslot, sizeof device.usbslot);
    name(camera).copy(device.devname, sizeof device.devname);
    int profile = 0;
    int vnode = 0;
    char devname[256];
    _usbdev_conflict conflict;
    return mn_set_usbdev_hotplug(&device, &profile, devname, &vnode, &conflict);
  }

  void toggle(int camera) {
    plugged_[camera] = !plugged_[camera];
    if (tell(camera, plugged_[camera] ? 1 : 0) != found_[camera]) ++strangers_;
  }

  std::mutex event_;
  bool plugged_[kCameras] = {true, true, true, true, true, true, true, true, true, true};
  int found_[kCameras] = {};
  int strangers_ = 0;
  std::atomic<int> doubles_{0};
};

TEST_P(APlugStorm, LeavesEveryCameraInItsChannel) {
  const int threads = GetParam();
  const int events = times(80, 10000) / threads;
  Crew crew(threads);
  crew.run([&](int member) { member % 2 == 0 ? stormIn(member, 2 * events) : readIn(2 * events); });
  plugWhatIsMissing();
  expectEveryCameraWhereItWasAtFirst();
  torture::report("threads: " + std::to_string(threads / 2 * 2 * events) + " plug events of " +
                  std::to_string(threads / 2) + " threads, every camera found again in its channel");
}

INSTANTIATE_TEST_SUITE_P(Of, APlugStorm, testing::Values(8, 32));

}  // namespace
}  // namespace torture
