// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Many threads at the configuration at once. The made-up configuration reports every open beside another one.
#include <unistd.h>

#include <fstream>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "contract_test.h"

namespace contract {
namespace {

constexpr int kRounds = 200;

class ManyThreads : public ContractTest {
 protected:
  ManyThreads() { host.config.expectManyThreads(); }

  void run(const std::function<void()> &work) {
    threads_.emplace_back([work] {
      for (int round = 0; round < kRounds; ++round) work();
    });
  }
  void join() {
    for (std::thread &thread : threads_) thread.join();
  }
  static void read() {
    int channel = -1;
    EXPECT_EQ(trsProfiletoPlugCh(1, &channel), 0);
    EXPECT_EQ(channel, 6);
  }
  static void readName() {
    char name[256] = "";
    EXPECT_EQ(vl_getDevName(1, name), 0);
    EXPECT_STREQ(name, "HD Webcam");
  }
  static void write() {
    int states[10] = {-1, -1, -1, 5, -1, -1, -1, -1, -1, -1};
    EXPECT_EQ(syncConflict(states), 0);
  }

 private:
  std::vector<std::thread> threads_;
};

TEST_F(ManyThreads, ReadAndWriteTheConfigurationOneAfterTheOther) {
  host.channel(6).profile(1).name("HD Webcam");
  for (int i = 0; i < 2; ++i) {
    run(read);
    run(readName);
    run(write);
  }
  join();
  EXPECT_EQ(host.journal.count("open r"), 2 * kRounds * 3);
  EXPECT_EQ(host.channel(3).get("conflictch"), "5");
}

TEST_F(ManyThreads, ShareTheLockWithOpensThatFail) {
  OutputCapture output;
  host.config.failWriteOpens(-3);
  host.channel(6).profile(1).name("HD Webcam");
  for (int i = 0; i < 2; ++i) {
    run(read);
    run([] {
      int states[10] = {};
      EXPECT_EQ(syncConflict(states), -1);
    });
  }
  join();
  std::string expected;
  for (int i = 0; i < 2 * kRounds; ++i) expected += openFailure(-3);
  EXPECT_EQ(output.text(), expected);
}

// Waits until a thread of this process sleeps.
void waitUntilAsleep(pid_t thread) {
  const std::string file = "/proc/self/task/" + std::to_string(thread) + "/stat";
  for (std::string state; state != "S"; std::this_thread::yield()) {
    std::string number;
    std::string name;
    std::ifstream(file) >> number >> name >> state;
  }
}

TEST_F(ManyThreads, GetTheLockInTheOrderInWhichTheyAskForIt) {
  for (int round = 0; round < 20; ++round) {
    std::promise<pid_t> asks;
    std::thread writer;
    host.config.beforeOpenNumber(1, [&] {  // while a reader has the lock
      writer = std::thread([&asks] {
        asks.set_value(gettid());
        mn_update_pfstate(1, 1);
      });
      waitUntilAsleep(asks.get_future().get());
    });
    host.journal.clear();
    for (int reads = 0; reads < 2; ++reads) vl_get_profileID(6);
    writer.join();
    EXPECT_THAT(host.journal.only({"open"}),
                testing::ElementsAre("open r", "open w /etc/config/vl_pfstate.conf", "open r"));
  }
}

}  // namespace
}  // namespace contract
