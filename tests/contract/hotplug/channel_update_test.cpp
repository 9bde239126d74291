// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What an update of the channels writes and links, from records that the scans have filled.
#include <climits>
#include <cstring>
#include <string>

#include "start_fixture.h"
#include "stream_links.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// Channel 2 is the one with a device, a camera on node 4 in port 3-1; no channel is configured yet.
class AnUpdate : public AStart {
 protected:
  AnUpdate() {
    for (_usbdev_update &record : channels) {
      std::memset(&record, 0, sizeof record);
      record.vnode = record.anode = record.state = record.slot_switch = record.profile = -1;
    }
    host.commands.prints(kUuidCommand, kUuid);
  }

  _usbdev_update &withCamera(int profile) {
    channels[2].state = 1;
    channels[2].vnode = 4;
    channels[2].profile = profile;
    std::strcpy(channels[2].usbslot, "3-1");
    return channels[2];
  }
  int update() { return update_usbinfo(channels); }
  Lines links() { return host.journal.only({"exec"}); }

  _usbdev_update channels[10];
};

TEST_F(AnUpdate, OfACameraWithoutAProfileWritesExactlyThis) {
  withCamera(-1);
  EXPECT_EQ(update(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch2/video/vnode=4", "ch2/audio/anode=-1", "ch2/exists=1",
                                                "ch2/video/fetype=", "ch2/video/ldspoutput=0", "ch2/slot_switch=1"));
  EXPECT_THAT(links(), IsEmpty());
  EXPECT_THAT(host.journal.commands(), Not(Contains(kUuidCommand)));
}

TEST_F(AnUpdate, WritesTheTypeOfTheCameraInItsPort) {
  withCamera(-1);
  host.camera(4, "3-1").ids("046d", "0825");
  host.files.write("/etc/config/.usbFECam.dat", "046d:0825=3\n");
  update();
  EXPECT_EQ(key(2, "video/fetype"), "3");
}

TEST_F(AnUpdate, OfACameraOnNodeZeroIsOfACamera) {
  withCamera(-1).vnode = 0;
  update();
  EXPECT_EQ(key(2, "exists"), "1");
  EXPECT_EQ(key(2, "video/ldspoutput"), "0");
}

TEST_F(AnUpdate, OfOnlyASoundCardAsksForNoTypeAndMakesNoLink) {
  channels[2].state = channels[2].profile = 1;
  channels[2].anode = 0;
  std::strcpy(channels[2].hlspath, "live");
  EXPECT_EQ(update(), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch2/video/vnode=-1", "ch2/audio/anode=0", "ch2/exists=1", "ch2/slot_switch=1"));
  EXPECT_THAT(host.journal.commands(), IsEmpty());
  EXPECT_THAT(links(), IsEmpty());
}

TEST_F(AnUpdate, OfAnAbsentDeviceWithAProfileWritesExactlyThis) {
  channels[2].state = channels[2].profile = 1;
  update();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch2/video/vnode=-1", "ch2/audio/anode=-1", "ch2/exists=0",
                                                "ch2/conflictch=-1", "ch2/slot_switch=1"));
}

TEST_F(AnUpdate, OfAnAbsentDeviceWithoutAProfileWritesExactlyThis) {
  channels[2].state = 0;
  update();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch2/video/vnode=-1", "ch2/audio/anode=-1", "ch2/exists=0",
                                                "ch2/conflictch=-1", "ch2/profile=-1", "ch2/createtime=",
                                                "ch2/profilename=", "ch2/hlspath=", "ch2/slot_switch=1"));
}

TEST_F(AnUpdate, LinksEachProfileToItsDirectory) {
  std::strcpy(withCamera(0).hlspath, "x");
  channels[9] = channels[2];
  channels[9].profile = 3;
  update();
  EXPECT_THAT(links(), ElementsAre(linking(1, "x"), linking(4, "x")));
  EXPECT_THAT(host.config.writes(), Not(Contains("ch2/hlspath=x"))) << "a name that is there stays unwritten";
}

TEST_F(AnUpdate, OfTheLargestNumberAsAProfileCountsItsDirectoryWithoutOverflow) {
  std::strcpy(withCamera(INT_MAX).hlspath, "x");
  update();
  EXPECT_THAT(links(), ElementsAre(linking(INT_MIN, "x")));
}

TEST_F(AnUpdate, WithoutALinkNameStoresANewOneInFileAndRecord) {
  withCamera(2);
  update();
  EXPECT_EQ(key(2, "hlspath"), kHash);
  EXPECT_STREQ(channels[2].hlspath, kHash);
  EXPECT_THAT(links(), ElementsAre(linking(3, kHash)));
}

TEST_F(AnUpdate, WhoseLiveLinkNameCannotBeMadeMakesOnlyTheShareLink) {
  host.commands.cannotStart(kUuidCommand);
  std::strcpy(withCamera(2).hash, "shared");
  EXPECT_EQ(update(), 0);
  EXPECT_EQ(key(2, "hlspath"), "");
  EXPECT_THAT(links(), ElementsAre(linking(3, "shared")));
}

TEST_F(AnUpdate, CarriesNoSwitchOverFromAChannelThatIsSkipped) {
  channels[0].slot_switch = 0;
  withCamera(-1);
  update();
  EXPECT_THAT(host.config.writes(), Not(Contains("ch0/slot_switch=0")));
  EXPECT_EQ(key(2, "slot_switch"), "1");
}

TEST_F(AnUpdate, CarriesTheLastSwitchOverToAChannelWithAnyOtherThanZeroAndOne) {
  for (const int odd : {2, -1, -2, 2147483647}) {
    for (const int last : {0, 1}) {
      channels[0].state = channels[1].state = channels[2].state = 1;
      channels[0].slot_switch = last;
      channels[1].slot_switch = channels[2].slot_switch = odd;
      EXPECT_EQ(update(), 0);
      EXPECT_EQ(key(1, "slot_switch"), std::to_string(last)) << odd;
      EXPECT_EQ(key(2, "slot_switch"), std::to_string(last)) << odd;
    }
  }
}

TEST_F(AnUpdate, IsOnePassOverTheFile) {
  withCamera(2);
  update();
  EXPECT_THAT(host.journal.only({"open", "close"}), ElementsAre("open w", "close"));
}

TEST_F(AnUpdate, ThatCannotBeStoredTakesBackTheLinksOfEveryChannel) {
  withCamera(2);
  channels[0] = channels[9] = channels[2];
  host.config.failWriteCloseNumber(1, -1);
  const OutputCapture output;
  EXPECT_EQ(update(), -1);
  for (const int i : {0, 2, 9}) EXPECT_STREQ(channels[i].hlspath, "");
}

TEST_F(AnUpdate, OfAFileThatCannotBeWrittenRunsNothing) {
  withCamera(2);
  host.config.failWriteOpens(-6);
  OutputCapture output;
  EXPECT_EQ(update(), -1);
  EXPECT_EQ(output.text(), openFailure(-6));
  EXPECT_THAT(host.journal.lines(), ElementsAre("open w failed"));
}

TEST_F(AnUpdate, OfNothingFails) {
  EXPECT_EQ(update_usbinfo(nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
