// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The profiles' availability in a real file, in a host of the test's own.
#include <gtest/gtest.h>
#include <platform/xmlcfg.h>
#include <usbdev/usbdev.h>

#include "private_host.h"

namespace {

constexpr char kStateFile[] = "/etc/config/vl_pfstate.conf";

int available(const char *section) {
  void *config = nullptr;
  EXPECT_EQ(xmlcfg_open(0, kStateFile, &config), 1);
  const int value = xmlcfg_get_int(config, -7, "velmora", section, "available", nullptr);
  xmlcfg_close(config, 0);
  return value;
}

class TheProfileStateFile : public testing::Test {
 protected:
  void SetUp() override { makeEmptyFolder("/etc/config"); }
};

TEST_F(TheProfileStateFile, IsMadeWithItsFirstSection) {
  EXPECT_EQ(mn_update_pfstate(3, 1), 0);
  EXPECT_EQ(available("pf3"), 1);
  EXPECT_EQ(available("pf0"), -7);
}

TEST_F(TheProfileStateFile, KeepsTheOtherProfiles) {
  mn_update_pfstate(0, 5);
  mn_update_pfstate(3, 1);
  mn_update_pfstate(3, 0);
  EXPECT_EQ(available("pf0"), 5);
  EXPECT_EQ(available("pf3"), 0);
}

}  // namespace
