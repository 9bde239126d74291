// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/video_node.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "machine/fake_machine.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using usbdevctl::askNode;
using usbdevctl::holdersOf;
using usbdevctl::KernelFiles;

class AVideoNode : public testing::Test {
 protected:
  AVideoNode() { machine_.makeFolder("/proc/1/fd"); }

  void run(int process, const std::string &name, const std::string &command) {
    const std::string folder = "/proc/" + std::to_string(process);
    machine_.write(folder + "/comm", name + "\n");
    machine_.write(folder + "/cmdline", command);
    machine_.link("/dev/null", folder + "/fd/0");
    machine_.link("/dev/video1", folder + "/fd/3");
  }

  std::vector<std::string> holders(const std::string &node) const { return holdersOf(files_, node).programs; }

  FakeMachine machine_;
  KernelFiles files_{machine_.root()};
};

TEST_F(AVideoNode, IsHeldByTheProgramsThatHaveItOpen) {
  run(47, "motion", "motion");
  machine_.write("/proc/meminfo", "");
  EXPECT_THAT(holders("/dev/video1"), ElementsAre("motion (process 47)"));
  EXPECT_THAT(holders("/dev/video"), IsEmpty());
  EXPECT_THAT(holders("/dev/video11"), IsEmpty());
}

TEST_F(AVideoNode, IsNotHeldByTheHostsOwnStreams) {
  using namespace std::string_literals;
  run(47, "ffmpeg", "v4l2_read 1\0-nostdin"s);
  run(48, "ffmpeg", "HDpipe 1\0"s);
  run(49, "ffmpeg", "v4l2_read 2\0"s);
  EXPECT_THAT(holders("/dev/video1"), ElementsAre("ffmpeg (process 49)"));
}

TEST_F(AVideoNode, IsHeldByProgramsOfAnyNameWhichReachNoTerminal) {
  run(47, "\x1b[2J", "");
  EXPECT_THAT(holders("/dev/video1"), ElementsAre("\\x1b[2J (process 47)"));
}

TEST_F(AVideoNode, ThatManyHoldIsReportedWithEight) {
  for (int process = 100; process < 120; ++process) run(process, "motion", "motion");
  EXPECT_THAT(holders("/dev/video1"), SizeIs(8));
}

TEST_F(AVideoNode, MayHaveHoldersThatOnlyRootSees) {
  run(47, "motion", "motion");
  EXPECT_TRUE(holdersOf(files_, "/dev/video1").all_seen);
  chmod((machine_.root() + "/proc/47/fd").c_str(), 0);
  const bool is_root = seteuid(65534) == 0;
  const auto holders = holdersOf(files_, "/dev/video1");
  ASSERT_TRUE(!is_root || seteuid(0) == 0);
  chmod((machine_.root() + "/proc/47/fd").c_str(), 0700);
  EXPECT_THAT(holders.programs, IsEmpty());
  EXPECT_FALSE(holders.all_seen);
}

TEST_F(AVideoNode, MayHaveHoldersWhoseProcessesAreNotShown) {
  EXPECT_TRUE(holdersOf(files_, "/dev/video1").all_seen);
  std::filesystem::remove_all(machine_.root() + "/proc/1");
  EXPECT_FALSE(holdersOf(files_, "/dev/video1").all_seen);
}

TEST_F(AVideoNode, IsAskedOnlyIfItIsADevice) {
  machine_.write("/dev/video1", "");
  EXPECT_TRUE(askNode(files_.path("/dev/video1"), true).exists);
  EXPECT_FALSE(askNode(files_.path("/dev/video1"), true).is_device);
  EXPECT_FALSE(askNode(files_.path("/dev/video2"), true).exists);
}

TEST_F(AVideoNode, ThatAnswersNothingIsTakenForOneThatCapturesAndIsFree) {
  const auto state = askNode("/dev/null", true);
  EXPECT_TRUE(state.is_device);
  EXPECT_TRUE(state.captures);
  EXPECT_FALSE(state.busy);
  EXPECT_EQ(state.open_error, 0);
}

}  // namespace
