// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A long day of the application in one process, on the real host libraries: nothing grows, and every counter is exact.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <usbdev/usbdev.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <string>

#include "login_service.h"
#include "output_capture.h"
#include "own_network.h"
#include "private_host.h"
#include "random_day.h"
#include "real_worlds.h"
#include "resources.h"
#include "thoroughness.h"

namespace soak {
namespace {

constexpr unsigned kKindOfHost = 2;  // encodes H.264, has cameras of every kind
// What the resident memory may grow by after the first tenth: half a MiB for the files that are left open, as much for
// what the test remembers of links that nobody removes, and as much again. One more byte for each operation does not
// fit.
constexpr long kGrowthKb = 1536;
constexpr int kLoginEach = 100;  // operations
constexpr int kLossEach = 100;   // a query that leaves its settings file open, in a hundredth of the day

int loggedLines() {
  sqlite3 *database = nullptr;
  int lines = -1;
  sqlite3_open_v2("/var/log/vl/event.db", &database, SQLITE_OPEN_READONLY, nullptr);
  const auto read = [](void *out, int, char **columns, char **) {
    *static_cast<int *>(out) = std::atoi(columns[0]);
    return 0;
  };
  sqlite3_exec(database, "SELECT count(*) FROM event", read, &lines, nullptr);
  sqlite3_close(database);
  return lines;
}

class AnApplicationDay : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    ASSERT_TRUE(contract::enterNetworkOfItsOwn());
    writeFile("/etc/config/Tundrel.conf", "[System]\nInternal Model = TS-873\n[NTP]\n");
  }

  // Returns how the worlds differ, or "".
  std::string run(int operations) {
    const contract::OutputCapture messages;
    const contract::OutputCapture output(stdout);
    for (int i = 0; i < operations; ++i) {
      model::Operation operation;
      for (uint8_t &byte : operation) byte = static_cast<uint8_t>(random());
      const std::string difference = model::happen(worlds, operation);
      if (!difference.empty()) return worlds.operation() + "\n" + difference;
      for (const std::string &line : worlds.world.done) logged += line.rfind("log ", 0) == 0 ? 1 : 0;
      sent += static_cast<int>(worlds.world.sent.size());
      if (i % kLoginEach == 0 && !logIn()) return "a login was refused";
    }
    return "";
  }

  bool logIn() {
    requests += 3;  // in, out, and a question about the session
    return vl_auth("admin", "secret") == 0 && vl_sid_auth("s1d") == 0;
  }

  std::mt19937 random{1};
  RealWorlds worlds{kKindOfHost};
  LoginService service;
  int logged = 0;
  int sent = 0;
  int requests = 0;
};

TEST_F(AnApplicationDay, LeavesNothingBehindAndCountsExactly) {
  const int operations = torture::times(2000, 1000000);
  const auto begin = std::chrono::steady_clock::now();
  ASSERT_EQ(run(operations / 10), "");
  const Resources before = Resources::now();
  char value[32];
  for (int part = 0; part < kLossEach; ++part) {
    ASSERT_EQ(run(operations * 9 / 10 / kLossEach), "");
    EXPECT_EQ(get_nas_info("Missing", value), -1);
  }
  const Resources after = Resources::now();

  EXPECT_LE(after.memory_kb, before.memory_kb + kGrowthKb);
  EXPECT_EQ(after.descriptors, before.descriptors + kLossEach);
  EXPECT_EQ(after.threads, before.threads);
  EXPECT_EQ(after.segments, before.segments);
  EXPECT_FALSE(after.children);
  EXPECT_EQ(after.files, before.files);
  EXPECT_EQ(loggedLines(), logged);
  EXPECT_EQ(worlds.datagrams(), sent);
  EXPECT_EQ(service.requests(), requests);

  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  torture::report("soak: " + std::to_string(operations) + " operations in " +
                  std::to_string(static_cast<int>(took.count())) + " s, resident " + std::to_string(before.memory_kb) +
                  " to " + std::to_string(after.memory_kb) + " KiB, descriptors " + std::to_string(before.descriptors) +
                  " to " + std::to_string(after.descriptors) + " (" + std::to_string(kLossEach) +
                  " lost on purpose), " + std::to_string(logged) + " events, " + std::to_string(sent) + " datagrams, " +
                  std::to_string(requests) + " requests, 0 differences");
}

}  // namespace
}  // namespace soak
