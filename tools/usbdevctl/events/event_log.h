// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The host's event log, read while others write it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct sqlite3;

namespace usbdevctl {

inline constexpr char kEventLogFile[] = "/var/log/vl/event.db";

struct Event {
  std::int64_t id;
  std::int64_t time;  // seconds since 1970, UTC
  int level;          // 0 = information, 1 = warning
  std::string text;
};

class EventLog {
 public:
  /// The log is there once something was logged; a writer that has only just made the file has logged nothing yet.
  static bool exists(const std::string &file);

  /// Opens for reading only; a failure is in `error`.
  explicit EventLog(const std::string &file);
  ~EventLog();
  EventLog(const EventLog &) = delete;
  EventLog &operator=(const EventLog &) = delete;

  /// Empty without a failure; set by the first open or query that fails.
  const std::string &error() const { return error_; }

  /// The error with the name of the file.
  std::string failure() const;

  /// The newest events, oldest first.
  std::vector<Event> last(int count);

  /// The events that came after the one with this id, oldest first.
  std::vector<Event> after(std::int64_t id);

 private:
  std::vector<Event> query(const char *statement, std::int64_t argument);
  void fail();

  std::string file_;

  struct Close {
    void operator()(sqlite3 *database) const;
  };
  std::unique_ptr<sqlite3, Close> database_;
  std::string error_;
};

}  // namespace usbdevctl
