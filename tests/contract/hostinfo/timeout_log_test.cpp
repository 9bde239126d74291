// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The time-out counters, in a real segment of shared memory under a key of the test's own.
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "contract_test.h"
#include "real_function.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr key_t kDocumentedKey = 1519;

// Replaces the documented key, so that the counters of a real system stay as they are.
key_t ownKey() {
  static const key_t key = 0x5EF00000 + getpid();
  return key;
}

bool make_fails = false;
bool attach_fails = false;
int attached = 0;
Lines requests;
Lines attachments;  // the address and the flags of each

}  // namespace
}  // namespace contract

extern "C" {

int shmget(key_t key, size_t size, int flags) noexcept {
  static auto *const real = contract::realFunction<int(key_t, size_t, int)>("shmget");
  contract::requests.push_back("shmget " + std::to_string(key) + " " + std::to_string(size) + " " +
                               std::to_string(flags));
  if (contract::make_fails) {
    errno = ENOSPC;
    return -1;
  }
  return real(key == contract::kDocumentedKey ? contract::ownKey() : key, size, flags);
}

void *shmat(int id, const void *address, int flags) noexcept {
  static auto *const real = contract::realFunction<void *(int, const void *, int)>("shmat");
  contract::attachments.push_back(std::string(address == nullptr ? "anywhere " : "there ") + std::to_string(flags));
  if (contract::attach_fails) {
    errno = EACCES;
    return reinterpret_cast<void *>(-1);
  }
  void *const result = real(id, address, flags);
  if (result != reinterpret_cast<void *>(-1)) ++contract::attached;
  return result;
}

int shmdt(const void *address) noexcept {
  static auto *const real = contract::realFunction<int(const void *)>("shmdt");
  --contract::attached;
  return real(address);
}

}  // extern "C"

namespace contract {
namespace {

class TheTimeoutCounters : public testing::Test {
 protected:
  TheTimeoutCounters() {
    make_fails = attach_fails = false;
    attached = 0;
    requests.clear();
    attachments.clear();
  }
  ~TheTimeoutCounters() override {
    const int id = realFunction<int(key_t, size_t, int)>("shmget")(ownKey(), 0, 0);
    if (id != -1) shmctl(id, IPC_RMID, nullptr);
  }

  std::vector<uint32_t> counters() {
    void *const address = vl_attach_log_shm(vl_create_log_shm());
    std::vector<uint32_t> values(4);
    memcpy(values.data(), address, 16);
    shmdt(address);
    return values;
  }
  // The result of an addition, and what it printed.
  int add(int index) {
    OutputCapture output;
    const int result = vl_add_shm_timeout_log(index);
    message = output.text();
    return result;
  }

  std::string message;
};

TEST_F(TheTimeoutCounters, AreMadeByTheFirstAddition) {
  EXPECT_EQ(add(2), 0);
  EXPECT_THAT(requests, ElementsAre("shmget 1519 0 0", "shmget 1519 16 950"));
  EXPECT_THAT(counters(), ElementsAre(0, 0, 1, 0));
}

TEST_F(TheTimeoutCounters, AreFoundByTheNextAddition) {
  add(2);
  requests.clear();
  EXPECT_EQ(add(2), 0);
  EXPECT_EQ(add(0), 0);
  EXPECT_THAT(requests, ElementsAre("shmget 1519 0 0", "shmget 1519 0 0"));
  EXPECT_THAT(counters(), ElementsAre(1, 0, 2, 0));
}

TEST_F(TheTimeoutCounters, HaveTheSizeAndThePermissionsForEverybody) {
  shmid_ds state{};
  ASSERT_EQ(shmctl(vl_create_log_shm(), IPC_STAT, &state), 0);
  EXPECT_EQ(state.shm_segsz, 16U);
  EXPECT_EQ(state.shm_perm.mode & 0777U, 0666U);
}

TEST_F(TheTimeoutCounters, AreTheSameSegmentTwice) { EXPECT_EQ(vl_create_log_shm(), vl_create_log_shm()); }

TEST_F(TheTimeoutCounters, WrapAtTheirEnd) {
  auto *const values = static_cast<uint32_t *>(vl_attach_log_shm(vl_create_log_shm()));
  values[3] = UINT32_MAX;
  add(3);
  EXPECT_EQ(values[3], 0U);
  shmdt(values);
}

TEST_F(TheTimeoutCounters, AreSetToZero) {
  for (const int index : {0, 1, 2, 3}) add(index);
  void *const address = vl_attach_log_shm(vl_create_log_shm());
  vl_log_shm_init(address);
  shmdt(address);
  EXPECT_THAT(counters(), ElementsAre(0, 0, 0, 0));
}

TEST_F(TheTimeoutCounters, AreSetToZeroWithinTheirSixteenBytes) {
  std::string bytes(20, '#');
  vl_log_shm_init(bytes.data());
  EXPECT_EQ(bytes, std::string(16, '\0') + "####");
  vl_log_shm_init(nullptr);
}

TEST_F(TheTimeoutCounters, AreSharedByProcesses) {
  ASSERT_NE(vl_create_log_shm(), -1);  // the made-up key leads a child to what its parent has found
  const pid_t child = fork();
  if (child == 0) _exit(vl_add_shm_timeout_log(1) == 0 ? 0 : 1);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(add(1), 0);
  EXPECT_THAT(counters(), ElementsAre(0, 2, 0, 0));
}

// No count is lost, as each has a counter of its own.
TEST_F(TheTimeoutCounters, AreCountedByTwoProcessesAtOnce) {
  ASSERT_NE(vl_create_log_shm(), -1);
  std::vector<pid_t> children;
  for (const int index : {0, 3}) {
    children.push_back(fork());
    if (children.back() != 0) continue;
    int failures = 0;
    for (int i = 0; i < 1000; ++i) failures += vl_add_shm_timeout_log(index) == 0 ? 0 : 1;
    _exit(failures == 0 ? 0 : 1);
  }
  for (const pid_t child : children) {
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  EXPECT_THAT(counters(), ElementsAre(1000, 0, 0, 1000));
}

TEST_F(TheTimeoutCounters, AreAttachedAgainByEveryAddition) {
  for (const int index : {0, 0, 2}) add(index);
  EXPECT_THAT(attachments, ElementsAre("anywhere 0", "anywhere 0", "anywhere 0"));
}

TEST_F(TheTimeoutCounters, AreAttachedByTheirNumber) {
  EXPECT_EQ(add(1), 0);
  attachments.clear();
  void *const address = vl_attach_log_shm(vl_create_log_shm());
  EXPECT_THAT(attachments, ElementsAre("anywhere 0"));
  EXPECT_EQ(static_cast<uint32_t *>(address)[1], 1U);
  shmdt(address);
}

TEST_F(TheTimeoutCounters, ThatExistAlreadyAreNotSetToZero) {
  add(2);
  EXPECT_NE(vl_create_log_shm(), -1);
  EXPECT_THAT(counters(), ElementsAre(0, 0, 1, 0));
}

TEST_F(TheTimeoutCounters, AreDetachedAfterAnAddition) {
  add(1);
  EXPECT_EQ(attached, 0);
}

TEST_F(TheTimeoutCounters, AreNotAttachedWithoutASegment) { EXPECT_EQ(vl_attach_log_shm(-1), nullptr); }

TEST_F(TheTimeoutCounters, OfNoProfileAreRefusedBeforeASegmentIsMade) {
  for (const int index : {-1, 4, 2147483647}) EXPECT_EQ(add(index), -1);
  EXPECT_EQ(message, "");
  EXPECT_THAT(requests, IsEmpty());
}

TEST_F(TheTimeoutCounters, ThatCannotBeMadeAreReported) {
  make_fails = true;
  EXPECT_EQ(add(1), -1);
  EXPECT_EQ(message, std::string("shmget: ") + strerror(ENOSPC) + "\n");
}

TEST_F(TheTimeoutCounters, ThatCannotBeMadeForTheirReaderAreNotReported) {
  make_fails = true;
  OutputCapture output;
  EXPECT_EQ(vl_create_log_shm(), -1);
  EXPECT_EQ(output.text(), "");
}

TEST_F(TheTimeoutCounters, ThatCannotBeAttachedAreReported) {
  attach_fails = true;
  EXPECT_EQ(add(1), -1);
  EXPECT_EQ(message, std::string("shmat: ") + strerror(EACCES) + "\n");
}

}  // namespace
}  // namespace contract
