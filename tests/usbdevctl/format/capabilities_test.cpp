// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "format/capabilities.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::Capabilities;
using usbdevctl::capabilitiesJson;
using usbdevctl::capabilitiesText;

TEST(Capabilities, AreTheStoredCodecsAndTheCamerasFormats) {
  Capabilities capabilities;
  capabilities.video = "0 1";
  capabilities.audio = "1";
  EXPECT_EQ(capabilitiesText(capabilities, false), "video       h264, mjpeg\naudio       aac\n");
  EXPECT_EQ(capabilitiesJson(capabilities).line(),
            R"({"schema":1,"video":["h264","mjpeg"],"audio":["aac"],"formats":[]})"
            "\n");
}

TEST(Capabilities, OfACameraWithoutSoundHaveNoAudioCodec) {
  Capabilities capabilities;
  capabilities.video = "1";
  capabilities.camera.count = 1;
  capabilities.camera.formats[0].codec = 1;
  EXPECT_EQ(capabilitiesText(capabilities, false),
            "video       mjpeg\n"
            "audio       none\n"
            "\n"
            "Format 0: MJPEG, as the camera sends it; frames per second\n"
            "SIZE\n");
}

}  // namespace
