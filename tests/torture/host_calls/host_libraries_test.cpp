// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Every call of the host's libraries, and every piece of memory, fails once and for ever.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>

#include "failing.h"
#ifdef FAILING_MEMORY
#include "failing_memory.h"
#endif
#include "operation.h"
#include "private_host.h"
#include "processes.h"
#include "thoroughness.h"

namespace {

using failing::Then;

const bool kThorough = torture::times(0, 1) == 1;

/// How something fails.
struct Manner {
  std::string_view what;
  int error;
  failing::Then then = failing::Then::nothing;
};

std::vector<Manner> manners() {
  std::vector<Manner> all = {{failing::kAny, EIO}, {failing::kAny, EIO, Then::alike}, {failing::kAny, EINTR}};
#ifdef FAILING_MEMORY
  all.insert(all.end(), {{failing::kMemory, ENOMEM}, {failing::kMemory, ENOMEM, Then::alike}});
#endif
  if (!kThorough) return all;
  for (const int error : {EIO, ENOSPC, EACCES, EMFILE, ENOMEM, EROFS}) {
    for (const Then then : {Then::nothing, Then::alike, Then::everything}) all.push_back({failing::kAny, error, then});
  }
  return all;
}

/// What the process has; a library must not keep any of it for itself.
struct Possessions {
  std::size_t descriptors = namesIn("/proc/self/fd").size();
  int pieces_of_memory = piecesInUse();

  static int piecesInUse() {
#ifdef FAILING_MEMORY
    return failing::piecesInUse();
#else
    return 0;
#endif
  }
};

/// A call that waits for a child and fails leaves it, because there is no other one.
bool noChildIsLeft() {
  return waitpid(-1, nullptr, WNOHANG) != 0 || failing::progress().first == std::string_view("waitpid");
}

enum class End { failed = 10, nothing_failed, wrong };

/// In a process of its own, whose libraries have been used before, or not.
End runOnce(const Operation &operation, const Manner &manner, int number, bool used_before) {
  operation.prepare();
  if (used_before) operation.run();
  operation.prepare();
  const Possessions before;
  failing::fail(manner.what, number, manner.error, manner.then);
  const bool succeeded = operation.run();
  const bool failed = failing::stop();
  const Possessions after;
  EXPECT_TRUE(failed || succeeded == operation.succeeds);
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_TRUE(noChildIsLeft());
  EXPECT_TRUE(!used_before || after.pieces_of_memory == before.pieces_of_memory);
  operation.judge({succeeded, manner.then == Then::everything});
  if (testing::Test::HasFailure()) return End::wrong;
  return failed ? End::failed : End::nothing_failed;
}

class AHostLibrary : public testing::TestWithParam<Operation> {};

TEST_P(AHostLibrary, DoesWhatItReportsWhateverFails) {
  int failures = 0;
  for (const Manner &manner : manners()) {
    for (const bool used_before : kThorough ? std::vector<bool>{false, true} : std::vector<bool>{true}) {
      End end = End::failed;
      for (int number = 1; end == End::failed; ++number) {
        const pid_t child =
            startChild([&] { return static_cast<int>(runOnce(GetParam(), manner, number, used_before)); });
        const int status = waitForChild(child);
        end = static_cast<End>(status);
        failures += end == End::failed ? 1 : 0;
        ASSERT_TRUE(end == End::failed || end == End::nothing_failed)
            << manner.what << " " << number << ", then " << static_cast<int>(manner.then) << ": "
            << strerror(manner.error) << (used_before ? ", used before" : "");
      }
    }
  }
  EXPECT_GT(failures, 0);
  torture::report("host_calls: " + std::string(GetParam().name) + ", failures: " + std::to_string(failures));
}

std::vector<Operation> operations() {
  std::vector<Operation> all;
  for (const auto &some :
       {configurationOperations(), eventLogOperations(), soundCardOperations(), executionOperations()})
    all.insert(all.end(), some.begin(), some.end());
  return all;
}

INSTANTIATE_TEST_SUITE_P(host_calls, AHostLibrary, testing::ValuesIn(operations()),
                         [](const auto &operation) { return operation.param.name; });

}  // namespace
