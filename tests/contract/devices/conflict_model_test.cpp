// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Conflicts among ten channels in every state, on hosts with and without bridges, against the plain model.
#include "conflict_model.h"

#include <iterator>
#include <random>

#include "contract_test.h"

namespace contract {
namespace {

using testing::IsEmpty;

constexpr unsigned kHosts = 500;
constexpr char kNow[] = "2023-11-14 22:13:20";

// A host of which everything that matters to conflicts is left to chance.
class ARandomHost {
 public:
  explicit ARandomHost(unsigned seed) : chance_(seed), one_channel_(oneIn(8)) {
    host.clock.stopAt(kNow);
    if (one_channel_) host.limitToOneChannel();
    for (int i = 0; i < 10; ++i) describeChannel(host.channel(i));
    for (int node = 0; node < 10; ++node) {
      if (oneIn(3)) continue;
      bridges_[node] = oneIn(2) ? "/devices/pci0000:00/0000:00:1c.0" : "/devices/pci0000:00/0000:00:1d.0";
      host.camera(node, "1-1").behindBridge(bridges_[node]);
    }
  }

  ConflictModel model() const { return {host.config.values(), bridges_, one_channel_, kNow}; }
  int number(int below) { return static_cast<int>(chance_() % static_cast<unsigned>(below)); }
  template <typename T>
  T oneOf(std::initializer_list<T> choices) {
    return *std::next(choices.begin(), number(static_cast<int>(choices.size())));
  }

  Host host;

 private:
  bool oneIn(int count) { return number(count) == 0; }

  void describeChannel(HostChannel channel) {
    if (oneIn(8)) return;
    channel.exists(oneOf({1, 1, 1, 1, 1, 0, -1})).slot(oneOf({"1-1", "1-1.2", "1-2", "1-2.1", "2-1", "1-11"}));
    if (!oneIn(8)) channel.profile(number(4));
    if (!oneIn(8)) channel.slotSwitch(oneOf({1, 1, 1, 0}));
    if (!oneIn(8)) channel.vnode(number(10));
    if (!oneIn(3)) channel.conflict(oneOf({-1, 3, 3, 3, 999}));
    channel.createTime(oneOf<std::string>(
        {"", "2023-03-05 08:15:00", "2023-03-05 18:15:00", "2023-03-04 09:00:00", kNow, "2099-01-01 00:00:00"}));
  }

  std::mt19937 chance_;
  bool one_channel_;
  std::map<int, std::string> bridges_;
};

TEST(OnAnyHost, AChannelIsHandedOverAsByTheModel) {
  for (unsigned seed = 0; seed < kHosts; ++seed) {
    SCOPED_TRACE(seed);
    ARandomHost random(seed);
    ConflictModel model = random.model();
    const int value = random.oneOf({-1, -1, 7});
    const int mode = random.oneOf({0, 1, 2, 4});
    int profile = 0;
    EXPECT_EQ(updateConflict(3, value, mode, &profile), 0);
    EXPECT_EQ(profile, model.handOver(3, value, mode));
    EXPECT_EQ(random.host.config.writes(), model.writes());
    ASSERT_THAT(random.host.journal.violations(), IsEmpty());
  }
}

TEST(OnAnyHost, TheConflictsAreRecomputedAsByTheModel) {
  for (unsigned seed = 0; seed < kHosts; ++seed) {
    SCOPED_TRACE(seed);
    ARandomHost random(seed);
    ConflictModel model = random.model();
    ConflictModel::States states;
    for (int &state : states) state = random.oneOf({-1, 0, 1, 1, 5, 999});
    const ConflictModel::States expected = model.recompute(states);
    EXPECT_EQ(syncConflict(states.data()), 0);
    EXPECT_EQ(states, expected);
    EXPECT_EQ(random.host.config.writes(), model.writes());
    ASSERT_THAT(random.host.journal.violations(), IsEmpty());
  }
}

}  // namespace
}  // namespace contract
