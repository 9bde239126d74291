// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/mount.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/vllog.h"
#include "power_cuts.h"
#include "private_host.h"
#include "processes.h"
#include "recording.h"

namespace {

using recording::Recording;
using torture::Cut;
using torture::Order;
using Lines = std::vector<std::string>;

const std::string kLogDisk = "/var/log";
const std::string kDatabase = kLogDisk + "/vl/event.db";

int addLine(const std::string &line) {
  if (vq_sql_set_log(0, line.c_str(), 0) != 0) return 1;
  recording::noteStored(line);
  return 0;
}

void addOne() { EXPECT_EQ(addLine("new"), 0); }

void addInTwoProcesses() {
  const std::vector<pid_t> children = {startChild([] { return addLine("new"); }),
                                       startChild([] { return addLine("newer"); })};
  for (pid_t child : children) EXPECT_EQ(waitForChild(child), 0);
}

struct Additions {
  const char *name;
  bool database_is_there;
  void (*make)();
};

std::ostream &operator<<(std::ostream &out, const Additions &additions) { return out << additions.name; }

constexpr Additions kAdditions[] = {
    {"TheFirstLine", false, addOne}, {"OneMoreLine", true, addOne}, {"LinesOfTwoProcesses", true, addInTwoProcesses}};

Recording record(const Additions &additions) {
  if (additions.database_is_there) {
    EXPECT_EQ(addLine("old"), 0);
  }
  recording::begin(kLogDisk);
  additions.make();
  return recording::end();
}

/// The lines that a reader finds; what the database reports about itself if it is damaged.
Lines linesOrDamage() {
  sqlite3 *database = nullptr;
  Lines lines;
  auto add = [](void *to, int, char **values, char **) {
    static_cast<Lines *>(to)->emplace_back(values[0]);
    return 0;
  };
  sqlite3_open_v2(kDatabase.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
  sqlite3_exec(database, "PRAGMA integrity_check", add, &lines, nullptr);
  if (lines == Lines{"ok"}) {
    lines.clear();
    sqlite3_exec(database, "SELECT text FROM event ORDER BY id", add, &lines, nullptr);
  }
  sqlite3_close(database);
  return lines;
}

bool isIn(const Lines &lines, const std::string &line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

/// The lines of before, those that were reported as stored, and none but these and those under way.
bool holdsTheRules(const Additions &additions, const Cut &cut) {
  const Lines lines = linesOrDamage();
  const Lines possible = {"old", "new", "newer"};
  return (!additions.database_is_there || isIn(lines, "old")) &&
         std::all_of(cut.stored.begin(), cut.stored.end(), [&](const auto &line) { return isIn(lines, line); }) &&
         std::all_of(lines.begin(), lines.end(), [&](const auto &line) { return isIn(possible, line); });
}

class ALogsPowerCut : public testing::Test {
 protected:
  void SetUp() override { mountMemory(kLogDisk); }
  void TearDown() override { umount2(kLogDisk.c_str(), MNT_DETACH); }
};

class WhileLinesAreAdded : public ALogsPowerCut, public testing::WithParamInterface<Additions> {};

TEST_P(WhileLinesAreAdded, LeavesWholeLinesAndLosesNoneThatWasStored) {
  const Recording recording = record(GetParam());
  const int states = torture::forEachCut(recording, Order::weakest, torture::kWholeCalls, [&](const Cut &cut) {
    SCOPED_TRACE("after " + std::to_string(cut.operations) + " operations");
    torture::materialise(kLogDisk, cut.files);
    EXPECT_TRUE(holdsTheRules(GetParam(), cut));
    EXPECT_EQ(addLine("one more"), 0);
  });
  torture::reportCuts(GetParam().name, recording, torture::kWholeCalls, states);
  EXPECT_GT(states, 10);
}

INSTANTIATE_TEST_SUITE_P(APowerCut, WhileLinesAreAdded, testing::ValuesIn(kAdditions),
                         [](const auto &instance) { return std::string(instance.param.name); });

class ALineWithoutAFlush : public ALogsPowerCut {
 protected:
  static int brokenWithoutFlushOf(const std::string &path) {
    const Additions &additions = kAdditions[1];
    const Recording recording = torture::withoutFlushOf(path, record(additions));
    int count = 0;
    torture::forEachCut(recording, Order::journal, torture::kWholeCalls, [&](const Cut &cut) {
      torture::materialise(kLogDisk, cut.files);
      count += holdsTheRules(additions, cut) ? 0 : 1;
    });
    return count;
  }
};

TEST_F(ALineWithoutAFlush, OfTheDatabaseIsLost) { EXPECT_GT(brokenWithoutFlushOf(kDatabase), 0); }

TEST_F(ALineWithoutAFlush, OfTheFolderIsLost) { EXPECT_GT(brokenWithoutFlushOf(kLogDisk + "/vl"), 0); }

}  // namespace
