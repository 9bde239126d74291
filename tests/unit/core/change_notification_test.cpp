// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a notification holds before it is sent.
#include "core/change_notification.h"

#include <gtest/gtest.h>

#include <string>

namespace usbdev {
namespace {

TEST(ANotification, NamesItsProfileAndEventAndNothingElse) {
  const ChangeNotification notification(2, EventCode::report_all);
  EXPECT_EQ(std::string(notification.magic, sizeof notification.magic), "ORDA_VLM2_CFCG_N");
  for (const unsigned char byte : notification.request_header) EXPECT_EQ(byte, 0);
  EXPECT_EQ(notification.profile, 2);
  EXPECT_EQ(static_cast<int>(notification.event), 5);
  EXPECT_EQ(notification.vnode, -1);
  EXPECT_EQ(notification.anode, -1);
  EXPECT_EQ(notification.flag, 0);
  EXPECT_EQ(notification.target, -1);
}

TEST(ANotification, OfACameraThatStartsHasTheMarksOfThatEvent) {
  const ChangeNotification notification = ChangeNotification::ofCamera(3, true);
  EXPECT_EQ(static_cast<int>(notification.event), 6);
  EXPECT_EQ(notification.profile, 3);
  EXPECT_EQ(notification.vnode, 0);
  EXPECT_EQ(notification.anode, 1);
  EXPECT_EQ(notification.target, 3);
}

TEST(ANotification, OfACameraThatEndsHasNoNodesAndNoTarget) {
  const ChangeNotification notification = ChangeNotification::ofCamera(3, false);
  EXPECT_EQ(static_cast<int>(notification.event), 7);
  EXPECT_EQ(notification.profile, 3);
  EXPECT_EQ(notification.vnode, -1);
  EXPECT_EQ(notification.anode, -1);
  EXPECT_EQ(notification.target, -1);
}

TEST(ANotification, CarriesAnyCodeOfACaller) {
  EXPECT_EQ(static_cast<int>(ChangeNotification(0, EventCode{-12345}).event), -12345);
}

}  // namespace
}  // namespace usbdev
