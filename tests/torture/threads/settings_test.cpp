// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Writers and greedy readers of one profile, on the host's own configuration library: a record is always one that one
// writer wrote, whole.
#include <gmock/gmock.h>
#include <usbdev/usbdev.h>

#include <atomic>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "crew.h"
#include "private_host.h"
#include "thoroughness.h"

namespace torture {
namespace {

using Records = std::set<std::string>;

std::string textOf(const ShareLinkInfo &info) {
  return std::string(info.shrpwd) + " " + info.ssid + " " + info.token + " " + info.hash_string;
}

class AProfile : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    makeFolder("/mnt/ext/opt/apps/Velmora2/hls/channel1");
    writeFile("/etc/config/usbdev.conf", "<velmora><ch0><exists>1</exists><profile>0</profile></ch0></velmora>\n");
    written_.insert(share("first"));
  }

  /// A password that was never there before makes a new record, which one pass over the file writes.
  static std::string share(const std::string &password) {
    ShareLinkInfo info{};
    info.shrenable = info.pwdenable = 1;
    password.copy(info.shrpwd, sizeof info.shrpwd - 1);
    EXPECT_EQ(vl_set_share_link(&info), 0);
    return textOf(info);
  }

  static std::string stored() {
    ShareLinkInfo info{};
    EXPECT_EQ(vl_get_share_link(&info), 0);
    return textOf(info);
  }

  static Records writeAs(const std::string &writer, int rounds) {
    Records own;
    for (int i = 0; i < rounds; ++i) own.insert(last_of_each_[writer == "b"] = share(writer + std::to_string(i)));
    return own;
  }

  static Records readUntil(const std::atomic<int> &writers) {
    Records seen;
    while (writers > 0) seen.insert(stored());
    return seen;
  }

  Records written_;
  static inline std::string last_of_each_[2];
};

TEST_P(AProfile, WithTwoWritersHasAlwaysTheWholeRecordOfOne) {
  Crew crew(GetParam());
  std::atomic<int> writers{2};
  std::vector<Records> records(static_cast<std::size_t>(crew.size()));
  crew.run([&](int member) {
    Records &own = records[static_cast<std::size_t>(member)];
    if (member >= 2) {
      own = readUntil(writers);
    } else {
      own = writeAs(member == 0 ? "a" : "b", times(10, 500));
      --writers;
    }
  });
  for (const int writer : {0, 1}) written_.merge(records[static_cast<std::size_t>(writer)]);
  for (std::size_t reader = 2; reader < records.size(); ++reader) {
    EXPECT_THAT(written_, testing::IsSupersetOf(records[reader]));
  }
  EXPECT_THAT(last_of_each_, testing::Contains(stored()));
  EXPECT_THAT(namesIn("/etc/config"), testing::ElementsAre("usbdev.conf"));
  report("threads: two writers and " + std::to_string(GetParam() - 2) + " readers of a profile, no record mixed");
}

INSTANTIATE_TEST_SUITE_P(Of, AProfile, testing::Values(8, 32));

}  // namespace
}  // namespace torture
