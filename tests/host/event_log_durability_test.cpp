// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/vllog.h"
#include "private_host.h"

namespace {

const std::string kFolder = "/var/log/vl";
std::vector<std::string> calls;
unsigned slept = 0;     // microseconds
std::string forbidden;  // a path that cannot be opened

int flush(int descriptor) {
  EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
  calls.push_back("flush " + std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string());
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}

}  // namespace

// These stand in for the C library's, also where the event log and its database call them.

int fsync(int descriptor) { return flush(descriptor); }
int fdatasync(int descriptor) { return flush(descriptor); }

int open(const char *path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if (path != forbidden) return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
  errno = EACCES;
  return -1;
}

int unlink(const char *path) noexcept {
  calls.push_back(std::string("remove ") + path);
  return static_cast<int>(syscall(SYS_unlink, path));
}

int usleep(useconds_t time) {
  slept += time;
  return 0;
}

namespace {

constexpr char kFlushOfTheFolderAbove[] = "flush /var/log";

class AStoredLine : public testing::Test {
 protected:
  void SetUp() override {
    mountMemory("/var/log");
    calls.clear();
  }
};

// With the journal still there the next reader would take the line out again.
TEST_F(AStoredLine, HasItsFolderOnTheDiskAndItsJournalOffTheDisk) {
  ASSERT_EQ(vq_sql_set_log(0, "a line", 0), 0);
  ASSERT_GT(calls.size(), 3U);
  EXPECT_EQ(calls.front(), kFlushOfTheFolderAbove);
  EXPECT_THAT(std::vector<std::string>(calls.end() - 2, calls.end()),
              testing::ElementsAre("remove " + kFolder + "/event.db-journal", "flush " + kFolder));
}

TEST_F(AStoredLine, HasItsFolderOnTheDiskWithoutStandardInputToo) {
  const int input = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  EXPECT_EQ(vq_sql_set_log(0, "a line", 0), 0);
  EXPECT_EQ(calls.front(), kFlushOfTheFolderAbove);
  dup2(input, STDIN_FILENO);
  close(input);
}

TEST_F(AStoredLine, DoesNotFlushTheFolderAboveAgain) {
  ASSERT_EQ(vq_sql_set_log(0, "first", 0), 0);
  calls.clear();
  ASSERT_EQ(vq_sql_set_log(0, "second", 0), 0);
  EXPECT_THAT(calls, testing::Not(testing::Contains(kFlushOfTheFolderAbove)));
}

TEST_F(AStoredLine, DoesNotNeedTheFolderAbove) {
  forbidden = "/var/log";
  EXPECT_EQ(vq_sql_set_log(0, "a line", 0), 0);
  forbidden.clear();
}

class ALine : public testing::TestWithParam<const char *> {};

TEST_P(ALine, WaitsFiveSecondsForAnotherWriterAndThenFails) {
  mountMemory("/var/log");
  ASSERT_EQ(vq_sql_set_log(0, "first", 0), 0);
  sqlite3 *writer = nullptr;
  ASSERT_EQ(sqlite3_open((kFolder + "/event.db").c_str(), &writer), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(writer, GetParam(), nullptr, nullptr, nullptr), SQLITE_OK);
  slept = 0;
  EXPECT_EQ(vq_sql_set_log(0, "second", 0), -1);
  EXPECT_EQ(slept, 5000000U);
  sqlite3_close(writer);
  EXPECT_EQ(vq_sql_set_log(0, "second", 0), 0);
}

INSTANTIATE_TEST_SUITE_P(ThatStartedToWriteOrToStore, ALine, testing::Values("BEGIN IMMEDIATE", "BEGIN EXCLUSIVE"));

}  // namespace
