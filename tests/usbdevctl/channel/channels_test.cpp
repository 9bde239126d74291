// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/channels.h"

#include <gmock/gmock.h>

#include "some_cameras.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using usbdevctl::channelFields;
using usbdevctl::ChannelListings;
using usbdevctl::ChannelRow;
using usbdevctl::ChannelRows;
using usbdevctl::ChannelState;
using usbdevctl::describeChannels;
using usbdevctl::listJson;
using usbdevctl::streamLackText;
using usbdevctl::streams;
using usbdevctl::tableText;

constexpr int kNone = -1;
constexpr int kUnsupported = 999;

// Answers of the listings about a host whose channels have never had a device.
class TheListings : public testing::Test {
 protected:
  void SetUp() override {
    listings_.profile_ids.fill(kNone);
    for (_usbdev_entry &profile : listings_.profiles) profile.profile = kNone;
    for (_availinfo &record : listings_.available) offer(record, "", kNone);
    for (_streaminfo &slot : listings_.slots) slot.channel = kNone;
  }

  static void offer(_availinfo &record, const char *slot, int vnode) {
    record.width = 1280;
    record.height = 720;
    record.vnode = vnode;
    setField(record.usbslot, slot);
    setField(record.devname, *slot ? "Cam" : "");
  }

  static void fill(_usbdev_entry &entry, const char *slot, int exists, int profile) {
    setField(entry.usbslot, slot);
    setField(entry.devname, "Cam");
    entry.exists = exists;
    entry.profile = profile;
    entry.slot_switch = 1;
    entry.conflictch = kNone;
  }

  // A channel with a device and a profile, or parked, is not offered by the availability query.
  _usbdev_entry &attach(int channel, int profile) {
    const auto index = static_cast<std::size_t>(channel);
    fill(listings_.devices[index], "3-1", 1, profile);
    listings_.profile_ids[index] = profile;
    listings_.available[index] = {};
    listings_.slots[index].channel = channel;
    listings_.slots[index].vnode = 4;
    return listings_.devices[index];
  }

  ChannelRow row(std::size_t channel) const { return describeChannels(listings_)[channel]; }

  ChannelListings listings_;
};

TEST_F(TheListings, OfAHostWithoutDevicesGiveTenFreeChannels) {
  for (const ChannelRow &row : describeChannels(listings_)) {
    EXPECT_EQ(row.state, ChannelState::free);
    EXPECT_EQ(row.profile, std::nullopt);
    EXPECT_EQ(row.video_node, std::nullopt);
    EXPECT_EQ(row.slot_switch, std::nullopt);
  }
}

TEST_F(TheListings, GiveAnAttachedCameraWithProfileInFull) {
  _usbdev_entry &entry = attach(2, 1);
  setField(entry.profilename, "Door");
  setField(entry.createtime, "2024-03-05 08:15:00");
  EXPECT_EQ(row(2).state, ChannelState::plugged);
  EXPECT_EQ(row(2).slot, "3-1");
  EXPECT_EQ(row(2).device, "Cam");
  EXPECT_EQ(row(2).video_node, 4);
  EXPECT_EQ(row(2).profile, 1);
  EXPECT_EQ(row(2).profile_name, "Door");
  EXPECT_EQ(row(2).slot_switch, true);
  EXPECT_EQ(row(2).created, "2024-03-05 08:15:00");
}

TEST_F(TheListings, GiveProfile0ToNoChannelWhoseDeviceRowIsZero) { EXPECT_EQ(row(5).profile, std::nullopt); }

TEST_F(TheListings, GiveAnUnpluggedChannelThatKeepsItsProfileFromTheProfileTable) {
  fill(listings_.profiles[3], "4-1", 0, 3);
  listings_.profile_ids[6] = 3;
  listings_.available[6] = {};
  EXPECT_EQ(row(6).state, ChannelState::unplugged);
  EXPECT_EQ(row(6).slot, "4-1");
  EXPECT_EQ(row(6).profile, 3);
  EXPECT_EQ(row(6).video_node, std::nullopt);
}

TEST_F(TheListings, GiveAnUnpluggedChannelWithoutProfileFromTheAvailabilityQuery) {
  offer(listings_.available[1], "3-2", kNone);
  EXPECT_EQ(row(1).state, ChannelState::unplugged);
  EXPECT_EQ(row(1).slot, "3-2");
  EXPECT_EQ(row(1).device, "Cam");
}

TEST_F(TheListings, GiveTheNodeOfANewCameraEvenWhenTheDisplacedOneAnswersForTheirPort) {
  attach(0, kNone);
  offer(listings_.available[0], "3-1", 0);
  listings_.slots[0].channel = 3;
  listings_.slots[0].vnode = 9;
  EXPECT_EQ(row(0).video_node, 0);
}

TEST_F(TheListings, GiveNoNodeThatAnotherChannelAnswersFor) {
  attach(0, 1);
  listings_.slots[0].channel = 3;
  EXPECT_EQ(row(0).video_node, std::nullopt);
}

TEST_F(TheListings, GiveADisplacedChannelWithoutTheNodeItHad) {
  attach(3, 1).exists = -1;
  EXPECT_EQ(row(3).state, ChannelState::displaced);
  EXPECT_EQ(row(3).video_node, std::nullopt);
}

TEST_F(TheListings, GiveAWaitingChannelWithTheOneItWaitsFor) {
  attach(4, kNone).conflictch = 0;
  EXPECT_EQ(row(4).parked_behind, 0);
  EXPECT_TRUE(row(4).supported);
}

TEST_F(TheListings, GiveAnUnsupportedDeviceAsWaitingForNone) {
  attach(4, kNone).conflictch = kUnsupported;
  EXPECT_FALSE(row(4).supported);
  EXPECT_EQ(row(4).parked_behind, std::nullopt);
}

TEST_F(TheListings, DistinguishASwitchThatIsOffFromOneThatWasNeverStored) {
  attach(0, kNone).slot_switch = 0;
  attach(1, kNone).slot_switch = -1;
  EXPECT_EQ(row(0).slot_switch, false);
  EXPECT_EQ(row(1).slot_switch, std::nullopt);
}

TEST_F(TheListings, NeverLookUpAStoredProfileThatDoesNotExist) {
  listings_.profile_ids[9] = 77;
  listings_.available[9] = {};
  EXPECT_EQ(row(9).profile, 77);
  EXPECT_EQ(row(9).state, ChannelState::free);
}

ChannelRow pluggedRow() {
  ChannelRow row;
  row.state = ChannelState::plugged;
  row.slot = "3-1.2";
  row.device = "Cam\033";
  row.video_node = 0;
  row.profile = 1;
  row.profile_name = "Door";
  row.slot_switch = true;
  row.created = "2024-03-05 08:15:00";
  return row;
}

ChannelRow parkedRow() {
  ChannelRow row = pluggedRow();
  row.profile = std::nullopt;
  row.slot_switch = false;
  row.parked_behind = 0;
  row.created = "";
  return row;
}

std::vector<std::string> firstLines(const std::string &text, std::size_t count) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; lines.size() < count && at < text.size();) {
    const std::size_t end = text.find('\n', at);
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

TEST(TheChannelTable, HasALineForEachChannel) {
  ChannelRows rows;
  rows[0] = pluggedRow();
  rows[1] = parkedRow();
  const std::string text = tableText(channelFields(rows), false);
  const std::vector<std::string> expected = {
      "CHANNEL  STATE    PORT   DEVICE   VIDEO  PROFILE  SWITCH  CONFLICT     CREATED",
      "      0  plugged  3-1.2  Cam\\x1b      0  1 Door   on      -            2024-03-05 08:15:00",
      "      1  plugged  3-1.2  Cam\\x1b      0  -        off     waits for 0  -",
      "      2  free     -      -            -  -        -       -            -"};
  EXPECT_EQ(firstLines(text, 4), expected);
  EXPECT_EQ(firstLines(text, 99).size(), 11U);
}

TEST(TheChannelTable, MarksAnUnsupportedDevice) {
  ChannelRows rows;
  rows[0].supported = false;
  EXPECT_THAT(tableText(channelFields(rows), true), HasSubstr("\033[31munsupported\033[0m"));
}

TEST(TheChannelTable, HasAFewWordsForWhatTheMachineHasAgainstACamera) {
  ChannelRows rows;
  rows[0] = pluggedRow();
  rows[0].trouble = usbdevctl::reasonFor(usbdevctl::Cause::bandwidth_alone);
  rows[1] = parkedRow();
  rows[1].trouble = rows[0].trouble;
  const std::string text = tableText(channelFields(rows), false);
  EXPECT_THAT(text, HasSubstr("on      no bandwidth  2024"));
  EXPECT_THAT(text, HasSubstr("off     waits for 0   -")) << "what the library knows is shown first";
  EXPECT_THAT(listJson(channelFields(rows)).line(), HasSubstr(R"("reason":"bandwidth")"));
}

TEST(TheChannelsJson, HasEveryFieldOfEachChannel) {
  ChannelRows rows;
  rows[0] = parkedRow();
  EXPECT_THAT(
      listJson(channelFields(rows)).line(),
      StartsWith(
          R"([{"channel":0,"state":"plugged","slot":"3-1.2",)"
          R"("device":"Cam\u001b","video_node":0,"profile":null,"profile_name":"Door",)"
          R"("slot_switch":false,"parked_behind":0,"supported":true,"reason":"waits","created":""},{"channel":1,)"));
}

TEST(TheChannelsJson, HasNullForWhatAFreeChannelLacks) {
  EXPECT_THAT(
      listJson(channelFields(ChannelRows())).line(),
      EndsWith(
          R"({"channel":9,"state":"free","slot":"","device":"","video_node":null,"profile":null,)"
          R"("profile_name":"","slot_switch":null,"parked_behind":null,"supported":true,"reason":null,"created":""}])"
          "\n"));
}

TEST(ACamera, HasItsPlaceAndANodeOnlyIfItIsAttached) {
  ChannelRow row = attachedRow("3-1", 2);
  row.video_node = 4;
  EXPECT_EQ(placeOf(row).port, "3-1");
  EXPECT_EQ(placeOf(row).node, 4);
  EXPECT_TRUE(placeOf(row).streams);
  row.state = ChannelState::unplugged;
  EXPECT_EQ(placeOf(row).node, std::nullopt);
  EXPECT_FALSE(placeOf(row).attached);
  EXPECT_FALSE(placeOf(row).streams);
}

TEST(ACamera, StreamsUnlessSomethingPreventsIt) {
  ChannelRow row = attachedRow("3-1", 2);
  EXPECT_TRUE(streams(row));
  row.slot_switch.reset();  // a switch that is not stored counts as on
  EXPECT_TRUE(streams(row));
  row.profile.reset();
  EXPECT_FALSE(streams(row));
}

TEST(ACamera, NamesTheFirstThingThatPreventsItFromStreaming) {
  ChannelRow row = attachedRow("3-1", 2);
  EXPECT_EQ(streamLackText(row), "");
  row.slot_switch = false;
  EXPECT_EQ(streamLackText(row), "its port is switched off");
  row.parked_behind = 4;
  EXPECT_EQ(streamLackText(row), "it waits for channel 4");
  row.supported = false;
  EXPECT_EQ(streamLackText(row), "it is not supported");
  row.state = ChannelState::displaced;
  EXPECT_EQ(streamLackText(row), "it is displaced");
}

}  // namespace
