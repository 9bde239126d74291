// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>

#include "operation.h"
#include "platform/vllog.h"
#include "private_host.h"

namespace {

constexpr char kDatabase[] = "/var/log/vl/event.db";

/// Also finishes what an interrupted writer left undone, as the next writer does.
int linesInTheEventLog() {
  sqlite3 *database = nullptr;
  sqlite3_stmt *count = nullptr;
  int lines = 0;
  sqlite3_open_v2(kDatabase, &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  if (sqlite3_prepare_v2(database, "SELECT count(*) FROM event", -1, &count, nullptr) == SQLITE_OK) {
    EXPECT_EQ(sqlite3_step(count), SQLITE_ROW);
    lines = sqlite3_column_int(count, 0);
  }
  sqlite3_finalize(count);
  sqlite3_close(database);
  return lines;
}

Operation logging(const std::string &which, int lines_before) {
  const auto prepare = [lines_before] {
    std::filesystem::remove_all("/var/log/vl");
    for (int line = 0; line < lines_before; ++line) EXPECT_EQ(vq_sql_set_log(0, "earlier", 0), 0);
  };
  return {"Log" + which + "Line", prepare, [] { return vq_sql_set_log(1, "a line", 0) == 0; },
          [lines_before](Result result) {
            // A line is there, and reported as a failure, where only its folder could not be flushed.
            const int lines = linesInTheEventLog() - lines_before;
            EXPECT_TRUE(lines == 1 || (lines == 0 && !result.succeeded));
            EXPECT_EQ(vq_sql_set_log(0, "a later line", 0), 0);
          }};
}

}  // namespace

std::vector<Operation> eventLogOperations() { return {logging("TheFirst", 0), logging("Another", 1)}; }
