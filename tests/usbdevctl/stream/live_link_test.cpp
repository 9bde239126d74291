// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/live_link.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace {

using usbdevctl::followLink;
using usbdevctl::linkCell;
using usbdevctl::LinkState;
using usbdevctl::LiveLink;

class ALiveLink : public testing::Test {
 protected:
  ALiveLink() {
    char folder[] = "/tmp/live_link_test.XXXXXX";
    folder_ = mkdtemp(folder);
    target_ = folder_ + "/stream";
    link_ = folder_ + "/hash";
  }

  ~ALiveLink() override {
    unlink(link_.c_str());
    rmdir(target_.c_str());
    rmdir(folder_.c_str());
  }

  void makeLink() const { ASSERT_EQ(symlink(target_.c_str(), link_.c_str()), 0); }

  std::string folder_;
  std::string target_;
  std::string link_;
};

TEST_F(ALiveLink, ThatLeadsToItsFolderIsGood) {
  ASSERT_EQ(mkdir(target_.c_str(), 0700), 0);
  makeLink();
  const LiveLink link = followLink(folder_, "hash");
  EXPECT_EQ(link.state, LinkState::good);
  EXPECT_EQ(link.path, link_);
  EXPECT_EQ(link.target, target_);
  EXPECT_EQ(linkCell(link).text, target_);
}

TEST_F(ALiveLink, WhoseFolderIsMissingLeadsNowhere) {
  makeLink();
  const LiveLink link = followLink(folder_, "hash");
  EXPECT_EQ(link.state, LinkState::nowhere);
  EXPECT_EQ(linkCell(link).text, "leads nowhere: " + target_);
}

TEST_F(ALiveLink, ThatIsNotOnTheDiskIsMissing) {
  const LiveLink link = followLink(folder_, "hash");
  EXPECT_EQ(link.state, LinkState::missing);
  EXPECT_EQ(linkCell(link).text, "missing");
}

TEST_F(ALiveLink, ThatTheSystemDoesNotTellOfIsNotCalledMissing) {
  const LiveLink link = followLink(folder_, std::string(300, 'x'));
  EXPECT_EQ(link.state, LinkState::unreadable);
  EXPECT_EQ(linkCell(link).text, "cannot be read");
}

TEST_F(ALiveLink, WithoutANameDoesNotExist) {
  const LiveLink link = followLink(folder_, "");
  EXPECT_EQ(link.state, LinkState::none);
  EXPECT_EQ(link.path, "");
  EXPECT_EQ(linkCell(link).text, "");
}

}  // namespace
