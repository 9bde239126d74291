#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <string>

#include "configuration.h"
#include "private_host.h"

namespace {

const std::string kDisk = std::string(kWorkFolder) + "/disk";
const std::string kFile = kDisk + "/usbdev.conf";
const std::string kFilling = kDisk + "/filling";

class ADisk : public testing::Test {
 protected:
  void SetUp() override {
    make_folder(kDisk);
    mount_memory(kDisk, "64k");
    write_file(kFile, "<velmora><ch0><exists>1</exists></ch0></velmora>");
    before_ = read_file(kFile);
  }
  void TearDown() override { umount2(kDisk.c_str(), MNT_DETACH); }

  int close_after_change() {
    Configuration writer(kWrite, kFile);
    EXPECT_EQ(writer.open_result(), xmlcfg::kOpened);
    EXPECT_EQ(writer.set_text("ch0", "devname", std::string(20000, 'x')), xmlcfg::kDone);
    return writer.close();
  }

  void expect_untouched() {
    EXPECT_EQ(read_file(kFile), before_);
    EXPECT_EQ(names_in(kDisk), names_);
  }

  void note_names() { names_ = names_in(kDisk); }

 private:
  std::string before_;
  std::vector<std::string> names_;
};

class AFullDisk : public ADisk {
 protected:
  void SetUp() override {
    ADisk::SetUp();
    EXPECT_THROW(write_file(kFilling, std::string(100000, '-')), std::runtime_error);
    note_names();
  }
};

TEST_F(AFullDisk, MakesTheCloseFailAndKeepsTheOldFile) {
  EXPECT_EQ(close_after_change(), xmlcfg::kNotStored);
  expect_untouched();
}

TEST_F(AFullDisk, IsWrittenAgainOnceThereIsRoom) {
  close_after_change();
  ASSERT_EQ(unlink(kFilling.c_str()), 0);
  EXPECT_EQ(close_after_change(), xmlcfg::kDone);
}

TEST_F(AFullDisk, TakesNoNewFile) {
  EXPECT_EQ(Configuration(kWrite, kDisk + "/new.conf").open_result(), xmlcfg::kNotWritable);
  expect_untouched();
}

class AReadOnlyDisk : public ADisk {
 protected:
  void SetUp() override {
    ADisk::SetUp();
    note_names();
    make_read_only(kDisk);
  }
};

TEST_F(AReadOnlyDisk, MakesTheCloseFailAndKeepsTheOldFile) {
  EXPECT_EQ(close_after_change(), xmlcfg::kNotStored);
  expect_untouched();
}

TEST_F(AReadOnlyDisk, TakesNoNewFile) {
  EXPECT_EQ(Configuration(kWrite, kDisk + "/new.conf").open_result(), xmlcfg::kNotWritable);
}

TEST_F(AReadOnlyDisk, CanBeRead) { EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "exists"), 1); }

}  // namespace
