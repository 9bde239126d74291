// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The functions of the interface for C++: each passes on what it is given, and what the library returned.
#include <algorithm>
#include <string>
#include <usbdev/usbdev.hpp>

#include "hotplug/hotplug_fixture.h"
#include "hotplug/start_fixture.h"
#include "profiles/stream_fixture.h"
#include "stream_links.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using usbdev::NoStream;
using usbdev::NotViewable;

// The camera of channel 4 has profile 2.
class ACamera : public StreamTest {
 protected:
  ACamera() {
    channel().name("Front camera").set("createtime", "2024-03-05 08:15:00");
    host.commands.allowInsideCriticalSection();
    host.commands.prints(kUuidCommand, kUuid);
  }
  template <typename Call>
  auto quiet(Call call) {
    OutputCapture output;
    return call();
  }
};

TEST_F(ACamera, IsListedByItsChannelAndItsProfile) {
  const auto channels = usbdev::channels();
  ASSERT_TRUE(channels);
  EXPECT_EQ(std::count_if(channels->begin(), channels->end(), usbdev::hasDevice), 1);
  EXPECT_EQ(usbdev::textOf(channels->at(4).devname), "Front camera");
  const auto profiles = usbdev::profiles();
  ASSERT_TRUE(profiles);
  EXPECT_EQ(std::count_if(profiles->begin(), profiles->end(), usbdev::isServed), 1);
  EXPECT_EQ(usbdev::textOf(profiles->at(kProfile).usbslot), "3-1.2");
}

TEST_F(ACamera, WaitsForAChannelAndForNothingElse) {
  _usbdev_entry entry = {};
  entry.conflictch = 9;
  EXPECT_EQ(usbdev::waitsFor(entry), 9);
  for (const int mark : {-1, 10, 999}) {
    entry.conflictch = mark;
    EXPECT_EQ(usbdev::waitsFor(entry), std::nullopt);
  }
}

TEST_F(ACamera, IsFoundByItsProfileAndBack) {
  const auto channel = usbdev::channelOf(kProfile);
  ASSERT_TRUE(channel);
  EXPECT_EQ(*channel, 4);
  EXPECT_EQ(usbdev::profileOf(4), kProfile);
  EXPECT_EQ(usbdev::profileOf(5), std::nullopt);
  EXPECT_EQ(usbdev::channelOf(3).error(), -1);
}

TEST_F(ACamera, LeavesTheOtherProfilesUnassigned) {
  EXPECT_THAT(usbdev::unassignedProfiles()->span(), ElementsAre(0, 1, 3));
  EXPECT_THAT(usbdev::streamingProfiles()->span(), ElementsAre(kProfile));
}

TEST_F(ACamera, HasTheFormatsThatItLists) {
  usbdev::FormatTable table;
  const auto formats = usbdev::formats(kProfile, table);
  ASSERT_TRUE(formats);
  ASSERT_THAT(*formats, SizeIs(2));
  ASSERT_THAT(usbdev::sizesOf((*formats)[0]), SizeIs(2));
  EXPECT_THAT(usbdev::ratesOf(usbdev::sizesOf((*formats)[0])[0]), ElementsAre(30.0F, 25.0F, 20.0F, 15.0F));
  EXPECT_EQ(usbdev::formats(3, table).error(), -1);
}

TEST_F(ACamera, StreamsWhatIsSet) {
  const auto before = usbdev::streamInfo(kProfile);
  ASSERT_TRUE(before);
  EXPECT_EQ(before->channel, -1);
  _streaminfo wanted = *before;
  wanted.vcodec = kMjpeg;
  wanted.width = 1280;
  wanted.height = 720;
  wanted.framerate = 22;
  EXPECT_EQ(*usbdev::closestRate(kProfile, wanted), 20.0F);
  EXPECT_TRUE(usbdev::setStream(kProfile, wanted, *before));
  EXPECT_THAT(host.config.writes(), Contains("ch4/video/framerate=20.00"));
  wanted.width = 1;
  EXPECT_FALSE(usbdev::setStream(kProfile, wanted, *before));
  EXPECT_FALSE(usbdev::closestRate(kProfile, wanted));
  wanted.framerate = 0;
  EXPECT_FALSE(usbdev::closestRate(kProfile, wanted));
}

struct Reason {
  const char *key;
  int value;
  NoStream stream;
};

class ACameraWithoutAStream : public ACamera, public testing::WithParamInterface<Reason> {};

TEST_P(ACameraWithoutAStream, HasAReason) {
  channel().set(GetParam().key, GetParam().value);
  EXPECT_EQ(usbdev::streamInfo(kProfile).error(), GetParam().stream);
}

INSTANTIATE_TEST_SUITE_P(, ACameraWithoutAStream,
                         testing::Values(Reason{"profile", -1, NoStream::no_channel},
                                         Reason{"exists", 0, NoStream::not_attached},
                                         Reason{"conflictch", 3, NoStream::waits},
                                         Reason{"slot_switch", 0, NoStream::port_off}));

TEST_F(ACamera, IsRenamedSwitchedAndCleared) {
  EXPECT_TRUE(usbdev::rename(kProfile, std::string_view("Front door, left").substr(0, 10)));
  EXPECT_EQ(usbdev::textOf(usbdev::profileInfo(kProfile)->profilename), "Front door");
  EXPECT_TRUE(usbdev::switchPort("3-1.2", false));
  EXPECT_EQ(channel().get("slot_switch"), "0");
  EXPECT_TRUE(usbdev::clear(kProfile, "192.0.2.7"));
  EXPECT_EQ(channel().get("profile"), "-1");
  EXPECT_TRUE(usbdev::assign("3-1.2", 1));
  EXPECT_EQ(channel().get("profile"), "1");
  EXPECT_FALSE(usbdev::clear(3));
  EXPECT_FALSE(usbdev::assign("9-9", 1));
}

TEST_F(ACamera, IsNotTouchedByATextThatDoesNotFit) {
  const std::string too_long(256, 'x');
  EXPECT_FALSE(usbdev::assign(too_long, 1));
  EXPECT_FALSE(usbdev::rename(kProfile, too_long));
  EXPECT_FALSE(usbdev::switchPort(too_long, false));
  EXPECT_FALSE(usbdev::clear(kProfile, too_long));
  EXPECT_FALSE(usbdev::setShareLink(kProfile, true, too_long));
  EXPECT_FALSE(usbdev::openedProfile(too_long, too_long));
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(ACamera, IsNotTouchedByATextWithAZero) {
  const std::string_view with_zero("3-1.2\0", 6);
  EXPECT_FALSE(usbdev::assign(with_zero, 1));
  EXPECT_FALSE(usbdev::rename(kProfile, with_zero));
  EXPECT_FALSE(usbdev::switchPort(with_zero, false));
  EXPECT_FALSE(usbdev::clear(kProfile, with_zero));
  EXPECT_FALSE(usbdev::setShareLink(kProfile, true, with_zero));
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(ACamera, IsRenamedToTheLongestName) {
  const std::string longest(255, 'x');
  EXPECT_TRUE(usbdev::rename(kProfile, longest));
  EXPECT_EQ(channel().get("profilename"), longest);
}

TEST_F(ACamera, HasAShareLinkThatOpensIt) {
  const auto made = usbdev::setShareLink(kProfile, true, "secret");
  ASSERT_TRUE(made);
  channel().set("sharelink/ssid", "00004711").set("sharelink/token", "cafe");
  const auto stored = usbdev::shareLink(kProfile);
  EXPECT_EQ(usbdev::textOf(stored->shrpwd), "secret");
  EXPECT_EQ(*usbdev::openedProfile("00004711", "cafe"), kProfile);
  EXPECT_EQ(usbdev::openedProfile("00004711", "wrong").error(), NotViewable::wrong_token);
  EXPECT_EQ(usbdev::openedProfile("00004712", "cafe").error(), NotViewable::unknown_share_id);
  channel().set("sharelink/shrenable", 0);
  EXPECT_EQ(usbdev::openedProfile("00004711", "cafe").error(), NotViewable::not_shared);
}

TEST_F(ACamera, GetsAnotherShareLinkAndLosesIt) {
  const auto made = usbdev::setShareLink(kProfile, true);
  ASSERT_TRUE(made);
  EXPECT_EQ(made->pwdenable, 0);
  const auto renewed = usbdev::renewShareLink(kProfile);
  ASSERT_TRUE(renewed);
  EXPECT_EQ(usbdev::textOf(renewed->hash_string), kHash);
  EXPECT_TRUE(usbdev::setShareLink(kProfile, false));
  EXPECT_EQ(channel().get("sharelink/shrenable"), "0");
}

TEST_F(ACamera, IsNeededForAShareLinkAndForSettings) {
  EXPECT_EQ(usbdev::shareLink(3).error(), -1);
  EXPECT_EQ(usbdev::setShareLink(3, true).error(), -1);
  EXPECT_EQ(usbdev::renewShareLink(3).error(), -1);
  EXPECT_EQ(usbdev::profileInfo(3).error(), -1);
}

TEST_F(ACamera, IsAvailableWithoutAProfile) {
  channel().profile(-1);
  EXPECT_EQ(usbdev::textOf(usbdev::availableDevices()->at(4).usbslot), "3-1.2");
}

TEST_F(ACamera, HasNoListingsWithoutAConfiguration) {
  host.config.failReadOpens(-1);
  EXPECT_FALSE(quiet([] { return usbdev::channels(); }));
  EXPECT_FALSE(quiet([] { return usbdev::profiles(); }));
  EXPECT_FALSE(quiet([] { return usbdev::unassignedProfiles(); }));
  EXPECT_FALSE(quiet([] { return usbdev::streamingProfiles(); }));
  EXPECT_FALSE(quiet([] { return usbdev::availableDevices(); }));
}

class ADeviceEvent : public HotplugTest {};

TEST_F(ADeviceEvent, IsHandledWithTheChannelAndTheProfile) {
  known(3, 1, 1);
  const auto plugged = usbdev::handleEvent(device);
  ASSERT_TRUE(plugged);
  EXPECT_EQ(plugged->channel, 3);
  EXPECT_EQ(plugged->profile, 1);
  EXPECT_EQ(plugged->removed_node, std::nullopt);
  EXPECT_EQ(plugged->conflict.channel, -1);
}

TEST_F(ADeviceEvent, OfARemovedCameraHasItsNameAndNode) {
  known(3, 1, 1);
  device.plugged = 0;
  const auto removed = usbdev::handleEvent(device);
  ASSERT_TRUE(removed);
  EXPECT_EQ(removed->removed_name.view(), kName);
  EXPECT_EQ(removed->removed_node, 23);
}

TEST_F(ADeviceEvent, ThatNoChannelTakesFails) {
  isCard("Microphone");
  device.plugged = 0;
  EXPECT_EQ(usbdev::handleEvent(device).error(), -1);
}

TEST_F(AStart, TakesACameraThatWasNotThereBefore) {
  camera("3-1", 4, "New");
  EXPECT_TRUE(usbdev::startUp());
  EXPECT_EQ(key(0, "devname"), "New");
}

class AChangeNotification : public ContractTest {};

TEST_F(AChangeNotification, IsSentAsItIsDecoded) {
  usbdev::Notification sent;
  sent.header.fill('h');
  sent.profile = 2;
  sent.event = 5;
  EXPECT_TRUE(usbdev::notifyManager(sent));
  ASSERT_THAT(host.network.datagrams(), SizeIs(1));
  const std::string bytes = host.network.datagrams()[0].bytes;
  const auto received = usbdev::Notification::decode(std::as_bytes(std::span(bytes)));
  ASSERT_TRUE(received);
  EXPECT_EQ(received->header, sent.header);
  EXPECT_EQ(received->profile, 2);
  EXPECT_EQ(received->event, 5);
  EXPECT_EQ(received->target, -1);
}

TEST_F(AChangeNotification, ThatCannotBeSentFails) {
  host.network.failSockets();
  const OutputCapture output;
  EXPECT_FALSE(usbdev::notifyManager({}));
}

}  // namespace
}  // namespace contract
