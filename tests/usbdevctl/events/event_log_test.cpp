// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/event_log.h"

#include <gmock/gmock.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "events/event_text.h"

namespace {

using testing::HasSubstr;
using usbdevctl::addEvent;
using usbdevctl::Event;
using usbdevctl::EventLog;
using usbdevctl::eventText;
using usbdevctl::Json;

// A database in a folder of its own, as the host's event log makes it.
class AnEventLog : public testing::Test {
 protected:
  void SetUp() override {
    char folder[] = "/tmp/usbdevctl-test-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    folder_ = folder;
    file_ = folder_ + "/event.db";
  }

  void TearDown() override {
    unlink(file_.c_str());
    rmdir(folder_.c_str());
  }

  void run(const std::string &statement) const {
    sqlite3 *database = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
  }

  void fill(int events) const {
    run("CREATE TABLE event(id INTEGER PRIMARY KEY, time INTEGER, level INTEGER, text TEXT)");
    for (int number = 1; number <= events; ++number) {
      run("INSERT INTO event(time, level, text) VALUES(1000, 1, 'event " + std::to_string(number) + "')");
    }
  }

  static std::string texts(const std::vector<Event> &events) {
    std::string all;
    for (const Event &event : events) all += std::to_string(event.id) + "=" + event.text + ";";
    return all;
  }

  std::string folder_;
  std::string file_;
};

TEST_F(AnEventLog, GivesItsNewestEventsOldestFirst) {
  fill(4);
  EventLog log(file_);
  EXPECT_EQ(texts(log.last(2)), "3=event 3;4=event 4;");
  EXPECT_EQ(log.error(), "");
}

TEST_F(AnEventLog, GivesWhatCameAfterAnEvent) {
  fill(3);
  EventLog log(file_);
  EXPECT_EQ(texts(log.after(3)), "");
  run("INSERT INTO event(time, level, text) VALUES(1001, 0, 'later')");
  EXPECT_EQ(texts(log.after(3)), "4=later;");
}

TEST_F(AnEventLog, GivesTimeAndLevel) {
  fill(1);
  EventLog log(file_);
  const std::vector<Event> events = log.last(1);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].time, 1000);
  EXPECT_EQ(events[0].level, 1);
}

TEST_F(AnEventLog, IsNotMadeByReading) {
  EventLog log(file_);
  EXPECT_NE(log.error(), "");
  EXPECT_EQ(texts(log.last(1)), "");
  EXPECT_NE(access(file_.c_str(), F_OK), 0);
}

TEST_F(AnEventLog, ExistsOnceSomethingWasLogged) {
  EXPECT_FALSE(EventLog::exists(file_));
  std::ofstream(file_).close();
  EXPECT_FALSE(EventLog::exists(file_));
  fill(1);
  EXPECT_TRUE(EventLog::exists(file_));
}

TEST_F(AnEventLog, ThatIsDamagedIsAnError) {
  std::ofstream(file_) << std::string(2000, 'x');
  EventLog log(file_);
  log.last(1);
  EXPECT_THAT(log.error(), HasSubstr("not a database"));
}

TEST_F(AnEventLog, DamagedAfterItsBeginningIsAnError) {
  constexpr int kPage = 4096;
  fill(0);
  run("WITH RECURSIVE row(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM row WHERE n < 1000) "
      "INSERT INTO event SELECT n, 1000, 1, 'event' FROM row");
  std::fstream(file_, std::ios::in | std::ios::out).seekp(2L * kPage) << std::string(4L * kPage, 'x');
  EventLog log(file_);
  log.after(0);
  EXPECT_THAT(log.error(), HasSubstr("malformed"));
}

TEST_F(AnEventLog, WithoutItsTableIsAnError) {
  run("CREATE TABLE other(id INTEGER)");
  EventLog log(file_);
  log.last(1);
  EXPECT_THAT(log.error(), HasSubstr("no such table"));
}

class AnEvent : public testing::Test {
 protected:
  void SetUp() override {
    setenv("TZ", "UTC-2", 1);  // two hours ahead of UTC
    tzset();
  }

  void TearDown() override {
    unsetenv("TZ");
    tzset();
  }

  const Event warning_ = {7, 1709626500, 1, "Camera[3-1 Cam\033]"};  // 2024-03-05 08:15:00 UTC
  const Event information_ = {8, 1709626500, 0, "text"};
};

TEST_F(AnEvent, IsALineInLocalTime) {
  EXPECT_EQ(eventText(warning_, false), "2024-03-05 10:15:00  warning  Camera[3-1 Cam\\x1b]\n");
  EXPECT_EQ(eventText(information_, false), "2024-03-05 10:15:00  info     text\n");
}

TEST_F(AnEvent, OfLevelWarningStandsOut) {
  EXPECT_THAT(eventText(warning_, true), HasSubstr("\033[33mwarning\033[0m"));
  EXPECT_EQ(eventText(information_, true), eventText(information_, false));
}

TEST_F(AnEvent, IsJsonInUniversalTime) {
  EXPECT_EQ(addEvent(Json::document(), warning_).line(),
            R"({"schema":1,"id":7,"time":"2024-03-05T08:15:00Z","level":"warning","text":"Camera[3-1 Cam\u001b]"})"
            "\n");
}

}  // namespace
