// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "report/redaction.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::addSerialNumbers;
using usbdevctl::Redaction;
using usbdevctl::withoutSerialNumbers;

constexpr char kWalk[] =
    "  looking at device '/devices/pci0000:00/0000:00:14.0/usb1/1-1':\n"
    "    ATTRS{serial}==\"5C3D1A6F\"\n"
    "    ATTRS{serial}==\"7\"\n"
    "    ATTRS{serial}==\"0000:00:14.0\"\n"
    "    ATTRS{product}==\"Cam 5C3D1A6F\"\n";

TEST(ARedaction, TakesEverySecretOutWhereverItIs) {
  Redaction secrets;
  secrets.add("abc");
  secrets.add("12345678");
  EXPECT_EQ(secrets.apply("abcabc 12345678x"), "[removed][removed] [removed]x");
}

TEST(ARedaction, TakesALongSecretOutBeforeAShortOneInIt) {
  Redaction secrets;
  secrets.add("abc");
  secrets.add("xabcx");
  EXPECT_EQ(secrets.apply("xabcx abc"), "[removed] [removed]");
}

TEST(ARedaction, DoesNotChangeTextsWithoutASecret) {
  Redaction secrets;
  secrets.add("");
  EXPECT_EQ(secrets.apply("text"), "text");
}

TEST(ASerialNumber, IsTakenOutOfAWalkHoweverShort) {
  const std::string walk = withoutSerialNumbers(kWalk);
  EXPECT_NE(walk.find("    ATTRS{serial}==\"[removed]\"\n    ATTRS{serial}==\"[removed]\"\n"), std::string::npos);
}

TEST(ASerialNumber, IsNotTheAddressOfAHostController) {
  EXPECT_NE(withoutSerialNumbers(kWalk).find("ATTRS{serial}==\"0000:00:14.0\"\n"), std::string::npos);
}

TEST(ASerialNumber, OfFourCharactersIsASecretInOtherTexts) {
  Redaction secrets;
  addSerialNumbers(secrets, kWalk);
  EXPECT_EQ(secrets.apply("Cam 5C3D1A6F 7 0000:00:14.0"), "Cam [removed] 7 0000:00:14.0");
  addSerialNumbers(secrets, "ATTR{serial}==\"abcd\"\nATTR{serial}==\"xyz\"\n");
  EXPECT_EQ(secrets.apply("abcd xyz"), "[removed] xyz");
}

}  // namespace
