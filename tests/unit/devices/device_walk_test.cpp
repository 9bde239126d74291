// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Vendor and product in the lines of a device walk.
#include "devices/device_walk.h"

#include <gtest/gtest.h>

#include <string>

namespace usbdev {
namespace {

std::string vendor(const std::string &id) { return "    ATTRS{idVendor}==\"" + id + "\"\n"; }
std::string product(const std::string &id) { return "    ATTRS{idProduct}==\"" + id + "\"\n"; }

class AWalk : public testing::Test {
 protected:
  void takeFirst(std::string line) { ids.takeFirst(line.data()); }
  void takeLatest(std::string line) { ids.takeLatest(line.data()); }

  ProductIds ids;
};

TEST_F(AWalk, IsCompleteWithVendorAndProduct) {
  EXPECT_FALSE(ids.areComplete());
  takeFirst(vendor("046d"));
  EXPECT_FALSE(ids.areComplete());
  takeFirst(product("0825"));
  EXPECT_TRUE(ids.areComplete());
  EXPECT_STREQ(ids.vendor, "046d");
  EXPECT_STREQ(ids.product, "0825");
}

TEST_F(AWalk, NamesTheDeviceFirstAndWhatCarriesItAfterwards) {
  takeFirst(vendor("046d"));
  takeFirst(vendor("1d6b"));
  EXPECT_STREQ(ids.vendor, "046d");
  takeLatest(vendor("1d6b"));
  EXPECT_STREQ(ids.vendor, "1d6b");
  takeFirst(product("0825"));
  takeFirst(product("0002"));
  EXPECT_STREQ(ids.product, "0825");
  takeLatest(product("0002"));
  EXPECT_STREQ(ids.product, "0002");
}

TEST_F(AWalk, NamesNothingInLinesOfOtherAttributes) {
  takeFirst("    ATTRS{product}==\"HD Webcam\"\n");
  takeFirst("    ATTRS{idVendor}\n");
  takeFirst("\n");
  takeLatest("  looking at parent device '/devices/usb1':\n");
  EXPECT_FALSE(ids.has_vendor);
  EXPECT_FALSE(ids.has_product);
}

TEST_F(AWalk, KeepsWhatItNamedThroughLinesThatNameNothing) {
  takeLatest(product("0825"));
  takeLatest("    ATTRS{bcdDevice}==\"0012\"\n");
  EXPECT_TRUE(ids.has_product);
  EXPECT_STREQ(ids.product, "0825");
}

TEST_F(AWalk, HasCodesOf15CharactersAtMost) {
  takeFirst(vendor(std::string(15, 'v')));
  takeFirst(product(std::string(16, 'p')));
  EXPECT_EQ(ids.vendor, std::string(15, 'v'));
  EXPECT_EQ(ids.product, std::string(15, 'p'));
}

}  // namespace
}  // namespace usbdev
