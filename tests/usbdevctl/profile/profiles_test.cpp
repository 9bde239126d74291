// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/profiles.h"

#include <gtest/gtest.h>

#include "json_of.h"
#include "some_cameras.h"

namespace {

using usbdevctl::LinkState;
using usbdevctl::profileFields;
using usbdevctl::Profiles;
using usbdevctl::tableText;

class TheProfiles : public testing::Test {
 protected:
  TheProfiles() {
    for (auto &profile : profiles_) profile.entry.profile = -1;
    entry() = attachedEntry(1);
    setField(entry().devname, "Cam\n");
    setField(entry().hlspath, "a1b2");
    profiles_[1].link = {LinkState::good, "/apps/a1b2", "/apps/hls/channel2"};
  }

  /// The word of profile 1.
  std::string state() const { return profileFields(profiles_)[1].all()[5].cell.text; }

  _usbdev_entry &entry() { return profiles_[1].entry; }

  Profiles profiles_;
};

TEST_F(TheProfiles, AreFourRows) {
  EXPECT_EQ(tableText(profileFields(profiles_), false),
            "PROFILE  NAME  CAMERA   PORT  STREAM  STATE    LINK  LEADS TO\n"
            "      0  -     -        -     none    unbound  -     -\n"
            "      1  Door  Cam\\x0a  3-1   video   ready    a1b2  /apps/hls/channel2\n"
            "      2  -     -        -     none    unbound  -     -\n"
            "      3  -     -        -     none    unbound  -     -\n");
}

TEST_F(TheProfiles, ShowProgramsWhereTheLinkLeads) {
  EXPECT_EQ(jsonOf(profileFields(profiles_)[1]),
            R"({"schema":1,"profile":1,"name":"Door","camera":"Cam\n","slot":"3-1","stream":"video","state":"ready",)"
            R"("parked_behind":null,"link":{"path":"/apps/a1b2","target":"/apps/hls/channel2","state":"good"}})"
            "\n");
}

TEST_F(TheProfiles, WithoutADeviceHaveNeitherConflictNorLink) {
  EXPECT_EQ(jsonOf(profileFields(profiles_)[0]),
            R"({"schema":1,"profile":0,"name":"","camera":"","slot":"","stream":"none","state":"unbound",)"
            R"("parked_behind":null,"link":null})"
            "\n");
}

TEST_F(TheProfiles, ShowWhyTheyCannotStream) {
  EXPECT_EQ(state(), "ready");
  entry().slot_switch = 0;
  EXPECT_EQ(state(), "switched off");
  entry().conflictch = 0;
  EXPECT_EQ(state(), "parked");
  entry().conflictch = 999;
  EXPECT_EQ(state(), "unsupported");
  entry().exists = 0;
  EXPECT_EQ(state(), "unplugged");
  entry().exists = -1;
  EXPECT_EQ(state(), "displaced");
}

}  // namespace
