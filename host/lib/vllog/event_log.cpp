// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The event log: the table "event" (id, time in seconds since 1970 UTC, level, text) of one database. Each call opens
// the database again, so that a process can fork, or be killed, at any time.
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <memory>

#include "platform/vllog.h"

namespace {

constexpr char kFolderAbove[] = "/var/log";
constexpr char kFolder[] = "/var/log/vl";
constexpr char kDatabase[] = "/var/log/vl/event.db";
constexpr int kBusyMilliseconds = 5000;  // how long a line waits for other writers and readers
// A line that was stored stays stored after a power cut: with the usual setting the journal may come back, which takes
// the last line out again.
constexpr char kDurable[] = "PRAGMA synchronous=EXTRA";
constexpr char kTable[] =
    "CREATE TABLE IF NOT EXISTS event("
    "id INTEGER PRIMARY KEY AUTOINCREMENT, time INTEGER NOT NULL, level INTEGER NOT NULL, text TEXT NOT NULL)";
constexpr char kInsert[] = "INSERT INTO event(time, level, text) VALUES(?, ?, ?)";

struct CloseDatabase {
  void operator()(sqlite3 *database) const { sqlite3_close(database); }
};
struct FinalizeStatement {
  void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// A new folder has to be on the disk before what is in it can be.
void makeFolder() {
  if (mkdir(kFolder, 0755) != 0) return;
  int above = open(kFolderAbove, O_RDONLY | O_CLOEXEC);
  if (above < 0) return;
  fsync(above);
  close(above);
}

Database openDatabase() {
  makeFolder();
  sqlite3 *opened = nullptr;
  int result = sqlite3_open_v2(kDatabase, &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  Database database(opened);  // is set on failure too, and has to be closed then
  if (result != SQLITE_OK) return nullptr;
  sqlite3_busy_timeout(opened, kBusyMilliseconds);
  return database;
}

bool run(sqlite3 *database, const char *command) {
  return sqlite3_exec(database, command, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool insert(sqlite3 *database, int level, const char *text) {
  sqlite3_stmt *prepared = nullptr;
  if (sqlite3_prepare_v2(database, kInsert, -1, &prepared, nullptr) != SQLITE_OK) return false;
  Statement statement(prepared);
  sqlite3_bind_int64(prepared, 1, time(nullptr));
  sqlite3_bind_int(prepared, 2, level);
  sqlite3_bind_text(prepared, 3, text, -1, SQLITE_STATIC);
  return sqlite3_step(prepared) == SQLITE_DONE;  // not with a value that was not set, because none may be null
}

}  // namespace

/// Returns 0, or -1 for a level other than 0 and 1, for a null text, and when the line could not be stored.
extern "C" int vq_sql_set_log(int level, const char *text, int) {
  if ((level != 0 && level != 1) || !text) return -1;
  Database database = openDatabase();
  // The write lock comes first: two processes that both read and then want to write would block each other.
  if (!database || !run(database.get(), kDurable) || !run(database.get(), "BEGIN IMMEDIATE")) return -1;
  bool stored = run(database.get(), kTable) && insert(database.get(), level, text) && run(database.get(), "COMMIT");
  return stored ? 0 : -1;
}
