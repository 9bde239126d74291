// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The profiles that a host with one channel gives up.
#include <string>

#include "start_fixture.h"

namespace contract {
namespace {

using testing::IsEmpty;

class TheLaterProfiles : public AStart {
 protected:
  TheLaterProfiles() {
    for (int i = 0; i < 10; ++i) {
      records[i] = {};
      records[i].state = 1;
      records[i].profile = -1;
    }
  }

  _usbdev_update records[10];
};

TEST_F(TheLaterProfiles, AreClearedInTheChannelsThatAreConfigured) {
  configured(0, "1-0", "Z").profile(3);
  configured(1, "1-1", "A").profile(1);
  configured(2, "1-2", "B").profile(2);
  configured(3, "1-3", "C").profile(0);
  records[0].profile = 3;
  records[1].profile = 1;
  records[2].profile = 2;
  records[2].state = -1;
  records[3].profile = 0;
  EXPECT_EQ(rmNone1stProfile(records), 0);
  EXPECT_EQ(key(0, "profile"), "-1");
  EXPECT_EQ(key(1, "profile"), "-1");
  EXPECT_EQ(key(2, "profile"), "2");
  EXPECT_EQ(key(3, "profile"), "0");
}

TEST_F(TheLaterProfiles, AreClearedWithoutAskingForTheHost) {
  configured(1, "1-1", "A").profile(1);
  records[1].profile = 1;
  rmNone1stProfile(records);
  EXPECT_EQ(host.journal.count(std::string("system ") + kProcessorCommand), 0);
}

TEST_F(TheLaterProfiles, OfTheLastChannelAloneAreClearedAtStartUp) {
  host.limitToOneChannel();
  configured(9, "1-1", "A").profile(1);
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(9, "profile"), "-1");
}

TEST_F(TheLaterProfiles, OfNothingAreNone) {
  EXPECT_EQ(rmNone1stProfile(nullptr), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
