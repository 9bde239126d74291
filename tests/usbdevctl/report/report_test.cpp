// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "report/report.h"

#include <gmock/gmock.h>

#include "text_fields.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using usbdevctl::Camera;
using usbdevctl::isSecretKey;
using usbdevctl::LinkState;
using usbdevctl::Report;
using usbdevctl::reportJson;
using usbdevctl::reportText;
using usbdevctl::withoutSecrets;

const char *const kSecrets[] = {"pass & word", "12345678", "t0ken", "ha5h", "l1nk", "5C3D1A6F"};

// A host on which every text holds every secret.
Report indiscreetReport() {
  std::string all = "text";
  for (const char *secret : kSecrets) all += std::string(" ") + secret;
  Report report;
  report.host = {{"model", all}};
  usbdevctl::ChannelRow row;
  row.state = usbdevctl::ChannelState::plugged;
  row.slot = row.device = row.profile_name = row.created = all;
  row.profile = 0;
  report.channels[3] = row;
  _usbdev_entry &entry = report.profiles[0].entry;
  entry.exists = 1;
  setField(entry.profilename, all);
  setField(entry.usbslot, all);
  setField(entry.devname, all);
  setField(entry.hlspath, "l1nk");
  report.profiles[0].link = {LinkState::nowhere, "/apps/l1nk", all};
  report.events = {{1, 0, 0, all}};
  report.cameras = {{Camera{3, row}, all, "ATTRS{serial}==\"5C3D1A6F\"\n" + all}};
  report.configuration = {{3,
                           {{"devname", all},
                            {"hlspath", kSecrets[4]},
                            {"sharelink/shrpwd", kSecrets[0]},
                            {"sharelink/ssid", kSecrets[1]},
                            {"sharelink/token", kSecrets[2]},
                            {"sharelink/hash_string", kSecrets[3]}}}};
  return report;
}

TEST(AReport, HoldsNoSecretWhereverItWas) {
  const Report report = withoutSecrets(indiscreetReport());
  for (const char *secret : kSecrets) {
    EXPECT_THAT(reportText(report), Not(HasSubstr(secret)));
    EXPECT_THAT(reportJson(report).text(), Not(HasSubstr(secret)));
  }
}

TEST(AReport, HoldsEverythingElse) {
  const Report report = withoutSecrets(indiscreetReport());
  const std::string text = reportText(report);
  for (const char *part : {"== host\n", "== channels\n", "== profiles\n", "== events\n", "== channel 3  text",
                           "v4l2-ctl --list-formats-ext\n  text [removed]", "udevadm info --attribute-walk\n",
                           "== stored for channel 3\n", "sharelink/token", "text [removed]"}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
  const std::string json = reportJson(report).line();
  for (const char *part : {"\"host\":{\"model\":\"text [removed]", "\"channels\":[", "\"profiles\":[", "\"events\":[",
                           "\"v4l2_ctl\":\"text", "\"udevadm\":", "\"configuration\":{\"ch3\":{\"devname\":\"text"}) {
    EXPECT_THAT(json, HasSubstr(part));
  }
}

TEST(AReport, ShowsNoControlCharacterOfATool) {
  Report report;
  report.cameras = {{Camera{}, "\x1b[2J\n", ""}};
  EXPECT_THAT(reportText(report), HasSubstr("  \\x1b[2J\n"));
}

TEST(ASecretKey, IsALinksNameOrBelongsToAShareLink) {
  EXPECT_TRUE(isSecretKey("hlspath"));
  EXPECT_TRUE(isSecretKey("sharelink/shrpwd"));
  EXPECT_FALSE(isSecretKey("sharelink/shrenable"));
  EXPECT_FALSE(isSecretKey("vtag"));
}

}  // namespace
