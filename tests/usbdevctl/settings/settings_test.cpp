// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "settings/settings.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using usbdevctl::allSettings;
using usbdevctl::CameraSettings;
using usbdevctl::ProfileSettings;
using usbdevctl::readSettings;
using usbdevctl::Settings;
using usbdevctl::settingsText;

_streaminfo someStream() {
  _streaminfo record = {};
  record.stream_type = 2;
  record.vcodec = 1;
  record.width = 640;
  record.height = 480;
  record.framerate = 29.97F;
  record.flip = 1;
  record.volume = 7;
  return record;
}

Settings someSettings() {
  ProfileSettings profile;
  profile.profile = 3;
  profile.name = "Door \"1\"";
  profile.stream = allSettings(someStream());
  profile.share = {true, "pass & word"};
  return {CameraSettings{"3-1.2", "Cam", false, profile}, CameraSettings{"5-1", "Other", true, std::nullopt}};
}

std::string replaced(const std::string &from, const std::string &to) {
  std::string text = settingsText(someSettings());
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

std::string whatIsWrongWith(const std::string &text) {
  std::string wrong;
  EXPECT_FALSE(readSettings(text, wrong));
  return wrong;
}

TEST(ExportedSettings, AreReadBackAsTheyWere) {
  std::string wrong;
  const std::optional<Settings> read = readSettings(settingsText(someSettings()), wrong);
  ASSERT_TRUE(read) << wrong;
  ASSERT_EQ(read->size(), 2U);
  const CameraSettings &camera = read->front();
  EXPECT_EQ(camera.port, "3-1.2");
  EXPECT_EQ(camera.device, "Cam");
  EXPECT_FALSE(camera.port_on);
  EXPECT_EQ(camera.profile->profile, 3);
  EXPECT_EQ(camera.profile->name, "Door \"1\"");
  EXPECT_TRUE(camera.profile->stream == allSettings(someStream()));
  EXPECT_TRUE((camera.profile->share == usbdevctl::ShareSettings{true, "pass & word"}));
  EXPECT_FALSE((*read)[1].profile);
}

TEST(ExportedSettings, HoldOfAStreamWhatAppliesToIt) {
  _streaminfo record = someStream();
  EXPECT_EQ(settingsText(someSettings()).find("flip"), std::string::npos) << "MJPEG is not flipped";
  record.vcodec = 0;
  Settings settings = someSettings();
  settings[0].profile->stream = allSettings(record);
  EXPECT_THAT(settingsText(settings), HasSubstr("\"flip\": \"on\""));
  EXPECT_EQ(settingsText(settings).find("volume"), std::string::npos) << "there is no sound card";
  record.stream_type = 3;
  record.aenable = 1;
  settings[0].profile->stream = allSettings(record);
  EXPECT_THAT(settingsText(settings), HasSubstr("\"volume\": \"7\""));
}

TEST(ExportedSettings, AreReadWithTheirOwnSchemaOnly) {
  EXPECT_EQ(whatIsWrongWith(replaced("\"schema\": 1", "\"schema\": 2")), "settings.schema is not 1");
  EXPECT_EQ(whatIsWrongWith("{\"cameras\":[]}"), "settings.schema is missing");
}

TEST(ExportedSettings, AreRefusedWhereTheyAreNotWhatExportWrites) {
  EXPECT_EQ(whatIsWrongWith(""), "it is not JSON");
  EXPECT_EQ(whatIsWrongWith("[]"), "settings is not an object");
  EXPECT_EQ(whatIsWrongWith("{\"schema\":1,\"cameras\":1}"), "settings.cameras is not a list");
  EXPECT_EQ(whatIsWrongWith("{\"schema\":1,\"cameras\":[],\"more\":1}"), "settings.more is not known");
  EXPECT_EQ(whatIsWrongWith("{\"schema\":1,\"cameras\":[1]}"), "cameras[0] is not an object");
  EXPECT_EQ(whatIsWrongWith(replaced("\"slot_switch\": false", "\"slot_switch\": 0")),
            "cameras[0].slot_switch is neither true nor false");
  EXPECT_EQ(whatIsWrongWith(replaced("\"device\": \"Cam\"", "\"device\": null")), "cameras[0].device is not a text");
  EXPECT_EQ(whatIsWrongWith(replaced("\"device\": \"Cam\"", "\"device\": \"C\\u0000m\"")),
            "cameras[0].device has a zero byte");
  EXPECT_EQ(whatIsWrongWith(replaced("\"size\": \"640x480\"", "\"size\": \"640\"")),
            "cameras[0].profile.stream.size: 640 is not a picture size such as 1280x720");
  EXPECT_EQ(whatIsWrongWith(replaced("\"codec\": \"mjpeg\"", "\"codec\": \"h265\"")),
            "cameras[0].profile.stream.codec cannot be 'h265'");
}

TEST(ExportedSettings, AreRefusedBeyondTheLimits) {
  EXPECT_EQ(whatIsWrongWith(replaced("\"profile\": 3", "\"profile\": 4")), "cameras[0].profile.profile must be 0 to 3");
  EXPECT_EQ(whatIsWrongWith(replaced("\"profile\": 3", "\"profile\": -1")),
            "cameras[0].profile.profile must be 0 to 3");
  EXPECT_EQ(whatIsWrongWith(replaced("29.97", "0")), "cameras[0].profile.stream.fps is not a rate");
  EXPECT_EQ(whatIsWrongWith(replaced("29.97", "-5")), "cameras[0].profile.stream.fps is not a rate");
  std::string wrong;
  EXPECT_TRUE(readSettings(replaced("pass & word", std::string(31, 'p')), wrong)) << wrong;
  EXPECT_EQ(whatIsWrongWith(replaced("pass & word", std::string(32, 'p'))),
            "cameras[0].profile.share.password is longer than 31 bytes");
  EXPECT_TRUE(readSettings(replaced("3-1.2", std::string(127, '1')), wrong)) << wrong;
  EXPECT_EQ(whatIsWrongWith(replaced("3-1.2", std::string(128, '1'))), "cameras[0].slot is longer than 127 bytes");
  EXPECT_TRUE(readSettings(replaced("\"Cam\"", '"' + std::string(255, 'c') + '"'), wrong)) << wrong;
  EXPECT_EQ(whatIsWrongWith(replaced("\"Cam\"", '"' + std::string(256, 'c') + '"')),
            "cameras[0].device is longer than 255 bytes");
}

TEST(ExportedSettings, NameNoPortAndNoProfileTwice) {
  EXPECT_EQ(whatIsWrongWith(replaced("5-1", "3-1.2")), "port 3-1.2 is named twice");
  Settings settings = someSettings();
  settings[1].profile = settings[0].profile;
  EXPECT_EQ(whatIsWrongWith(settingsText(settings)), "profile 3 is named twice");
}

TEST(Rates, AreTheSameWhereTheyAreStoredAsTheSameText) {
  EXPECT_TRUE(usbdevctl::sameRate(14.985F, 14.98F));
  EXPECT_FALSE(usbdevctl::sameRate(14.98F, 14.99F));
}

}  // namespace
