// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/machine.h"

#include <gmock/gmock.h>

#include "machine/fake_machine.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using usbdevctl::CameraPlace;
using usbdevctl::Machine;
using usbdevctl::MachineFacts;
using usbdevctl::Reason;

constexpr char kFailure[] = "/mnt/ext/opt/apps/Velmora2/hls/channel1/failure";

// Its camera streams profile 0.
class AMachine : public testing::Test {
 protected:
  AMachine() {
    camera_.port = "3-1";
    camera_.node = 0;
    camera_.profile = 0;
    camera_.streams = true;
    fake_.plug("3-1", "Cam", "1", 0);
  }

  Machine machine() const { return Machine(fake_.root()); }
  MachineFacts facts() const { return machine().facts(camera_); }

  std::vector<std::string> words() const {
    std::vector<std::string> words;
    for (const Reason &reason : machine().reasons(camera_)) words.emplace_back(reason.word);
    return words;
  }

  FakeMachine fake_;
  CameraPlace camera_;
};

TEST_F(AMachine, HasNothingAgainstACameraThatIsThere) { EXPECT_THAT(words(), IsEmpty()); }

TEST_F(AMachine, WithoutAKernelHasNothingAgainstAnyCamera) {
  std::filesystem::remove_all(fake_.root() + "/sys");
  fake_.write(kFailure, "No space left on device\n");
  EXPECT_THAT(words(), IsEmpty());
}

TEST_F(AMachine, HasNothingAgainstAPortThatIsNone) {
  camera_.port = "../3-9";
  EXPECT_THAT(words(), IsEmpty());
}

TEST_F(AMachine, ReadsTheStateOfAnEmptyPortFromTheHub) {
  camera_.port = "3-2";
  fake_.write("/sys/bus/usb/devices/3-0:1.0/usb3-port2/disable", "1\n");
  fake_.write("/sys/bus/usb/devices/3-0:1.0/usb3-port2/over_current_count", "3\n");
  EXPECT_FALSE(facts().device_there);
  EXPECT_TRUE(facts().port_disabled);
  EXPECT_EQ(facts().over_current, 3);
}

TEST_F(AMachine, ReadsWhetherTheDeviceIsAuthorisedAndHasNodes) {
  fake_.set("3-1", "authorized", "0");
  EXPECT_FALSE(facts().authorized);
  EXPECT_TRUE(facts().has_node);
  std::filesystem::remove_all(fake_.root() + "/sys/bus/usb/devices/3-1/3-1:1.0/video4linux");
  EXPECT_FALSE(facts().has_node);
}

TEST_F(AMachine, TakesASuspendedCameraForOneThatWakes) {
  EXPECT_FALSE(facts().asleep);
  fake_.set("3-1", "power/runtime_status", "error");
  EXPECT_TRUE(facts().asleep);
}

TEST_F(AMachine, ReadsTheFailureOfAStreamThatIsWanted) {
  fake_.write(kFailure, "Protocol error\n");
  EXPECT_THAT(words(), ElementsAre("failing"));
  camera_.streams = false;
  EXPECT_THAT(words(), IsEmpty());
}

TEST_F(AMachine, AsksForTheReservationsWhenBandwidthIsMissing) {
  fake_.plug("3-2", "Other", "2", 2);
  fake_.write("/sys/bus/usb/devices/3-2/descriptors", greedyDescriptors());
  fake_.set("3-2", "3-2:1.1/bAlternateSetting", " 1");
  EXPECT_THAT(facts().reservations, IsEmpty());
  fake_.write(kFailure, "No space left on device\n");
  EXPECT_THAT(facts().reservations, SizeIs(1));
  EXPECT_EQ(facts().bus_speed, 480);
  EXPECT_THAT(words(), ElementsAre("bandwidth"));
}

TEST_F(AMachine, AsksForTheProgramsWhenTheCameraIsBusy) {
  fake_.link(fake_.root() + "/dev/video0", "/proc/47/fd/3");
  fake_.link("/dev/video0", "/proc/48/fd/3");
  fake_.write("/proc/48/comm", "motion\n");
  EXPECT_THAT(facts().holders.programs, IsEmpty());
  fake_.write(kFailure, "Device or resource busy\n");
  EXPECT_THAT(facts().holders.programs, ElementsAre("motion (process 48)"));
}

TEST_F(AMachine, NamesTwins) {
  fake_.plug("3-2", "Cam", "1", 2);
  EXPECT_THAT(words(), ElementsAre("twins"));
}

}  // namespace
