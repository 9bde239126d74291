// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/notification.h"

#include <gmock/gmock.h>

#include <cstring>

namespace {

using testing::HasSubstr;
using usbdevctl::decodeNotification;
using usbdevctl::notificationJson;
using usbdevctl::notificationText;

// A datagram is 16 bytes of magic, 16 of request header and six numbers: profile, video node, audio node, flag, event,
// target.
std::string datagramOf(const std::string &header, const std::array<std::int32_t, 6> &numbers) {
  std::string datagram = "ORDA_VLM2_CFCG_N" + header;
  datagram.append(reinterpret_cast<const char *>(numbers.data()), sizeof numbers);
  return datagram;
}

const std::string kNoHeader(16, '\0');

std::string textOf(const std::string &datagram) {
  std::string reason;
  const auto notification = decodeNotification(datagram, reason);
  return notification ? notificationText(*notification) : "refused: " + reason;
}

std::string jsonOfDatagram(const std::string &datagram) {
  std::string reason;
  const auto notification = decodeNotification(datagram, reason);
  return notification ? notificationJson(*notification).line() : "refused: " + reason;
}

TEST(ANotification, OfAPluggedCameraIsDecoded) {
  EXPECT_EQ(textOf(datagramOf(kNoHeader, {1, 0, 1, 0, 6, 1})),
            "event 6 (plugged)  profile 1  video 0  audio 1  flag 0  target 1  request none\n");
}

TEST(ANotification, OfARemovedCameraShowsNoneForMinusOne) {
  EXPECT_EQ(textOf(datagramOf(kNoHeader, {2, -1, -1, 0, 7, -1})),
            "event 7 (removed)  profile 2  video none  audio none  flag 0  target none  request none\n");
}

TEST(ANotification, OfAChangeThatIsEncodedIsDecodedAsItWas) {
  const usbdevctl::Notification sent = {{'a', 'b'}, 1, 2, 3, 4, 0, 5};
  const std::string datagram = usbdevctl::encodeNotification(sent);
  EXPECT_EQ(datagram, datagramOf("ab" + std::string(14, '\0'), {1, 2, 3, 4, 0, 5}));
  EXPECT_EQ(textOf(datagram).substr(0, 56), "event 0 (changed)  profile 1  video 2  audio 3  flag 4  ");
}

TEST(ANotification, OfAClearedProfileNamesTheClient) {
  const std::string header = std::string(4, '\0') + "\xc0\xa8\x01\x05" + std::string(8, '\0');
  EXPECT_EQ(textOf(datagramOf(header, {0, 4, -1, 0, 3, -1})),
            "event 3  profile 0  video 4  audio none  flag 0  target none  request 192.168.1.5\n");
}

TEST(ANotification, WithAnotherHeaderShowsItsBytes) {
  EXPECT_EQ(textOf(datagramOf("0123456789abcde\xff", {0, 4, 2, 1, 5, 0})),
            "event 5  profile 0  video 4  audio 2  flag 1  target 0  request 303132333435363738396162636465ff\n");
}

TEST(ANotification, WhoseHeaderHoldsMoreThanAnAddressNamesNoClient) {
  const std::string behind = std::string(4, '\0') + "\xc0\xa8\x01\x05" + std::string(7, '\0') + "\x01";
  EXPECT_THAT(textOf(datagramOf(behind, {})), HasSubstr("request 00000000c0a801050000000000000001\n"));
  const std::string before = "\x01" + std::string(3, '\0') + "\xc0\xa8\x01\x05" + std::string(8, '\0');
  EXPECT_THAT(textOf(datagramOf(before, {})), HasSubstr("request 01000000c0a801050000000000000000\n"));
}

TEST(ANotification, IsOneLineOfJson) {
  const std::string header = std::string(4, '\0') + "\x0a\x01\x02\x03" + std::string(8, '\0');
  EXPECT_EQ(jsonOfDatagram(datagramOf(header, {3, 4, -1, 0, 5, -1})),
            "{\"schema\":1,\"event\":5,\"profile\":3,\"video_node\":4,\"audio_node\":-1,\"flag\":0,\"target\":-1,"
            "\"header\":\"000000000a0102030000000000000000\",\"client\":\"10.1.2.3\"}\n");
}

TEST(ADatagram, OfAnotherSizeIsRefused) {
  const std::string good = datagramOf(kNoHeader, {});
  EXPECT_EQ(textOf(good.substr(0, 55)), "refused: it has 55 bytes, not 56");
  EXPECT_EQ(textOf(good + "x"), "refused: it has 57 bytes, not 56");
  EXPECT_EQ(textOf(""), "refused: it has 0 bytes, not 56");
}

TEST(ADatagram, WithAnotherMagicIsRefused) {
  std::string datagram = datagramOf(kNoHeader, {});
  datagram[15] = 'M';
  EXPECT_EQ(textOf(datagram), "refused: it does not begin with ORDA_VLM2_CFCG_N");
}

}  // namespace
