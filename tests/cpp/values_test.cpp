// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Results, texts and the numbers of profiles.
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <usbdev/usbdev.hpp>

namespace usbdev {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(AResult, HasItsValueAndNoError) {
  const Result<int> result = 7;
  ASSERT_TRUE(result);
  EXPECT_EQ(*result, 7);
  EXPECT_EQ(result.error(), 0);
}

TEST(AResult, ThatFailedHasItsError) {
  const auto result = Result<int>::failure(-3);
  EXPECT_FALSE(result);
  EXPECT_EQ(result.error(), -3);
}

TEST(AResult, HoldsWhatCanOnlyBeMoved) {
  Result<std::unique_ptr<int>> result = std::make_unique<int>(7);
  EXPECT_EQ(*std::move(*result), 7);
}

TEST(AStatus, IsTrueForZeroOnly) {
  EXPECT_TRUE(Status(0));
  EXPECT_FALSE(Status(-1));
  EXPECT_FALSE(Status(1));
  EXPECT_EQ(Status(-2).error(), -2);
}

TEST(AField, IsReadUpToItsZero) {
  const char field[8] = {'a', 'b', '\0', 'c', '\0', '\0', '\0', '\0'};
  EXPECT_EQ(textOf(field), "ab");
}

TEST(AField, WithoutAZeroIsReadUpToItsEnd) {
  const char field[3] = {'a', 'b', 'c'};
  EXPECT_EQ(textOf(field), "abc");
}

TEST(AnArgument, EndsWithAZero) {
  const std::string longer = "3-1.2";
  EXPECT_STREQ(Argument<8>(std::string_view(longer).substr(0, 3)).get(), "3-1");
}

TEST(AnArgument, FillsItsMemoryButForTheZero) {
  EXPECT_STREQ(Argument<4>("abc").get(), "abc");
  EXPECT_EQ(Argument<4>("abcd").get(), nullptr);
}

TEST(AnArgument, WithAZeroInsideIsRefused) { EXPECT_EQ(Argument<8>(std::string_view("a\0b", 3)).get(), nullptr); }

TEST(ProfileNumbersOf, AListAreInItsOrder) { EXPECT_THAT(ProfileNumbers("2,0,3").span(), ElementsAre(2, 0, 3)); }

TEST(ProfileNumbersOf, AnEmptyListAreNone) { EXPECT_THAT(ProfileNumbers("").span(), IsEmpty()); }

TEST(ProfileNumbersOf, ALongListAreBounded) {
  EXPECT_THAT(ProfileNumbers("0,1,2,3,0,9").span(), ElementsAre(0, 1, 2, 3));
}

TEST(SizesAndRates, AreBoundedByTheirArrays) {
  static _usbfmt_des format = {};
  format.res_count = USBDEV_SIZES + 1;
  format.res[0].fps_count = -1;
  format.res[1].fps_count = USBDEV_RATES + 1;
  EXPECT_EQ(sizesOf(format).size(), static_cast<std::size_t>(USBDEV_SIZES));
  EXPECT_THAT(ratesOf(format.res[0]), IsEmpty());
  EXPECT_EQ(ratesOf(format.res[1]).size(), static_cast<std::size_t>(USBDEV_RATES));
}

TEST(ANotification, IsDecodedFromItsDatagram) {
  std::array<std::byte, Notification::kSize> datagram = {};
  EXPECT_FALSE(Notification::decode(datagram));
  std::memcpy(datagram.data(), Notification::kMagic.data(), Notification::kMagic.size());
  datagram[32] = std::byte{3};
  datagram[52] = std::byte{9};
  const auto notification = Notification::decode(datagram);
  ASSERT_TRUE(notification);
  EXPECT_EQ(notification->target, 9);
  EXPECT_EQ(notification->profile, 3);
}

TEST(ANotification, OfAnotherSizeIsRefused) {
  std::array<std::byte, Notification::kSize + 1> datagram = {};
  std::memcpy(datagram.data(), Notification::kMagic.data(), Notification::kMagic.size());
  EXPECT_FALSE(Notification::decode(datagram));
  EXPECT_FALSE(Notification::decode(std::span(datagram).first<15>()));
}

}  // namespace
}  // namespace usbdev
