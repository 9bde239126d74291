// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "configuration_change.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "private_host.h"

namespace {

const std::string kFolder = std::string(kWorkFolder) + "/config";
const std::string kText(40000, 'x');  // takes memory wherever it is handled

std::size_t openDescriptors() { return namesIn("/proc/self/fd").size(); }

}  // namespace

const std::string ConfigurationChange::kFile = kFolder + "/usbdev.conf";
const std::string ConfigurationChange::kNewContent =
    "<?xml version=\"1.0\"?>\n<velmora>\n  <ch0>\n    <exists>1</exists>\n    <video>\n      <cap>" + kText +
    "</cap>\n    </video>\n  </ch0>\n</velmora>\n";
const std::string ConfigurationChange::kFirstContent = "<velmora/>\n";

ConfigurationChange::ConfigurationChange(const std::string &before) : before_(before) {
  makeEmptyFolder(kFolder);
  if (!before.empty()) {
    writeFile(kFile, before);
    EXPECT_EQ(chmod(kFile.c_str(), 0640), 0);
  }
  descriptors_ = openDescriptors();
}

/// The results of setting are not looked at: the close has to report what a caller misses.
void ConfigurationChange::run() {
  void *handle = nullptr;
  opened_ = xmlcfg_open(kWrite, kFile.c_str(), &handle);
  if (opened_ != xmlcfg::kOpened) return;
  xmlcfg_set_int(handle, 1, "velmora", "ch0", "exists", nullptr);
  xmlcfg_set_str(handle, kText.c_str(), "velmora", "ch0", "video", "cap");
  closed_ = xmlcfg_close(handle, 0);
}

unsigned ConfigurationChange::permissions() {
  struct stat status {};
  EXPECT_EQ(stat(kFile.c_str(), &status), 0);
  return status.st_mode & 07777;
}

std::string ConfigurationChange::contentAfterwards() const {
  if (stored()) return kNewContent;
  return before_.empty() ? kFirstContent : before_;
}

void ConfigurationChange::expectRules(bool could_remove) const {
  EXPECT_TRUE(opened_ == xmlcfg::kOpened || opened_ < 0) << opened_;
  EXPECT_EQ(openDescriptors(), descriptors_);
  if (before_.empty() && opened_ != xmlcfg::kOpened && !std::filesystem::exists(kFile)) {
    EXPECT_TRUE(!could_remove || namesIn(kFolder).empty());
    return;
  }
  EXPECT_TRUE(!could_remove || namesIn(kFolder) == std::vector<std::string>{"usbdev.conf"});
  EXPECT_EQ(readFile(kFile), contentAfterwards());
  EXPECT_EQ(permissions() & S_IRWXO, 0U);
  const int descriptor = open(kFile.c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(flock(descriptor, LOCK_EX | LOCK_NB), 0);
  close(descriptor);
}
