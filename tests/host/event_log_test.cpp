// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/vllog.h"
#include "private_host.h"
#include "processes.h"

namespace {

/// The log as other programs read it.
class LogReader {
 public:
  LogReader() {
    EXPECT_EQ(sqlite3_open_v2("/var/log/vl/event.db", &database_, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_busy_timeout(database_, 10000);
  }
  LogReader(const LogReader &) = delete;
  LogReader &operator=(const LogReader &) = delete;
  ~LogReader() { sqlite3_close(database_); }

  /// The columns of all rows, one after another.
  std::vector<std::string> query(const std::string &columns) {
    const std::string command = "SELECT " + columns + " FROM event ORDER BY id";
    std::vector<std::string> values;
    sqlite3_stmt *statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(database_, command.c_str(), -1, &statement, nullptr), SQLITE_OK);
    while (sqlite3_step(statement) == SQLITE_ROW)
      for (int column = 0; column < sqlite3_column_count(statement); ++column)
        values.emplace_back(reinterpret_cast<const char *>(sqlite3_column_text(statement, column)));
    EXPECT_EQ(sqlite3_finalize(statement), SQLITE_OK);
    return values;
  }

 private:
  sqlite3 *database_ = nullptr;
};

using Values = std::vector<std::string>;

class TheEventLog : public testing::Test {
 protected:
  void SetUp() override { mountMemory("/var/log"); }
  void TearDown() override { umount2("/var/log", MNT_DETACH); }
};

TEST_F(TheEventLog, NumbersItsLinesAndKeepsLevelAndText) {
  EXPECT_EQ(vq_sql_set_log(0, "Modified Channel 1 FPS: 30.00", 0), 0);
  EXPECT_EQ(vq_sql_set_log(1, "It's \"over\"; DROP TABLE event", 0), 0);
  EXPECT_EQ(LogReader().query("id, level, text"),
            (Values{"1", "0", "Modified Channel 1 FPS: 30.00", "2", "1", "It's \"over\"; DROP TABLE event"}));
}

TEST_F(TheEventLog, KeepsTheTimeOfEachLine) {
  const time_t before = time(nullptr);
  vq_sql_set_log(0, "now", 0);
  const time_t stored = std::stol(LogReader().query("time").at(0));
  EXPECT_GE(stored, before);
  EXPECT_LE(stored, time(nullptr));
}

TEST_F(TheEventLog, RefusesOtherLevelsAndNoText) {
  EXPECT_EQ(vq_sql_set_log(2, "x", 0), -1);
  EXPECT_EQ(vq_sql_set_log(-1, "x", 0), -1);
  EXPECT_EQ(vq_sql_set_log(0, nullptr, 0), -1);
  EXPECT_EQ(namesIn("/var/log"), Values{});
}

TEST_F(TheEventLog, MayBeReadByEverybodyInItsFolder) {
  const mode_t before = umask(0);
  EXPECT_EQ(vq_sql_set_log(0, "x", 0), 0);
  umask(before);
  EXPECT_EQ(std::filesystem::status("/var/log/vl").permissions(), std::filesystem::perms(0755));
}

TEST_F(TheEventLog, FailsWithoutAPlaceForIt) {
  makeReadOnly("/var/log");
  EXPECT_EQ(vq_sql_set_log(0, "x", 0), -1);
}

TEST_F(TheEventLog, FailsOnAFileThatIsNotADatabase) {
  makeFolder("/var/log/vl");
  writeFile("/var/log/vl/event.db", std::string(5000, 'x'));
  EXPECT_EQ(vq_sql_set_log(0, "x", 0), -1);
  EXPECT_EQ(readFile("/var/log/vl/event.db"), std::string(5000, 'x'));
}

TEST_F(TheEventLog, FailsWhereItsTableHasOtherColumns) {
  makeFolder("/var/log/vl");
  sqlite3 *database = nullptr;
  ASSERT_EQ(sqlite3_open("/var/log/vl/event.db", &database), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(database, "CREATE TABLE event(id)", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(database);
  EXPECT_EQ(vq_sql_set_log(0, "x", 0), -1);
}

constexpr int kProcesses = 6;
constexpr int kLinesEach = 30;

int logManyLines() {
  for (int line = 0; line < kLinesEach; ++line)
    if (vq_sql_set_log(0, "line", 0) != 0) return 1;
  return 0;
}

TEST_F(TheEventLog, TakesLinesOfManyProcessesWhileItIsRead) {
  ASSERT_EQ(vq_sql_set_log(0, "first", 0), 0);
  std::vector<pid_t> children(kProcesses);
  for (pid_t &child : children) child = startChild(logManyLines);
  std::size_t lines = 0;
  while (anyIsRunning(children)) {
    const std::size_t now = LogReader().query("id").size();
    EXPECT_GE(now, lines);
    lines = now;
  }
  for (pid_t child : children) EXPECT_EQ(waitForChild(child), 0);
  EXPECT_EQ(LogReader().query("id").size(), 1U + kProcesses * kLinesEach);
}

}  // namespace
