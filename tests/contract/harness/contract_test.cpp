// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "contract_test.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>

namespace contract {

using testing::IsEmpty;

namespace {

// A call that ends the program, as that of a broken connection does with status 0, must not pass for a test that has
// succeeded. The child that a death test starts has to end.
class EndsAfterItsTestsOnly : public testing::Environment {
 public:
  void SetUp() override {
    if (GTEST_FLAG_GET(internal_run_death_test).empty()) atexit(failDuringATest);
    program_ = getpid();
  }

 private:
  static void failDuringATest() {
    if (getpid() != program_ || testing::UnitTest::GetInstance()->current_test_info() == nullptr) return;
    fputs("the program was ended during a test\n", stderr);
    std::_Exit(1);
  }

  static inline pid_t program_ = 0;
};

[[maybe_unused]] testing::Environment *const kEndsAfterItsTestsOnly =
    testing::AddGlobalTestEnvironment(new EndsAfterItsTestsOnly);

}  // namespace

void ContractTest::TearDown() {
  EXPECT_THAT(host.journal.violations(), IsEmpty());
  expectEverythingClosed();
  expectLockFree();
}

void ContractTest::expectEverythingClosed() {
  EXPECT_EQ(host.config.openHandles(), 0) << "configuration handles left open";
  Lines left_open = host.files.leftOpen();
  for (const std::string &command : host.commands.leftOpen()) left_open.push_back(command);
  EXPECT_THAT(left_open, testing::UnorderedElementsAreArray(allowed_open_));
  EXPECT_EQ(host.network.openSockets(), 0) << "sockets left open";
}

// A lock that a call left taken would make every later test hang, so the program ends there.
void ContractTest::expectLockFree() {
  host.config.failNothing();
  auto reader = std::async(std::launch::async, [] {
    int channel = 0;
    trsProfiletoPlugCh(0, &channel);
  });
  if (reader.wait_for(std::chrono::seconds(20)) == std::future_status::ready) return;
  ADD_FAILURE() << "the configuration lock is still taken";
  std::_Exit(1);
}

std::string openFailure(int code) {
  return "open:[/etc/config/usbdev.conf] failed, ret: " + std::to_string(code) + "\n";
}

std::string closeFailure(int code) {
  return "close:[/etc/config/usbdev.conf] failed, ret: " + std::to_string(code) + "\n";
}

}  // namespace contract
