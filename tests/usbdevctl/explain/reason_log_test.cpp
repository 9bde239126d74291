// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/reason_log.h"

#include <gtest/gtest.h>

#include "some_cameras.h"

namespace {

TEST(TheEventOfAReason, NamesTheCameraWithReasonAndCure) {
  const auto reason = usbdevctl::reasonFor(usbdevctl::Cause::busy, {{"programs", "motion (process 47)"}});
  EXPECT_EQ(reasonEvent(someCamera(2, "3-1", 0), reason),
            "Camera[3-1 USB Camera]: Another program uses it: motion (process 47). End that program.");
}

TEST(TheEventOfAReason, NamesACameraWithoutANameByItsPort) {
  usbdevctl::Camera camera = someCamera(2, "3-1", 0);
  camera.row.device.clear();
  EXPECT_EQ(
      reasonEvent(camera, usbdevctl::reasonFor(usbdevctl::Cause::no_capture_node)).rfind("Camera[3-1]: It has", 0), 0);
}

}  // namespace
