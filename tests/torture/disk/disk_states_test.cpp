// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "configuration_change.h"
#include "disk_changes.h"
#include "failing.h"
#include "private_host.h"
#include "thoroughness.h"

namespace {

using torture::DiskChange;

constexpr char kBefore[] = "<velmora><ch0><exists>0</exists></ch0></velmora>";
constexpr int kFewestCalls = 20;
// Before which calls of a save the disk changes.
#ifdef USBDEV_FEWER_CASES
const int kOneOf = torture::times(3, 1);
#else
constexpr int kOneOf = 1;
#endif

/// Takes the privileges from the thread, or returns them: without them permissions hold for root too.
void setPrivileged(bool privileged) {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[2]{};
  ASSERT_EQ(syscall(SYS_capget, &header, data), 0);
  for (auto &half : data) half.effective = privileged ? half.permitted : 0;
  ASSERT_EQ(syscall(SYS_capset, &header, data), 0);
}

struct Situation {
  DiskChange change;
  const char *before;
  bool privileged;
};

/// The number of the file, 0 where none is.
ino_t inode(const std::string &path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

/// One save, on whose disk something changes before its number-th call.
class Save {
 public:
  Save(const Situation &situation, int number) : situation_(situation), number_(number) {
    torture::insertDisk();
    save_ = std::make_unique<ConfigurationChange>(situation.before);
    home_ = open(torture::kFolder.c_str(), O_PATH | O_CLOEXEC);
    home_path_ = "/proc/self/fd/" + std::to_string(home_);
    descriptors_ = namesIn("/proc/self/fd").size();
  }
  Save(const Save &) = delete;
  Save &operator=(const Save &) = delete;
  ~Save() {
    close(home_);
    torture::removeDisk();
  }

  /// Returns whether it has so many calls.
  bool run() {
    failing::doBefore(number_, [this] {
      setPrivileged(true);
      stored_before_ = newIsSomewhere();
      situation_.change.make();
      if (!situation_.change.put_into_folder.empty())
        others_file_ = inode(home_path_ + "/" + situation_.change.put_into_folder);
      setPrivileged(situation_.privileged);
    });
    setPrivileged(situation_.privileged);
    save_->run();
    setPrivileged(true);
    const bool reached = failing::stop();
    torture::repairDisk();
    return reached;
  }

  void expectRules() const {
    if (!displacedAtTheLastMoment()) {
      EXPECT_EQ(save_->stored(), stored_before_ || newIsSomewhere());
    }
    expectWholeFile();
    expectNothingElse();
    if (std::filesystem::exists(torture::kOthersFile)) {
      EXPECT_EQ(readFile(torture::kOthersFile), torture::kOthersText);
    }
    EXPECT_EQ(namesIn("/proc/self/fd").size(), descriptors_);
    expectUnlocked();
  }

  /// Whatever the disk went through, once it is whole again the next save is stored, and removes what was left.
  void expectNextSaveIsStored() const {
    if (situation_.change.displaces_file || !situation_.change.put_into_folder.empty()) return;
    Configuration writer(kWrite, homeFile());
    EXPECT_EQ(writer.setNumber("ch1", "exists", number_), xmlcfg::kDone);
    EXPECT_EQ(writer.close(), xmlcfg::kDone);
    EXPECT_EQ(Configuration(kRead, homeFile()).number("ch1", "exists"), number_);
    EXPECT_THAT(namesIn(home_path_), testing::ElementsAre("usbdev.conf"));
  }

  bool stored() const { return save_->stored(); }

  /// Whoever may write into the folder can also put a file under the name of the new one, after the last look at it and
  /// before it replaces the old one. Then theirs does, as if they had displaced the file right after the save.
  bool displacedAtTheLastMoment() const {
    return !situation_.change.displaces_file && others_file_ != 0 && inode(homeFile()) == others_file_;
  }

 private:
  std::string homeFile() const { return home_path_ + "/usbdev.conf"; }

  bool newIsSomewhere() const {
    return readFile(homeFile()) == ConfigurationChange::kNewContent ||
           readFile(torture::kFile) == ConfigurationChange::kNewContent;
  }

  void expectWholeFile() const {
    using testing::AnyOf;
    const std::string missing;
    const std::string first = situation_.before[0] == '\0' ? ConfigurationChange::kFirstContent : situation_.before;
    for (const std::string &file : {homeFile(), torture::kFile})
      EXPECT_THAT(readFile(file), AnyOf(ConfigurationChange::kNewContent, situation_.before, first,
                                        torture::kOthersConfiguration, torture::kOthersText, missing));
    if (!situation_.change.displaces_file && !displacedAtTheLastMoment() && !save_->stored()) {
      EXPECT_THAT(readFile(homeFile()), AnyOf(situation_.before, first));
    }
  }

  void expectNothingElse() const {
    for (const std::string &name : namesIn(home_path_)) {
      const bool own_new = name != "usbdev.conf" && name != situation_.change.put_into_folder;
      EXPECT_TRUE(!own_new || situation_.change.protects_folder) << name;
    }
  }

  void expectUnlocked() const {
    const int file = open(homeFile().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return;
    EXPECT_EQ(flock(file, LOCK_EX | LOCK_NB), 0);
    close(file);
  }

  const Situation &situation_;
  int number_;
  std::unique_ptr<ConfigurationChange> save_;
  int home_ = -1;
  std::string home_path_;
  std::size_t descriptors_;
  bool stored_before_ = false;
  ino_t others_file_ = 0;
};

std::vector<Situation> situations() {
  std::vector<Situation> all;
  for (const DiskChange &change : torture::diskChanges())
    for (const char *before : {kBefore, ""})
      for (bool privileged : {true, false}) all.push_back({change, before, privileged});
  return all;
}

TEST(ADiskThatChangesBeforeAnyCallOfASave, HasTheOldFileOrTheNewOneAndTheResultTellsWhich) {
  int saves = 0;
  int stored = 0;
  for (const Situation &situation : situations()) {
    bool reached = true;
    int displaced = 0;
    for (int number = 1; reached; number += kOneOf) {
      SCOPED_TRACE(std::string("the disk ") + situation.change.name + " " + situation.change.put_into_folder +
                   " before call " + std::to_string(number) + (situation.privileged ? "" : ", without privileges") +
                   (situation.before[0] == '\0' ? ", no file yet" : ""));
      Save save(situation, number);
      reached = save.run();
      save.expectRules();
      save.expectNextSaveIsStored();
      ++saves;
      stored += save.stored() ? 1 : 0;
      displaced += save.displacedAtTheLastMoment() ? 1 : 0;
      EXPECT_TRUE(reached || number > kFewestCalls);
      if (HasFailure()) return;
    }
    EXPECT_LE(displaced, 1);
  }
  torture::report("disk: " + std::to_string(saves) + " saves while the disk changed, " + std::to_string(stored) +
                  " stored, the others reported");
}

/// What a reader finds, -2 where no file is.
int generation() {
  Configuration reader(kRead, torture::kFile);
  if (reader.openResult() == xmlcfg::kMissing) return -2;
  EXPECT_EQ(reader.openResult(), xmlcfg::kOpened);
  const int exists = reader.number("ch0", "exists");
  const bool has_text = !reader.text("ch0", "video", "", "cap").empty();
  EXPECT_EQ(has_text, exists == 1) << "a mixture";
  return exists;
}

class ASlowDisk : public testing::TestWithParam<const char *> {};

TEST_P(ASlowDisk, ShowsTheOldFileUntilItShowsTheNewOne) {
  torture::insertDisk();
  ConfigurationChange save(GetParam());
  int latest = generation();
  failing::doBefore(failing::kEvery, [&latest] {
    const int now = generation();
    EXPECT_GE(now, latest);
    latest = now;
  });
  save.run();
  EXPECT_TRUE(failing::stop());
  save.expectRules();
  EXPECT_EQ(generation(), 1);
  torture::removeDisk();
}

INSTANTIATE_TEST_SUITE_P(WithAFileOrWithout, ASlowDisk, testing::Values(kBefore, ""));

}  // namespace
