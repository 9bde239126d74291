// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "configuration.h"
#include "private_host.h"
#include "processes.h"

namespace {

constexpr std::array<const char *, 10> kSections{"ch0", "ch1", "ch2", "ch3", "ch4", "ch5", "ch6", "ch7", "ch8", "ch9"};

/// Gives all ten sections the same number, together with a text that makes the file long.
bool writeGeneration(Configuration &writer, int generation) {
  for (const char *section : kSections) {
    writer.setNumber(section, "profile", generation);
    writer.setText(section, "devname", std::string(3000, static_cast<char>('a' + generation % 26)));
  }
  return writer.close() == xmlcfg::kDone;
}

/// The generation of the file, -1 when it cannot be opened or is a mixture.
int readGeneration() {
  Configuration reader(kRead, kConfigFile);
  if (reader.openResult() != xmlcfg::kOpened) return -1;
  const int generation = reader.number("ch0", "profile");
  for (const char *section : kSections) {
    const std::string expected(3000, static_cast<char>('a' + generation % 26));
    if (reader.number(section, "profile") != generation || reader.text(section, "devname") != expected) return -1;
  }
  return generation;
}

class ConcurrentWriters : public testing::Test {
 protected:
  void SetUp() override {
    makeEmptyFolder(kConfigFolder);
    Configuration writer(kWrite, kConfigFile);
    ASSERT_TRUE(writeGeneration(writer, 0));
  }
};

#ifdef USBDEV_FEWER_CASES  // a process takes longer to start
constexpr int kRounds = 15;
constexpr int kKills = 50;
#else
constexpr int kRounds = 60;
constexpr int kKills = 200;
#endif
constexpr int kWriters = 10;
constexpr int kIncrementsEach = 40;

int incrementManyTimes() {
  for (int i = 0; i < kIncrementsEach; ++i) {
    Configuration writer(kWrite, kConfigFile);
    if (writer.openResult() != xmlcfg::kOpened || !writeGeneration(writer, writer.number("ch0", "profile") + 1))
      return 1;
  }
  return 0;
}

TEST_F(ConcurrentWriters, LoseNothingAndNeverShowHalfAFile) {
  std::vector<pid_t> children(kWriters);
  for (pid_t &child : children) child = startChild(incrementManyTimes);
  int latest = 0;
  while (anyIsRunning(children)) {
    const int generation = readGeneration();
    EXPECT_GE(generation, latest);
    latest = generation;
  }
  for (pid_t child : children) EXPECT_EQ(waitForChild(child), 0);
  EXPECT_EQ(readGeneration(), kWriters * kIncrementsEach);
}

/// Lets all writers go at once, each adding a key of its own; the keys that are in the file afterwards.
int keysOfSimultaneousCreators() {
  int gate[2] = {-1, -1};
  if (pipe(gate) != 0) return -1;
  std::vector<pid_t> children;
  for (const char *section : kSections)
    children.push_back(startChild([&] {
      close(gate[1]);
      char none = 0;
      if (read(gate[0], &none, 1) != 0) return 1;
      Configuration writer(kWrite, kConfigFile);
      return writer.setNumber(section, "profile", 1) == xmlcfg::kDone ? writer.close() : 1;
    }));
  close(gate[0]);
  close(gate[1]);  // the last writing end: every child reads the end of the file
  for (pid_t child : children) EXPECT_EQ(waitForChild(child), 0);
  Configuration reader(kRead, kConfigFile);
  return static_cast<int>(std::count_if(kSections.begin(), kSections.end(),
                                        [&](const char *section) { return reader.number(section, "profile") == 1; }));
}

TEST_F(ConcurrentWriters, CreateAMissingFileOnce) {
  for (int round = 0; round < kRounds; ++round) {
    ASSERT_EQ(unlink(kConfigFile.c_str()), 0);
    ASSERT_EQ(keysOfSimultaneousCreators(), static_cast<int>(kSections.size())) << "in round " << round;
  }
}

/// Writes one generation after the other until it is killed; a byte in the pipe reports that it has begun.
int writeForEver(int pipe_end, int generation) {
  if (write(pipe_end, "b", 1) != 1) return 1;
  for (;;) {
    Configuration writer(kWrite, kConfigFile);
    if (!writeGeneration(writer, ++generation)) return 1;
  }
}

class AKilledWriter : public ConcurrentWriters {
 protected:
  void SetUp() override {
    ConcurrentWriters::SetUp();
    ASSERT_EQ(pipe(begun_), 0);
  }
  void TearDown() override {
    close(begun_[0]);
    close(begun_[1]);
  }

  void killAtRandomMoment(int generation, int patience = 1) {
    const pid_t child = startChild([&] { return writeForEver(begun_[1], generation); });
    char begun = 0;
    ASSERT_EQ(read(begun_[0], &begun, 1), 1);
    std::this_thread::sleep_for(std::chrono::microseconds(moment_(random_)) * patience);
    kill(child, SIGKILL);
    EXPECT_EQ(waitForChild(child), -1) << "it was to end by the signal";
  }

 private:
  int begun_[2] = {-1, -1};
  std::mt19937 random_{20240229};
  std::uniform_int_distribution<int> moment_{0, 3000};
};

TEST_F(AKilledWriter, LeavesTheOldOrTheNewFile) {
  int generation = 0;
  // On a busy machine it takes more of them, or more time, until a writer comes to its first replacement.
  for (int kills = 0; kills < kKills || (generation == 0 && kills < 20000); ++kills) {
    killAtRandomMoment(generation, generation == 0 ? 1 + kills / kKills : 1);
    const int found = readGeneration();
    ASSERT_GE(found, generation) << "after " << kills << " kills";
    generation = found;
  }
  EXPECT_GT(generation, 0) << "no writer came to its first replacement";
}

TEST_F(AKilledWriter, LeavesNothingThatTheNextOneDoesNotRemove) {
  killAtRandomMoment(0);
  writeFile(kConfigFolder + "/.usbdev.conf.new", "<half");
  Configuration writer(kWrite, kConfigFile);
  EXPECT_TRUE(writeGeneration(writer, 1000));
  EXPECT_EQ(readGeneration(), 1000);
  EXPECT_THAT(namesIn(kConfigFolder), testing::ElementsAre("usbdev.conf"));
}

}  // namespace
