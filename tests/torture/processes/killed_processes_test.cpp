// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Four processes use one host, and every 50 operations a random one of them is killed and replaced.
#include <gmock/gmock.h>
#include <poll.h>
#include <sched.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/shm.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>

#include "configuration.h"
#include "operations.h"
#include "private_host.h"
#include "processes.h"
#include "thoroughness.h"

namespace torture {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::IsSubsetOf;
using testing::Le;

constexpr char kChannelFile[] = "/etc/config/usbdev.conf";
constexpr char kApplication[] = "/mnt/ext/opt/apps/Velmora2";
constexpr int kOperationsPerKill = 50;
constexpr int kPatience = 120'000;  // milliseconds for one operation of any process

unsigned seed() {
  const char *given = std::getenv("USBDEV_SEED");
  return given == nullptr ? 20240305U : static_cast<unsigned>(std::atoi(given));
}

class Processes : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(unshare(CLONE_NEWIPC), 0);
    mountMemory("/tmp");
    makeFolder("/tmp");
    for (int i = 1; i <= 4; ++i) makeFolder(std::string(kApplication) + "/hls/channel" + std::to_string(i));
    writeFile(kChannelFile, "<velmora/>\n");
    describeChannels();
    done_ = new (mmap(nullptr, sizeof(Done), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Done{};
    ASSERT_EQ(pipe2(finished_, O_CLOEXEC), 0);
    for (int process = 0; process < kProcesses; ++process) start(process);
  }

  void TearDown() override {
    for (const int end : finished_) close(end);
    munmap(done_, sizeof(Done));
  }

  void runAndKill(int operations) {
    for (int count = 1; count <= operations; ++count) {
      pollfd finished{finished_[0], POLLIN, 0};
      ASSERT_EQ(poll(&finished, 1, kPatience), 1) << "nobody goes on";
      char byte = 0;
      ASSERT_EQ(::read(finished_[0], &byte, 1), 1);
      if (count % kOperationsPerKill == 0) killOne();
    }
  }

  void stop() {
    done_->stop = true;
    for (const pid_t child : children_) EXPECT_EQ(waitForChild(child), 0);
  }

  void killOne() {
    const auto process = static_cast<int>(random_() % kProcesses);
    const pid_t child = children_[process];
    kill(child, SIGKILL);
    EXPECT_EQ(waitForChild(child), -1);
    ++kills_;
    expectWholeConfiguration();
    start(process);
  }

  /// Whole, and at most one file that a killed writer left for each file, which the next writer removes.
  static void expectWholeConfiguration() {
    Configuration reader(kRead, kChannelFile);
    EXPECT_EQ(reader.openResult(), xmlcfg::kOpened);
    for (int i = 0; i < kProcesses; ++i) {
      EXPECT_EQ(reader.number(("ch" + std::to_string(i)).c_str(), "profile"), i);
    }
    EXPECT_THAT(namesIn("/etc/config"),
                IsSubsetOf({"usbdev.conf", ".usbdev.conf.new", ".usbdev.conf.first", "vl_pfstate.conf",
                            ".vl_pfstate.conf.new", ".vl_pfstate.conf.first"}));
  }

  static void expectNothingLeftByTheNextWriter() {
    EXPECT_EQ(mn_set_usbchn_sps(0, 1), 0);
    EXPECT_EQ(mn_update_pfstate(0, 1), 0);
    EXPECT_THAT(namesIn("/etc/config"), testing::ElementsAre("usbdev.conf", "vl_pfstate.conf"));
  }

  void expectTimeoutsCounted() const {
    const auto *counters = static_cast<const unsigned *>(vl_attach_log_shm(vl_create_log_shm()));
    ASSERT_NE(counters, nullptr);
    for (int i = 0; i < kProcesses; ++i) {
      const int counted = static_cast<int>(counters[i]);
      EXPECT_THAT(counted, AllOf(Ge(done_->timeouts[i].load()), Le(done_->timeouts[i] + kills_)));
    }
    shmdt(counters);
  }

  void expectEventLogWhole() const {
    EXPECT_EQ(askEventLog("PRAGMA integrity_check"), "ok");
    const int lines = std::stoi(askEventLog("SELECT count(*) FROM event WHERE text LIKE '%channel name%'"));
    EXPECT_THAT(lines, AllOf(Ge(done_->event_lines.load()), Le(done_->event_lines + kills_)));
  }

  /// A process that is killed between making a link and storing its name leaves one that nothing leads to.
  void expectAtMostOneLostLinkForEachKill() const {
    int links = 0;
    for (const auto &entry : std::filesystem::directory_iterator(kApplication)) links += entry.is_symlink() ? 1 : 0;
    EXPECT_LE(links, kProcesses + kills_);
  }

  static void expectEveryCameraFoundAgain() {
    for (int process = 0; process < kProcesses; ++process) {
      EXPECT_EQ(reportEvent(process, true), kProcesses + process);
    }
    Configuration reader(kRead, kChannelFile);
    for (int process = 0; process < kProcesses; ++process) {
      const std::string section = "ch" + std::to_string(kProcesses + process);
      EXPECT_EQ(reader.number(section.c_str(), "exists"), 1);
      EXPECT_EQ(reader.text(section.c_str(), "usbslot"), portOf(process));
    }
    EXPECT_EQ(reader.number("ch8", "exists", 0), 0);
    EXPECT_EQ(reader.number("ch9", "exists", 0), 0);
  }

  Done *done_ = nullptr;
  int kills_ = 0;

 private:
  void start(int process) {
    const auto chance = static_cast<unsigned>(random_());
    children_[process] = startChild([&] {
      if (std::freopen("/dev/null", "w", stderr) == nullptr) return 1;  // the host has few of the tools that are asked
      Operations operations(process, chance, *done_);
      while (!done_->stop) {
        operations.next();
        if (write(finished_[1], "d", 1) != 1) return 1;
      }
      return 0;
    });
  }

  /// A profile and a camera without one for each process.
  static void describeChannels() {
    Configuration writer(kWrite, kChannelFile);
    for (int i = 0; i < kProcesses; ++i) {
      const std::string section = "ch" + std::to_string(i);
      writer.setNumber(section.c_str(), "exists", 1);
      writer.setNumber(section.c_str(), "profile", i);
      writer.setText(section.c_str(), "usbslot", std::to_string(i + 1) + "-1");
    }
    writer.close();
    for (int i = 0; i < kProcesses; ++i) EXPECT_EQ(reportEvent(i, true), kProcesses + i);
  }

  static std::string askEventLog(const char *question) {
    sqlite3 *database = nullptr;
    EXPECT_EQ(sqlite3_open_v2("/var/log/vl/event.db", &database, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    std::string answer;
    const auto keep = [](void *kept, int, char **values, char **) {
      *static_cast<std::string *>(kept) = values[0];
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, question, keep, &answer, nullptr), SQLITE_OK);
    sqlite3_close(database);
    return answer;
  }

  std::mt19937 random_{seed()};
  pid_t children_[kProcesses] = {};
  int finished_[2] = {-1, -1};
};

TEST_F(Processes, ThatAreKilledDamageNothingAndKeepNobodyWaiting) {
  const int operations = times(400, 10'000);
  std::printf("USBDEV_SEED=%u\n", seed());
  runAndKill(operations);
  stop();
  EXPECT_EQ(done_->failures, 0) << "operations that failed in a process that was not killed in them";
  expectWholeConfiguration();
  expectNothingLeftByTheNextWriter();
  expectTimeoutsCounted();
  expectEventLogWhole();
  expectAtMostOneLostLinkForEachKill();
  expectEveryCameraFoundAgain();
  report("processes: " + std::to_string(operations) + " operations of 4 processes, " + std::to_string(kills_) +
         " killed, nothing damaged or left locked");
}

}  // namespace
}  // namespace torture
