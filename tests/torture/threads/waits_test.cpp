// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How long a writer waits beside 32 readers that never pause, as threads of its process and as processes of their own.
// A time is never a test, so only `./dev torture` compares it with the bound.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <usbdev/usbdev.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>
#include <vector>

#include "crew.h"
#include "private_host.h"
#include "processes.h"
#include "thoroughness.h"

namespace torture {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kReaders = 32;
// In milliseconds. Processes read without a lock, but on a busy machine each of them may have a processor for a while.
constexpr int kBoundOfThreads = 1000;
constexpr int kBoundOfProcesses = 5000;
constexpr int kNoBound = 1'000'000;

class AWriter : public testing::Test {
 protected:
  void SetUp() override {
    writeFile("/etc/config/usbdev.conf", "<velmora><ch0><exists>1</exists><profile>0</profile></ch0></velmora>\n");
  }

  static void read() {
    _streaminfo info;
    vl_get_stream_info(0, &info);
  }

  static void expectShortWaits(const char *readers, int bound) {
    double longest = 0;
    const int writes = times(20, 2000);
    for (int i = 0; i < writes; ++i) {
      const auto start = Clock::now();
      EXPECT_EQ(mn_set_usbchn_sps(0, i), 0);
      longest = std::max(longest, Milliseconds(Clock::now() - start).count());
    }
    EXPECT_LT(longest, times(kNoBound, bound));
    report("threads: longest of " + std::to_string(writes) + " writes beside 32 greedy " + readers + ": " +
           std::to_string(static_cast<int>(longest) + 1) + " ms, bound " + std::to_string(bound) + " ms");
  }
};

TEST_F(AWriter, IsNotKeptWaitingByGreedyThreads) {
  Crew crew(kReaders + 1);
  std::atomic<bool> done{false};
  crew.run([&](int member) {
    while (member > 0 && !done) read();
    if (member == 0) expectShortWaits("threads", kBoundOfThreads);
    done = true;
  });
}

TEST_F(AWriter, IsNotKeptWaitingByGreedyProcesses) {
  std::vector<pid_t> readers(kReaders);
  for (pid_t &reader : readers) {
    reader = startChild([] {
      for (;;) read();
      return 0;
    });
  }
  expectShortWaits("processes", kBoundOfProcesses);
  for (const pid_t reader : readers) kill(reader, SIGKILL);
  for (const pid_t reader : readers) EXPECT_EQ(waitForChild(reader), -1);
}

}  // namespace
}  // namespace torture
