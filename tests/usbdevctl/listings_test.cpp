// The listings of devices, of what is free, and of slots.
#include <gtest/gtest.h>

#include "device/devices.h"
#include "format/capabilities.h"
#include "json_of.h"
#include "profile/availability.h"
#include "slot/slots.h"
#include "text_fields.h"

namespace {

using usbdevctl::Availability;
using usbdevctl::availabilityJson;
using usbdevctl::availabilityText;
using usbdevctl::canAssign;
using usbdevctl::Capabilities;
using usbdevctl::capabilitiesJson;
using usbdevctl::capabilitiesText;
using usbdevctl::deviceFields;
using usbdevctl::Slot;
using usbdevctl::slotFields;

_usbdev_entry someDevice() {
  _usbdev_entry entry = {};
  entry.exists = 1;
  entry.profile = 2;
  entry.conflictch = -1;
  entry.slot_switch = 1;
  entry.stream_type = 3;
  entry.aenable = 1;
  entry.shrenable = 1;
  setField(entry.profilename, "Door");
  setField(entry.usbslot, "3-1");
  setField(entry.devname, "Cam");
  setField(entry.createtime, "2024-03-05 08:15:00");
  return entry;
}

TEST(TheDevices, AreThoseOfTheChannelsThatHaveOne) {
  std::array<_usbdev_entry, USBDEV_CHANNELS> entries = {};
  entries[4] = someDevice();
  const auto rows = deviceFields(entries);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(jsonOf(rows[0]),
            R"({"schema":1,"channel":4,"state":"plugged","slot":"3-1","device":"Cam","stream":"both","audio":true,)"
            R"("shared":true,"profile":2,"profile_name":"Door","slot_switch":true,"parked_behind":null,)"
            R"("supported":true,"created":"2024-03-05 08:15:00"})"
            "\n");
}

Availability someAvailability() {
  Availability available;
  available.profiles = "0,2";
  _availinfo &offered = available.channels[3];
  offered.stream_type = 2;
  setField(offered.usbslot, "3-1");
  setField(offered.devname, "Cam\033");
  return available;
}

TEST(WhatIsFree, IsProfilesAndTheDevicesThatCanBeGivenOne) {
  EXPECT_EQ(availabilityText(someAvailability(), false),
            "profiles    0,2\n"
            "\n"
            "CHANNEL  PORT  DEVICE   STREAM\n"
            "      3  3-1   Cam\\x1b  video\n");
  EXPECT_EQ(availabilityJson(someAvailability()).line(),
            R"({"schema":1,"profiles":[0,2],"devices":[{"channel":3,"slot":"3-1","device":"Cam\u001b",)"
            R"("stream":"video"}]})"
            "\n");
}

TEST(WhatIsFree, MayBeNothing) {
  EXPECT_EQ(availabilityText({}, false), "profiles    none\ndevices     none\n");
  EXPECT_EQ(availabilityJson({}).line(), "{\"schema\":1,\"profiles\":[],\"devices\":[]}\n");
}

TEST(AnAssignment, NeedsAProfileAndADevice) {
  EXPECT_TRUE(canAssign(someAvailability()));
  Availability without_profile = someAvailability();
  without_profile.profiles = "";
  EXPECT_FALSE(canAssign(without_profile));
  Availability without_device = someAvailability();
  without_device.channels[3].stream_type = 0;
  EXPECT_FALSE(canAssign(without_device));
}

Slot someSlot() {
  Slot slot;
  slot.device = someDevice();
  slot.settings.channel = 4;
  slot.settings.slot_switch = 1;
  slot.settings.stream_type = 2;
  slot.settings.vprofile = 2;
  slot.codecs = "0 1";
  return slot;
}

TEST(ASlot, IsShownWithItsDeviceAndWhatItOffers) {
  EXPECT_EQ(jsonOf(slotFields(someSlot())),
            R"({"schema":1,"slot":"3-1","channel":4,"device":"Cam","slot_switch":true,"stream":"video",)"
            R"("codecs":["h264","mjpeg"],"profile":2})"
            "\n");
}

TEST(ASlot, WithoutPictureAndProfileSaysSo) {
  Slot slot = someSlot();
  slot.codecs = "";
  slot.settings.vprofile = -1;
  slot.settings.stream_type = 1;
  EXPECT_EQ(jsonOf(slotFields(slot)),
            R"({"schema":1,"slot":"3-1","channel":4,"device":"Cam","slot_switch":true,"stream":"audio",)"
            R"("codecs":[],"profile":null})"
            "\n");
}

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
