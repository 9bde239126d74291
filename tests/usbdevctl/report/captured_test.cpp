// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "report/captured.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::captureCommand;
using usbdevctl::readCaptured;

TEST(TheCaptureCommand, NamesNodeAndFolder) {
  EXPECT_EQ(captureCommand(2, ""), "sim capture /dev/video2 2>&1");
  EXPECT_EQ(captureCommand(2, "a b"), "sim capture /dev/video2 -- 'a b' 2>&1");
}

TEST(TheCaptureCommand, IsNotChangedByTheFoldersName) {
  EXPECT_EQ(captureCommand(0, "'; rm x; $(y)"), "sim capture /dev/video0 -- ''\\''; rm x; $(y)' 2>&1");
}

TEST(ACapture, IsItsFolder) {
  EXPECT_EQ(readCaptured("/home/ann/hd-webcam\n").folder, "/home/ann/hd-webcam");
  EXPECT_EQ(readCaptured("/home/ann/hd-webcam\n").wrong, "");
}

TEST(ACapture, ThatFailedIsItsReason) {
  EXPECT_EQ(readCaptured("sim: there is a camera 'x' already\n").wrong, "there is a camera 'x' already");
  EXPECT_EQ(readCaptured("sh: 1: sim: not found\n").wrong,
            "this host has no simulator that can capture a camera: sh: 1: sim: not found");
  EXPECT_EQ(readCaptured("").wrong, "this host has no simulator that can capture a camera");
  EXPECT_EQ(readCaptured("").folder, "");
}

}  // namespace
