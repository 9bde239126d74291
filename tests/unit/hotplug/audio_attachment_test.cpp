// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What is found about a sound card, which is stored only by a build with attachment switched on; and what every new
// device writes.
#include "hotplug/audio_attachment.h"

#include <gtest/gtest.h>
#include <platform/alsa_ctl.h>

#include "core/text.h"
#include "plain_config.h"

namespace {

struct PlainCard {
  int result = 0;
  _acard_info info = {1, 2, 2, "Microphone"};
};
PlainCard plain_card;

}  // namespace

int ac_get_Acard_info(int card, _acard_info *info) {
  *info = plain_card.info;
  return card == 3 ? plain_card.result : -1;
}

namespace usbdev {
namespace {

class ASoundCard : public testing::Test {
 protected:
  ASoundCard() { plain_card = {}; }

  void expectFound(const char *acap, bool stereo) {
    AudioFindings findings;
    probeAudioCard(3, findings);
    EXPECT_STREQ(findings.acap, acap);
    EXPECT_EQ(findings.stereo, stereo);
  }
};

TEST_F(ASoundCard, WithTwoChannelsIsStereo) { expectFound("1", true); }

TEST_F(ASoundCard, ThatCanDoMoreThanOneChannelIsBoth) {
  plain_card.info.channel_count = 1;
  expectFound("0 1", false);
}

TEST_F(ASoundCard, ThatIsMonoIsFoundAsUsual) {
  plain_card.info.channel_mode = 1;
  expectFound("0", false);
}

TEST_F(ASoundCard, WithoutACaptureEntryIsFoundAsUsual) {
  plain_card.info.entry_count = 0;
  expectFound("0", false);
}

TEST_F(ASoundCard, ThatTheHostDoesNotKnowIsFoundAsUsual) {
  plain_card.result = -1;
  expectFound("0", false);
}

TEST(ACardName, IsIgnoredIfItBeginsWithThatOfTheIgnoredMake) {
  EXPECT_TRUE(isIgnoredCardName("KAB"));
  EXPECT_TRUE(isIgnoredCardName("KAB Audio"));
  EXPECT_FALSE(isIgnoredCardName("KA"));
  EXPECT_FALSE(isIgnoredCardName("A KAB"));
}

class ANewDevice : public testing::Test {
 protected:
  void write() { writeNewDevice(opened(config).channel(2), device); }

  _usbdev_des device{};
  PlainConfig config{{"ch2/devname", "Before"}};
};

TEST_F(ANewDevice, WritesItsPortAndName) {
  copyText(device.usbslot, "3-1");
  copyText(device.devname, "Microphone");
  write();
  EXPECT_EQ(config["ch2/usbslot"], "3-1");
  EXPECT_EQ(config["ch2/devname"], "Microphone");
}

TEST_F(ANewDevice, ThatIsACardWithoutANameKeepsTheStoredOne) {
  write();
  EXPECT_EQ(config["ch2/devname"], "Before");
}

TEST_F(ANewDevice, ThatIsACameraWithoutANameRemovesTheStoredOne) {
  device.devtype = 1;
  write();
  EXPECT_EQ(config["ch2/devname"], "");
}

}  // namespace
}  // namespace usbdev
