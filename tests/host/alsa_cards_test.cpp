// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Real sound cards: what the ALSA library knows about them, and how their volume is set.
#include <gtest/gtest.h>

#include <string>

#include "plain_alsa.h"
#include "platform/alsa_ctl.h"
#include "private_host.h"

namespace {

/// Whatever happens, everything that was opened is closed again.
class ACard : public testing::Test {
 protected:
  ACard() { plain_alsa = {}; }
  void TearDown() override { EXPECT_EQ(plain_alsa.open, 0); }

  int describe() { return ac_get_Acard_info(plain_alsa.card, &info); }
  void expectVolume(int volume, long level, int on) {
    EXPECT_EQ(ac_set_audio_volume(3, volume), 0);
    EXPECT_EQ(plain_alsa.elements[0].level, level);
    EXPECT_EQ(plain_alsa.elements[0].on, on);
  }

  _acard_info info{77, 77, 77, "untouched"};
};

TEST_F(ACard, IsDescribedByItsNameAndItsFirstCaptureDevice) {
  ASSERT_EQ(describe(), 0);
  EXPECT_STREQ(info.name, "Desk Microphone");
  EXPECT_EQ(info.entry_count, 2);
  EXPECT_EQ(info.channel_mode, 2);
  EXPECT_EQ(info.channel_count, 1);
  EXPECT_EQ(plain_alsa.recorded_from, "hw:3,1");
}

TEST_F(ACard, RecordsWithItsDevice0) {
  plain_alsa.devices = {true};
  ASSERT_EQ(describe(), 0);
  EXPECT_EQ(info.entry_count, 1);
  EXPECT_EQ(plain_alsa.recorded_from, "hw:3,0");
}

TEST_F(ACard, ThatRecordsOneChannelAtMostIsMono) {
  plain_alsa.most_channels = 1;
  ASSERT_EQ(describe(), 0);
  EXPECT_EQ(info.channel_mode, 1);
  EXPECT_EQ(info.channel_count, 1);
}

TEST_F(ACard, ThatRecordsManyChannelsIsStereo) {
  plain_alsa.fewest_channels = 2;
  plain_alsa.most_channels = 8;
  ASSERT_EQ(describe(), 0);
  EXPECT_EQ(info.channel_mode, 2);
  EXPECT_EQ(info.channel_count, 2);
}

TEST_F(ACard, WithoutACaptureDeviceHasNoChannels) {
  plain_alsa.devices = {false};
  ASSERT_EQ(describe(), 0);
  EXPECT_EQ(info.entry_count, 0);
  EXPECT_EQ(info.channel_mode, 0);
  EXPECT_EQ(info.channel_count, 0);
  EXPECT_EQ(plain_alsa.recorded_from, "");
}

TEST_F(ACard, WhoseDevicesCannotBeListedHasNone) {
  plain_alsa.failing = "snd_ctl_pcm_next_device";
  ASSERT_EQ(describe(), 0);
  EXPECT_EQ(info.entry_count, 0);
}

TEST_F(ACard, WithALongNameHasItCut) {
  plain_alsa.name = std::string(300, 'n');
  ASSERT_EQ(describe(), 0);
  EXPECT_EQ(info.name, std::string(255, 'n'));
}

TEST_F(ACard, WithNumber0IsACard) {
  plain_alsa.card = 0;
  EXPECT_EQ(describe(), 0);
  EXPECT_EQ(ac_set_audio_volume(0, 50), 0);
}

TEST_F(ACard, IsSetToItsShareOfTheRange) {
  expectVolume(50, 5000, 1);
  expectVolume(100, 10000, 1);
  expectVolume(0, 0, 1);
  plain_alsa.elements[0].low = -400;
  plain_alsa.elements[0].high = 600;
  expectVolume(25, -150, 1);
}

TEST_F(ACard, IsSwitchedOffForSilence) {
  plain_alsa.elements[0].low = 100;
  expectVolume(-1, 100, 0);
}

TEST_F(ACard, WithoutASwitchHasItsVolumeSet) {
  plain_alsa.elements[0].has_switch = false;
  expectVolume(50, 5000, -7);
}

TEST_F(ACard, HasEveryVolumeSetThatItHas) {
  plain_alsa.elements.resize(3);
  plain_alsa.elements[0].has_volume = false;
  EXPECT_EQ(ac_set_audio_volume(3, 50), 0);
  EXPECT_EQ(plain_alsa.elements[0].level, -7);
  EXPECT_EQ(plain_alsa.elements[1].level, 5000);
  EXPECT_EQ(plain_alsa.elements[2].level, 5000);
}

TEST_F(ACard, WithoutAVolumeFails) {
  plain_alsa.elements[0].has_volume = false;
  EXPECT_EQ(ac_set_audio_volume(3, 50), -1);
  plain_alsa.elements.clear();
  EXPECT_EQ(ac_set_audio_volume(3, 50), -1);
}

TEST_F(ACard, ThatIsMissingIsNotOpened) {
  plain_alsa.card = 4;
  EXPECT_EQ(ac_get_Acard_info(3, &info), -1);
  EXPECT_EQ(ac_set_audio_volume(3, 50), -1);
  EXPECT_EQ(plain_alsa.elements[0].level, -7);
}

TEST_F(ACard, IsNotHiddenByAFileInThePlaceOfASimulatedOne) {
  makeFolder("/run/usbdev-sim/cards");
  writeFile("/run/usbdev-sim/cards/card3", "not a folder");
  EXPECT_EQ(describe(), 0);
  EXPECT_EQ(ac_set_audio_volume(3, 50), 0);
}

class AQuestion : public ACard, public testing::WithParamInterface<const char *> {};

TEST_P(AQuestion, ThatACardDoesNotAnswerLeavesTheRecord) {
  plain_alsa.failing = GetParam();
  EXPECT_EQ(describe(), -1);
  EXPECT_EQ(info.entry_count, 77);
  EXPECT_STREQ(info.name, "untouched");
}

INSTANTIATE_TEST_SUITE_P(OfItsDescription, AQuestion,
                         testing::Values("snd_ctl_open", "snd_ctl_card_info", "snd_pcm_open", "snd_pcm_hw_params_any",
                                         "snd_pcm_hw_params_get_channels_min", "snd_pcm_hw_params_get_channels_max"));

class AStep : public ACard, public testing::WithParamInterface<const char *> {};

TEST_P(AStep, ThatFailsIsReported) {
  plain_alsa.failing = GetParam();
  EXPECT_EQ(ac_set_audio_volume(3, 50), -1);
}

INSTANTIATE_TEST_SUITE_P(OfItsVolume, AStep,
                         testing::Values("snd_mixer_open", "snd_mixer_attach", "snd_mixer_selem_register",
                                         "snd_mixer_load", "snd_mixer_selem_get_capture_volume_range",
                                         "snd_mixer_selem_set_capture_volume_all",
                                         "snd_mixer_selem_set_capture_switch_all"));

}  // namespace
