// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/playlist.h"

#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "json_of.h"

namespace {

using usbdevctl::playlistGrows;
using usbdevctl::playlistOf;

constexpr std::time_t kNow = 1'700'000'000;

class APlaylist : public testing::Test {
 protected:
  APlaylist() {
    char folder[] = "/tmp/playlist_test.XXXXXX";
    folder_ = mkdtemp(folder);
    path_ = folder_ + "/playlist.m3u8";
  }

  ~APlaylist() override {
    unlink(path_.c_str());
    rmdir(folder_.c_str());
  }

  void write(const std::string &text, std::time_t age) const {
    std::ofstream(path_) << text;
    const timeval written = {kNow - age, 0};
    const timeval times[] = {written, written};
    ASSERT_EQ(utimes(path_.c_str(), times), 0);
  }

  std::string folder_;
  std::string path_;
};

constexpr char kTwoSeconds[] = "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:2\n#EXT-X-MEDIA-SEQUENCE:7\n";

TEST_F(APlaylist, GrowsUntilThreeOfItsSegmentsAreMissing) {
  write(kTwoSeconds, 5);
  EXPECT_EQ(playlistGrows(path_, kNow), true);
  write(kTwoSeconds, 6);
  EXPECT_EQ(playlistGrows(path_, kNow), true);
  write(kTwoSeconds, 7);
  EXPECT_EQ(playlistGrows(path_, kNow), false);
}

TEST_F(APlaylist, FromTheFutureGrows) {
  write(kTwoSeconds, -100);
  EXPECT_EQ(playlistGrows(path_, kNow), true);
}

TEST_F(APlaylist, WithSegmentsOfNoLengthDoesNotGrow) {
  for (const char *text :
       {"", "#EXTM3U\n", "#EXT-X-TARGETDURATION:", "#EXT-X-TARGETDURATION:two", "#EXT-X-TARGETDURATION:-2"}) {
    write(text, 0);
    EXPECT_EQ(playlistGrows(path_, kNow), false) << text;
  }
}

TEST_F(APlaylist, WithHugeSegmentsIsWaitedFor) {
  write("#EXT-X-TARGETDURATION:99999999999999999999\n", 1'000'000);
  EXPECT_EQ(playlistGrows(path_, kNow), true);
}

TEST_F(APlaylist, WithTheSegmentLengthAfterItsHeadDoesNotGrow) {
  write(std::string(1024, '\n') + kTwoSeconds, 0);
  EXPECT_EQ(playlistGrows(path_, kNow), false);
}

TEST_F(APlaylist, ThatIsNotThereNeitherGrowsNorHasStopped) { EXPECT_EQ(playlistGrows(path_, kNow), std::nullopt); }

TEST_F(APlaylist, ThatWasRemovedMeanwhileDoesNotGrow) {
  usbdevctl::Fields fields;
  usbdevctl::addPlaylist(fields, false, true);
  EXPECT_EQ(jsonOf(fields), R"({"schema":1,"playlist":false,"playlist_grows":null})"
                            "\n");
}

TEST(ThePlaylist, OfAProfileIsInTheChannelDirectoryThatUsersKnow) {
  EXPECT_EQ(playlistOf(2), "/mnt/ext/opt/apps/Velmora2/hls/channel3/playlist.m3u8");
}

}  // namespace
