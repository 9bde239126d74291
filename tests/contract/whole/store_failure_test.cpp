// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A disk that takes no more: what every change does when its write handle closes with a failure.
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "contract_test.h"
#include "stream_links.h"

namespace contract {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

constexpr int kDiskFull = -28;
const std::string kRemovalOfNewLink = removing(kHash);

// Channel 3 at port 1-1 serves profile 2 and is shared; channel 4 at the same root port waits for it; the camera of
// channel 5 has no profile.
class AFullDisk : public ContractTest {
 protected:
  AFullDisk() {
    host.commands.allowInsideCriticalSection();
    host.commands.prints(kUuidCommand, kUuid);
    attached(3, "1-1.1", 1).profile(2).profileName("Door").set("hlspath", "live");
    host.channel(3).set("sharelink/shrenable", 1).set("sharelink/ssid", "12345678");
    host.channel(3).set("sharelink/hash_string", "shared").set("sharelink/token", "token");
    attached(4, "1-1.2", 2).profile(1).slotSwitch(1).conflict(3).createTime("2024-03-05 07:08:09");
    attached(5, "3-1", 4);
    before = host.config.values();
  }

  HostChannel attached(int channel, const std::string &slot, int vnode) {
    const Listing listing = Listing().format("MJPG").size(640, 480).rate("30.000").rate("15.000");
    host.camera(vnode, slot).listing(listing.text());
    return host.channel(channel).attached(slot, vnode).name("HD Webcam").set("video/cap", "1");
  }

  // What was done after the store had failed.
  Lines aftermath() const {
    Lines lines = host.journal.lines();
    const auto failed = std::find(lines.begin(), lines.end(), "close failed");
    return failed == lines.end() ? lines : Lines(failed + 1, lines.end());
  }

  FakeConfig::Values before;
};

struct Change {
  const char *name;
  std::function<int()> make;
  bool makes_link = false;
};

int hotplug(int plugged, const char *slot) {
  _usbdev_des device{};
  device.devtype = 1;
  device.node = 1;
  device.plugged = plugged;
  strcpy(device.usbslot, slot);
  strcpy(device.devname, "HD Webcam");
  int profile = 0;
  int vnode = 0;
  char name[256];
  _usbdev_conflict conflict;
  return mn_set_usbdev_hotplug(&device, &profile, name, &vnode, &conflict);
}

int setStream(int event) {
  _streaminfo stream{};
  stream.vcodec = 1;
  stream.width = 640;
  stream.height = 480;
  stream.framerate = 30;
  _streaminfo changed = stream;
  changed.framerate = 15;
  return vl_set_usbchn_stream(2, &changed, &stream, event);
}

int share(int enabled) {
  ShareLinkInfo info{};
  info.profile = 2;
  info.shrenable = enabled;
  strcpy(info.shrpwd, "new password");
  return vl_set_share_link(&info);
}

std::vector<_usbdev_update> records(int vnode, const char *live_link) {
  std::vector<_usbdev_update> list(10);
  for (_usbdev_update &record : list) record.state = -1;
  list[3].state = 1;
  list[3].vnode = vnode;
  list[3].anode = -1;
  list[3].profile = 2;
  strcpy(list[3].hlspath, live_link);
  return list;
}

const std::vector<Change> &changes() {
  static const std::vector<Change> all = {
      {"a camera that returns", [] { return hotplug(1, "1-1.1"); }},
      {"a new camera", [] { return hotplug(1, "5-1"); }},
      {"a removal", [] { return hotplug(0, "1-1.1"); }},
      {"the codec check",
       [] {
         Host::current()->channel(5).set("video/cap", "0");
         return check_halvane();
       }},
      {"an update of the records", [] { return update_usbinfo(records(1, "live").data()); }},
      {"an update that names a link", [] { return update_usbinfo(records(1, "").data()); }, true},
      {"a stream-parameter state", [] { return mn_set_usbchn_sps(2, 1); }},
      {"an assignment",
       [] {
         char slot[] = "3-1";
         return vl_set_usbchn_profile(slot, 0);
       },
       true},
      {"a clearing", [] { return vl_clear_usbchn_profile(2, "192.0.2.1", 0); }},
      {"a new name", [] { return vl_set_profile_channelname(2, "Garden", 0); }},
      {"a stream setting", [] { return setStream(0); }},
      {"a stream reported whole", [] { return setStream(5); }},
      {"a slot that is switched off", [] { return vl_set_usbslot_switch("1-1.1", "disable", nullptr); }},
      {"a slot that is switched on", [] { return vl_set_usbslot_switch("1-1.1", "enable", nullptr); }},
      {"a share link", [] { return share(1); }, true},
      {"the end of a share link", [] { return share(0); }},
      {"a renewed share link",
       [] {
         ShareLinkInfo info{};
         info.profile = 2;
         return vl_renew_share_link(&info);
       },
       true},
      {"a hand-over",
       [] {
         int profile = 0;
         return updateConflict(3, -1, 0, &profile);
       }},
      {"a hand-over on a host of one channel",
       [] {
         Host::current()->limitToOneChannel();
         int profile = 0;
         return updateConflict(3, -1, 0, &profile);
       }},
      {"a recomputation",
       [] {
         int states[10] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
         return syncConflict(states);
       }},
  };
  return all;
}

class EveryChange : public AFullDisk, public testing::WithParamInterface<size_t> {
 protected:
  const Change &change() const { return changes()[GetParam()]; }
};

TEST_P(EveryChange, FailsWithAMessageWhenItCannotBeStored) {
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  EXPECT_EQ(change().make(), -1);
  EXPECT_EQ(errors.text(), closeFailure(kDiskFull));
}

TEST_P(EveryChange, LeavesTheFileAsItWasWhenItCannotBeStored) {
  if (std::string(change().name) == "the codec check") before["ch5/video/cap"] = "0";
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  change().make();
  EXPECT_EQ(host.config.values(), before);
}

TEST_P(EveryChange, IsFollowedByNothingButTheRemovalOfItsNewLinkWhenItCannotBeStored) {
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  change().make();
  EXPECT_EQ(aftermath(), change().makes_link ? Lines{kRemovalOfNewLink} : Lines{});
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_P(EveryChange, FailsWithAnyCloseThatIsNegative) {
  host.config.failWriteCloseNumber(1, -1);
  OutputCapture errors;
  EXPECT_EQ(change().make(), -1);
  EXPECT_EQ(errors.text(), closeFailure(-1));
}

// The cases above could not fail if a change never came to its write pass.
TEST_P(EveryChange, SucceedsWithAnyCloseThatIsNotNegative) {
  host.config.failWriteCloseNumber(1, 0);
  OutputCapture errors;
  EXPECT_GE(change().make(), 0);
  EXPECT_EQ(errors.text(), "");
  EXPECT_THAT(host.journal.lines(), IsSupersetOf({"open w", "close"}));
  EXPECT_THAT(host.journal.lines(), Not(Contains(kRemovalOfNewLink)));
}

TEST_P(EveryChange, IgnoresTheCloseOfAFileThatItOnlyRead) {
  host.config.failReadCloses(kDiskFull);
  OutputCapture errors;
  EXPECT_GE(change().make(), 0);
  EXPECT_EQ(errors.text(), "");
}

std::string nameOf(const testing::TestParamInfo<size_t> &change) {
  std::string name = changes()[change.param].name;
  for (char &c : name) c = isalnum(c) != 0 ? c : '_';
  return name;
}
INSTANTIATE_TEST_SUITE_P(OnAFullDisk, EveryChange, testing::Range<size_t>(0, changes().size()), nameOf);

TEST_F(AFullDisk, MakesAProfileStateFail) {
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  EXPECT_EQ(mn_update_pfstate(1, 1), -1);
  EXPECT_EQ(errors.text(), "close:[/etc/config/vl_pfstate.conf] failed, ret: -28\n");
  EXPECT_THAT(host.config.values(kProfileStateFile), IsEmpty());
}

TEST_F(AFullDisk, DoesNotTakeBackTheEventsOfAStreamChange) {
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  setStream(0);
  EXPECT_THAT(host.journal.only({"log"}), ElementsAre("log 0 Modified Channel 3 FPS: 15.00"));
}

TEST_F(AFullDisk, LeavesTheCallersShareRecordWithoutTheNewIdentifiers) {
  ShareLinkInfo info{};
  info.profile = 2;
  strcpy(info.token, "as it was");
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  EXPECT_EQ(vl_renew_share_link(&info), -1);
  EXPECT_STREQ(info.token, "as it was");
  EXPECT_STREQ(info.ssid, "");
  EXPECT_STREQ(info.hash_string, "");
}

TEST_F(AFullDisk, LeavesARecordWithoutTheLinkNameThatItCouldNotStore) {
  auto list = records(1, "");
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  EXPECT_EQ(update_usbinfo(list.data()), -1);
  EXPECT_STREQ(list[3].hlspath, "");
}

TEST_F(AFullDisk, KeepsTheLinksOfNamesThatAreStoredAlready) {
  auto list = records(1, "live");
  strcpy(list[3].hash, "shared");
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  update_usbinfo(list.data());
  EXPECT_THAT(host.journal.only({"exec"}), Each(Not(StartsWith("exec /bin/rm"))));
}

// --- operations of several write passes ---

TEST_F(AFullDisk, EndsAHandOverBeforeTheOthersWaitAgain) {
  host.config.failWriteCloseNumber(2, kDiskFull);
  OutputCapture errors;
  int profile = 0;
  EXPECT_EQ(updateConflict(3, -1, 0, &profile), -1);
  EXPECT_EQ(host.channel(3).get("conflictch"), "4");  // the first pass stands
  EXPECT_EQ(errors.text(), closeFailure(kDiskFull));
}

TEST_F(AFullDisk, EndsARecomputationWithTheMarksOfItsFirstPass) {
  int states[10] = {-1, -1, -1, -1, 0, -1, -1, -1, -1, -1};
  host.config.failWriteCloseNumber(2, kDiskFull);
  OutputCapture errors;
  EXPECT_EQ(syncConflict(states), -1);
  EXPECT_EQ(host.channel(4).get("conflictch"), "-1");
  EXPECT_EQ(errors.text(), closeFailure(kDiskFull));
}

TEST_F(AFullDisk, DoesNotStopTheNotificationOfARemovalWhenOnlyTheHandOverFails) {
  host.config.failWriteCloseNumber(2, kDiskFull);
  OutputCapture errors;
  EXPECT_EQ(hotplug(0, "1-1.1"), 3);
  EXPECT_EQ(host.channel(3).get("exists"), "0");
  EXPECT_EQ(host.network.datagrams().size(), 1U);
}

TEST_F(AFullDisk, DoesNotStopTheLaterStepsOfASynchronisation) {
  host.config.failWriteCloseNumber(1, kDiskFull);
  OutputCapture errors;
  EXPECT_EQ(mn_sync_usbdev_conf(), 1);
  EXPECT_EQ(errors.text(), closeFailure(kDiskFull));
  EXPECT_EQ(host.journal.count("open w"), 3);  // the records, and the two passes of the conflicts
}

}  // namespace
}  // namespace contract
