// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "configuration.h"
#include "power_cuts.h"
#include "private_host.h"
#include "processes.h"
#include "recording.h"

namespace {

using recording::Recording;
using torture::Cut;
using torture::Files;
using torture::Order;

const std::string kDisk = std::string(kWorkFolder) + "/disk";
const std::string kFile = kDisk + "/usbdev.conf";
constexpr std::size_t kLength = 3000;  // of the text in the file: some sectors

/// One text that fills several sectors, made of the number.
int save(int number) {
  Configuration writer(kWrite, kFile);
  writer.setNumber("ch0", "exists", number);
  writer.setText("ch0", "devname", std::string(kLength, static_cast<char>('a' + number)));
  if (writer.close() != xmlcfg::kDone) return 1;
  recording::noteStored("<exists>" + std::to_string(number) + "</exists>");
  return 0;
}

void saveOnce() { EXPECT_EQ(save(1), 0); }

void saveTwice() {
  EXPECT_EQ(save(1), 0);
  EXPECT_EQ(save(2), 0);
}

void saveInTwoProcesses() {
  const std::vector<pid_t> children = {startChild([] { return save(1); }), startChild([] { return save(2); })};
  for (pid_t child : children) EXPECT_EQ(waitForChild(child), 0);
}

struct Saves {
  const char *name;
  bool file_is_there;
  void (*make)();
};

std::ostream &operator<<(std::ostream &out, const Saves &saves) { return out << saves.name; }

constexpr Saves kSaves[] = {{"OneSave", true, saveOnce},
                            {"TheFirstSave", false, saveOnce},
                            {"TwoSaves", true, saveTwice},
                            {"SavesOfTwoProcesses", true, saveInTwoProcesses},
                            {"TheFirstSavesOfTwoProcesses", false, saveInTwoProcesses}};

Recording record(const Saves &saves) {
  if (saves.file_is_there) {
    EXPECT_EQ(save(0), 0);
  }
  recording::begin(kDisk);
  saves.make();
  return recording::end();
}

/// The configuration in the files, "" if there is none.
std::string configurationIn(const Files &files) {
  const auto found = files.find(kFile);
  return found == files.end() ? "" : found->second;
}

/// The configurations that there were, the oldest first.
std::vector<std::string> versionsOf(const Recording &recording) {
  std::vector<std::string> versions;
  for (std::size_t done = 0; done <= recording.operations.size(); ++done) {
    const std::string version = configurationIn(torture::filesAfter(recording, done));
    if (versions.empty() || versions.back() != version) versions.push_back(version);
  }
  return versions;
}

/// An old one or a new one, whole, and not older than any that was reported as stored.
bool mayBeLeft(const Cut &cut, const std::vector<std::string> &versions) {
  const auto left = std::find(versions.begin(), versions.end(), configurationIn(cut.files));
  return left != versions.end() && std::all_of(cut.stored.begin(), cut.stored.end(), [&](const std::string &mark) {
           return std::any_of(versions.begin(), left + 1,
                              [&](const std::string &version) { return version.find(mark) != std::string::npos; });
         });
}

class APowerCut : public testing::Test {
 protected:
  void SetUp() override {
    makeFolder(kDisk);
    mountMemory(kDisk);
  }
  void TearDown() override { umount2(kDisk.c_str(), MNT_DETACH); }

  /// A fresh handle reads what a whole file has, and the next save is stored and leaves nothing else.
  static void expectUsable(const Cut &cut) {
    torture::materialise(kDisk, cut.files);
    if (!configurationIn(cut.files).empty()) {
      Configuration reader(kRead, kFile);
      EXPECT_EQ(reader.openResult(), xmlcfg::kOpened);
    }
    EXPECT_EQ(save(3), 0);
    EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "exists"), 3);
    EXPECT_THAT(namesIn(kDisk), testing::ElementsAre("usbdev.conf"));
  }

  /// How many cuts break the rule in the order of a journal, which allows less than the weakest.
  static int broken(const Recording &recording) {
    const std::vector<std::string> versions = versionsOf(recording);
    int count = 0;
    torture::forEachCut(recording, Order::journal, torture::kSector,
                        [&](const Cut &cut) { count += mayBeLeft(cut, versions) ? 0 : 1; });
    return count;
  }
};

class DuringSaves : public APowerCut, public testing::WithParamInterface<Saves> {};

TEST_P(DuringSaves, LeavesAWholeConfigurationAndLosesNoneThatWasStored) {
  const Recording recording = record(GetParam());
  const std::vector<std::string> versions = versionsOf(recording);
  const int states = torture::forEachCut(recording, Order::weakest, torture::kSector, [&](const Cut &cut) {
    SCOPED_TRACE("after " + std::to_string(cut.operations) + " operations");
    EXPECT_TRUE(mayBeLeft(cut, versions));
    expectUsable(cut);
  });
  torture::reportCuts(GetParam().name, recording, torture::kSector, states);
  EXPECT_GT(states, 10);
}

INSTANTIATE_TEST_SUITE_P(APowerCut, DuringSaves, testing::ValuesIn(kSaves),
                         [](const auto &instance) { return std::string(instance.param.name); });

class ASaveWithoutAFlush : public APowerCut {
 protected:
  static int brokenWithoutFlushOf(const std::string &path) {
    return broken(torture::withoutFlushOf(path, record(kSaves[0])));
  }
};

TEST_F(ASaveWithoutAFlush, OfTheFileLeavesAMixture) { EXPECT_GT(brokenWithoutFlushOf(kDisk + "/.usbdev.conf.new"), 0); }

TEST_F(ASaveWithoutAFlush, OfTheFolderIsLost) { EXPECT_GT(brokenWithoutFlushOf(kDisk), 0); }

}  // namespace
