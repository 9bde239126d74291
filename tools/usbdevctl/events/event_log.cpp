// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/event_log.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>

namespace usbdevctl {

namespace {

constexpr int kBusyMilliseconds = 5000;  // how long a query waits for a writer

constexpr char kLast[] = "SELECT id, time, level, text FROM (SELECT * FROM event ORDER BY id DESC LIMIT ?) ORDER BY id";
constexpr char kAfter[] = "SELECT id, time, level, text FROM event WHERE id > ? ORDER BY id";

struct Finalize {
  void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

std::string textOf(sqlite3_stmt *row, int column) {
  const void *bytes = sqlite3_column_blob(row, column);
  const int size = sqlite3_column_bytes(row, column);
  return bytes ? std::string(static_cast<const char *>(bytes), static_cast<std::size_t>(size)) : std::string();
}

Event eventOf(sqlite3_stmt *row) {
  return {sqlite3_column_int64(row, 0), sqlite3_column_int64(row, 1), sqlite3_column_int(row, 2), textOf(row, 3)};
}

}  // namespace

void EventLog::Close::operator()(sqlite3 *database) const { sqlite3_close(database); }

bool EventLog::exists(const std::string &file) {
  struct stat found = {};
  if (stat(file.c_str(), &found) == 0) return found.st_size > 0;
  return errno != ENOENT && errno != ENOTDIR;  // to open it will tell what is wrong
}

EventLog::EventLog(const std::string &file) : file_(file) {
  sqlite3 *opened = nullptr;
  const int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
  database_.reset(opened);  // set on failure too, and has the error
  if (result != SQLITE_OK) {
    fail();
  } else {
    sqlite3_busy_timeout(opened, kBusyMilliseconds);
  }
}

EventLog::~EventLog() = default;

std::string EventLog::failure() const { return "cannot read the event log " + file_ + ": " + error_; }

void EventLog::fail() { error_ = database_ ? sqlite3_errmsg(database_.get()) : "out of memory"; }

std::vector<Event> EventLog::last(int count) { return query(kLast, count); }

std::vector<Event> EventLog::after(std::int64_t id) { return query(kAfter, id); }

std::vector<Event> EventLog::query(const char *statement, std::int64_t argument) {
  std::vector<Event> events;
  sqlite3_stmt *prepared = nullptr;
  if (!error_.empty()) return events;
  if (sqlite3_prepare_v2(database_.get(), statement, -1, &prepared, nullptr) != SQLITE_OK) {
    fail();
    return events;
  }
  const Statement owner(prepared);
  sqlite3_bind_int64(prepared, 1, argument);
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(prepared)) == SQLITE_ROW) events.push_back(eventOf(prepared));
  if (result != SQLITE_DONE) fail();
  return events;
}

}  // namespace usbdevctl
