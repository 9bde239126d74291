// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "slot/slots.h"

#include <gtest/gtest.h>

#include "json_of.h"
#include "some_cameras.h"

namespace {

using usbdevctl::Slot;
using usbdevctl::slotFields;

Slot someSlot() {
  Slot slot;
  slot.device = attachedEntry(2);
  slot.settings.channel = 4;
  slot.settings.slot_switch = 1;
  slot.settings.stream_type = 2;
  slot.settings.vprofile = 2;
  slot.codecs = "0 1";
  return slot;
}

TEST(APort, IsShownWithItsDeviceAndWhatItOffers) {
  EXPECT_EQ(jsonOf(slotFields(someSlot())),
            R"({"schema":1,"slot":"3-1","channel":4,"device":"Cam","slot_switch":true,"stream":"video",)"
            R"("codecs":["h264","mjpeg"],"profile":2})"
            "\n");
}

TEST(APort, WithoutPictureAndProfileHasNoCodecAndNoProfile) {
  Slot slot = someSlot();
  slot.codecs = "";
  slot.settings.vprofile = -1;
  slot.settings.stream_type = 1;
  EXPECT_EQ(jsonOf(slotFields(slot)),
            R"({"schema":1,"slot":"3-1","channel":4,"device":"Cam","slot_switch":true,"stream":"audio",)"
            R"("codecs":[],"profile":null})"
            "\n");
}

}  // namespace
