// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <string>

#include "configuration.h"
#include "private_host.h"

namespace {

const std::string kDisk = std::string(kWorkFolder) + "/disk";
const std::string kDiskFile = kDisk + "/usbdev.conf";
const std::string kFilling = kDisk + "/filling";

class ADisk : public testing::Test {
 protected:
  void SetUp() override {
    makeFolder(kDisk);
    mountMemory(kDisk, "64k");
    writeFile(kDiskFile, "<velmora><ch0><exists>1</exists></ch0></velmora>");
    before_ = readFile(kDiskFile);
  }
  void TearDown() override { umount2(kDisk.c_str(), MNT_DETACH); }

  int closeAfterChange() {
    Configuration writer(kWrite, kDiskFile);
    EXPECT_EQ(writer.openResult(), xmlcfg::kOpened);
    EXPECT_EQ(writer.setText("ch0", "devname", std::string(20000, 'x')), xmlcfg::kDone);
    return writer.close();
  }

  void expectUntouched() {
    EXPECT_EQ(readFile(kDiskFile), before_);
    EXPECT_EQ(namesIn(kDisk), names_);
  }

  void noteNames() { names_ = namesIn(kDisk); }

 private:
  std::string before_;
  std::vector<std::string> names_;
};

class AFullDisk : public ADisk {
 protected:
  void SetUp() override {
    ADisk::SetUp();
    EXPECT_THROW(writeFile(kFilling, std::string(100000, '-')), std::runtime_error);
    noteNames();
  }
};

TEST_F(AFullDisk, MakesTheCloseFailAndKeepsTheOldFile) {
  EXPECT_EQ(closeAfterChange(), xmlcfg::kNotStored);
  expectUntouched();
}

TEST_F(AFullDisk, IsWrittenAgainOnceThereIsRoom) {
  closeAfterChange();
  ASSERT_EQ(unlink(kFilling.c_str()), 0);
  EXPECT_EQ(closeAfterChange(), xmlcfg::kDone);
}

TEST_F(AFullDisk, TakesNoNewFile) {
  EXPECT_EQ(Configuration(kWrite, kDisk + "/new.conf").openResult(), xmlcfg::kNotWritable);
  expectUntouched();
}

class AReadOnlyDisk : public ADisk {
 protected:
  void SetUp() override {
    ADisk::SetUp();
    noteNames();
    makeReadOnly(kDisk);
  }
};

TEST_F(AReadOnlyDisk, MakesTheCloseFailAndKeepsTheOldFile) {
  EXPECT_EQ(closeAfterChange(), xmlcfg::kNotStored);
  expectUntouched();
}

TEST_F(AReadOnlyDisk, TakesNoNewFile) {
  EXPECT_EQ(Configuration(kWrite, kDisk + "/new.conf").openResult(), xmlcfg::kNotWritable);
}

TEST_F(AReadOnlyDisk, CanBeRead) { EXPECT_EQ(Configuration(kRead, kDiskFile).number("ch0", "exists"), 1); }

}  // namespace
