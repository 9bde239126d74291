// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Who waits while a camera takes its time to answer: no reader of the configuration, except during one listing.
#include <chrono>
#include <cstring>
#include <functional>
#include <future>

#include "contract_test.h"

namespace contract {
namespace {

// A camera on channel 0 with profile 0, and one at port 3-2 that is yet to come. While the first command of a camera's
// query runs, another thread reads the configuration.
class ASlowCamera : public ContractTest {
 protected:
  ASlowCamera() {
    for (const int node : {1, 2}) {
      host.camera(node, "3-" + std::to_string(node))
          .ids("046d", "0825")
          .listing(Listing().format("MJPG").size(640, 480).rate("30.000").text());
    }
    host.channel(0).attached("3-1", 1).profile(0).name("HD Webcam").slotSwitch(1);
    host.commands.does(kProcessorCommand, [this] { answer(); });
  }

  // How long the camera waits for the reader before it answers.
  std::chrono::milliseconds patience{20000};
  int queries = 0;
  bool reader_got_through = false;
  std::future<void> reader;

  _streaminfo stream{};
  _usbfmt_des formats[8];

 private:
  void answer() {
    if (queries++ > 0) return;
    reader = std::async(std::launch::async, [] { vl_get_profileID(0); });
    reader_got_through = reader.wait_for(patience) == std::future_status::ready;
  }
};

TEST_F(ASlowCamera, DoesNotBlockReadersWhileItsFormatsAreShown) {
  EXPECT_EQ(vl_get_usbchn_cap(0, formats), 1);
  EXPECT_TRUE(reader_got_through);
}

TEST_F(ASlowCamera, DoesNotBlockReadersWhileItsStreamIsChanged) {
  stream.vcodec = 1;
  stream.width = 640;
  stream.height = 480;
  stream.framerate = 30;
  EXPECT_EQ(vl_set_usbchn_stream(0, &stream, &stream, 0), 0);
  EXPECT_TRUE(reader_got_through);
}

TEST_F(ASlowCamera, DoesNotBlockReadersWhileItIsPluggedIn) {
  _usbdev_des device{};
  device.devtype = 1;
  device.node = 2;
  device.plugged = 1;
  strcpy(device.usbslot, "3-2");
  int profile = 0;
  int vnode = 0;
  char name[256];
  _usbdev_conflict report;
  EXPECT_EQ(mn_set_usbdev_hotplug(&device, &profile, name, &vnode, &report), 1);
  EXPECT_TRUE(reader_got_through);
}

TEST_F(ASlowCamera, BlocksReadersWhileTheStreamableProfilesAreListed) {
  host.commands.allowInsideCriticalSection();
  patience = std::chrono::milliseconds(50);
  char out[16] = "";
  EXPECT_EQ(vl_get_usbdev_list(out), 0);
  EXPECT_STREQ(out, "0");
  EXPECT_FALSE(reader_got_through);
  reader.wait();
}

}  // namespace
}  // namespace contract
