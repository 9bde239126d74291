// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <memory>

#include "operation.h"
#include "platform/alsa_ctl.h"
#include "private_host.h"

namespace {

constexpr int kCard = 3;
constexpr int kAbsent = 1000000000;
constexpr char kName[] = "A Card With a Name of More Than Fifteen Characters";
const std::string kFolder = "/run/usbdev-sim/cards/card3/";

void makeCard() {
  makeEmptyFolder(kFolder);
  writeFile(kFolder + "name", std::string(kName) + "\n");
  for (const char *fact : {"entry_count", "channel_mode", "channel_count"}) writeFile(kFolder + fact, "1\n");
}

Operation describing() {
  const auto info = std::make_shared<_acard_info>();
  return {"DescribeASoundCard", makeCard,
          [=] {
            *info = {};
            return ac_get_Acard_info(kCard, info.get()) == 0;
          },
          [=](Result result) {
            const bool described = result.succeeded;
            EXPECT_STREQ(info->name, described ? kName : "");
            EXPECT_EQ(info->entry_count, described ? 1 : 0);
            EXPECT_EQ(info->channel_mode, described ? 1 : 0);
            EXPECT_EQ(info->channel_count, described ? 1 : 0);
          }};
}

Operation settingTheVolume() {
  return {"SetTheVolumeOfASoundCard", makeCard, [] { return ac_set_audio_volume(kCard, 70) == 0; },
          [](Result result) { EXPECT_TRUE(!result.succeeded || readFile(kFolder + "volume") == "70\n"); }};
}

Operation askingAnAbsentOne() {
  const auto nothing = [] {};
  const auto ask = [] {
    _acard_info info{};
    return ac_get_Acard_info(kAbsent, &info) == 0 || ac_set_audio_volume(kAbsent, 70) == 0;
  };
  return {"AskAnAbsentSoundCard", nothing, ask, [](Result result) { EXPECT_FALSE(result.succeeded); }, false};
}

}  // namespace

std::vector<Operation> soundCardOperations() { return {describing(), settingTheVolume(), askingAnAbsentOne()}; }
