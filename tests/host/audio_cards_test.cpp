// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/alsa_ctl.h"
#include "private_host.h"

namespace {

const std::string kCard = "/run/usbdev-sim/cards/card3/";
constexpr int kAbsentCard = 31;

class ASimulatedCard : public testing::Test {
 protected:
  void SetUp() override { makeCard(kCard); }

  static void makeCard(const std::string &folder) {
    makeEmptyFolder(folder);
    writeFile(folder + "name", "HD Webcam Audio\n");
    writeFile(folder + "entry_count", "1\n");
    writeFile(folder + "channel_mode", "2\n");
    writeFile(folder + "channel_count", "1\n");
  }
};

TEST_F(ASimulatedCard, IsDescribedByItsFiles) {
  _acard_info info{};
  ASSERT_EQ(ac_get_Acard_info(3, &info), 0);
  EXPECT_STREQ(info.name, "HD Webcam Audio");
  EXPECT_EQ(info.entry_count, 1);
  EXPECT_EQ(info.channel_mode, 2);
  EXPECT_EQ(info.channel_count, 1);
}

TEST_F(ASimulatedCard, HasALongNameCut) {
  writeFile(kCard + "name", std::string(300, 'n'));
  _acard_info info{};
  ASSERT_EQ(ac_get_Acard_info(3, &info), 0);
  EXPECT_EQ(info.name, std::string(255, 'n'));
}

TEST_F(ASimulatedCard, WithAnIncompleteFolderFailsAndLeavesTheRecord) {
  for (const char *file : {"name", "entry_count", "channel_mode", "channel_count"}) {
    SetUp();
    writeFile(kCard + file, "");
    _acard_info info{};
    info.entry_count = 77;
    EXPECT_EQ(ac_get_Acard_info(3, &info), -1) << file;
    EXPECT_EQ(info.entry_count, 77) << file;
  }
}

TEST_F(ASimulatedCard, KeepsTheLastVolume) {
  EXPECT_EQ(ac_set_audio_volume(3, 70), 0);
  EXPECT_EQ(readFile(kCard + "volume"), "70\n");
  EXPECT_EQ(ac_set_audio_volume(3, -1), 0);
  EXPECT_EQ(readFile(kCard + "volume"), "-1\n");
}

TEST_F(ASimulatedCard, WhoseVolumeCannotBeStoredFails) {
  std::filesystem::create_symlink("/dev/full", kCard + "volume");
  EXPECT_EQ(ac_set_audio_volume(3, 70), -1);
}

TEST_F(ASimulatedCard, RefusesVolumesOutsideTheScale) {
  EXPECT_EQ(ac_set_audio_volume(3, 101), -1);
  EXPECT_EQ(ac_set_audio_volume(3, -2), -1);
  EXPECT_EQ(ac_set_audio_volume(3, 0), 0);
  EXPECT_EQ(ac_set_audio_volume(3, 100), 0);
}

TEST_F(ASimulatedCard, IsDescribedOnlyInARecord) { EXPECT_EQ(ac_get_Acard_info(3, nullptr), -1); }

TEST_F(ASimulatedCard, HasNoNegativeNumber) {
  const std::string folder = "/run/usbdev-sim/cards/card-1/";
  makeCard(folder);
  _acard_info info{};
  EXPECT_EQ(ac_get_Acard_info(-1, &info), -1);
  EXPECT_EQ(ac_set_audio_volume(-1, 50), -1);
  EXPECT_FALSE(std::filesystem::exists(folder + "volume"));
}

TEST(AnAbsentCard, FailsAndPrintsNothing) {
  _acard_info info{};
  testing::internal::CaptureStderr();
  EXPECT_EQ(ac_get_Acard_info(kAbsentCard, &info), -1);
  EXPECT_EQ(ac_set_audio_volume(kAbsentCard, 50), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
