// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/vllog.h"
#include "private_host.h"

namespace {

const std::string kFolder = "/var/log/vl";
std::vector<std::string> calls;
unsigned slept = 0;  // microseconds

int flush(int descriptor) {
  calls.push_back("flush " + std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string());
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}

}  // namespace

// These stand in for the C library's, also where the event log and its database call them.

int fsync(int descriptor) { return flush(descriptor); }
int fdatasync(int descriptor) { return flush(descriptor); }

int unlink(const char *path) noexcept {
  calls.push_back(std::string("remove ") + path);
  return static_cast<int>(syscall(SYS_unlink, path));
}

int usleep(useconds_t time) {
  slept += time;
  return 0;
}

namespace {

// With the journal still there the next reader would take the line out again.
TEST(AStoredLine, HasItsFolderOnTheDiskAndItsJournalOffTheDisk) {
  mountMemory("/var/log");
  calls.clear();
  ASSERT_EQ(vq_sql_set_log(0, "a line", 0), 0);
  ASSERT_GT(calls.size(), 3U);
  EXPECT_EQ(calls.front(), "flush /var/log");
  EXPECT_THAT(std::vector<std::string>(calls.end() - 2, calls.end()),
              testing::ElementsAre("remove " + kFolder + "/event.db-journal", "flush " + kFolder));
}

TEST(ALine, WaitsFiveSecondsForAnotherWriterAndThenFails) {
  mountMemory("/var/log");
  ASSERT_EQ(vq_sql_set_log(0, "first", 0), 0);
  sqlite3 *writer = nullptr;
  ASSERT_EQ(sqlite3_open((kFolder + "/event.db").c_str(), &writer), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(writer, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  slept = 0;
  EXPECT_EQ(vq_sql_set_log(0, "second", 0), -1);
  EXPECT_EQ(slept, 5000000U);
  sqlite3_close(writer);
  EXPECT_EQ(vq_sql_set_log(0, "second", 0), 0);
}

}  // namespace
