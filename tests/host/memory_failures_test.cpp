#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>
#include <climits>
#include <string>

#include "configuration_change.h"
#include "failing_memory.h"
#include "platform/alsa_ctl.h"
#include "platform/orda_exec.h"
#include "platform/vllog.h"
#include "private_host.h"

namespace {

constexpr char kBefore[] = "<velmora><ch0><exists>0</exists></ch0></velmora>";

/// Rounds of one operation: the first has all the memory that it wants, in the next its first piece is refused, then
/// its second, and so on, until none was refused. After the first, in which libraries may take what they never free,
/// no round may keep memory.
class Rounds {
 public:
  Rounds() = default;
  Rounds(const Rounds &) = delete;
  Rounds &operator=(const Rounds &) = delete;
  ~Rounds() { EXPECT_GT(number_, 2) << "it takes no memory"; }

  bool more() const { return number_ <= 1 || refused_; }
  bool refused() const { return refused_; }

  void begin() {
    pieces_before_ = failing::piecesInUse();
    failing::fail("memory", number_ == 0 ? INT_MAX : number_, ENOMEM);
  }
  void end() {
    const int kept = failing::piecesInUse() - pieces_before_;
    refused_ = failing::stop();
    EXPECT_TRUE(number_ == 0 || kept == 0) << kept << " with piece " << number_ << " refused";
    ++number_;
  }

 private:
  int number_ = 0;
  int pieces_before_ = 0;
  bool refused_ = false;
};

class AConfigurationChange : public testing::TestWithParam<const char *> {};

TEST_P(AConfigurationChange, IsMadeOrReportedWhicheverMemoryIsRefused) {
  for (Rounds rounds; rounds.more();) {
    ConfigurationChange change(GetParam());
    rounds.begin();
    change.run();
    rounds.end();
    change.expectRules();
    EXPECT_TRUE(change.stored() || rounds.refused());
    EXPECT_NE(change.openResult(), xmlcfg::kDamaged);
  }
}

INSTANTIATE_TEST_SUITE_P(OfAFileThatIsThereOrMissing, AConfigurationChange, testing::Values(kBefore, ""));

TEST(AStoredValue, IsReadWithoutMemory) {
  const ConfigurationChange file("<velmora><ch0><exists>7</exists><devname>a name</devname></ch0></velmora>");
  Configuration reader(kRead, ConfigurationChange::kFile);
  char name[16] = "";
  failing::fail("memory", failing::kEvery, ENOMEM);
  const int number = reader.number("ch0", "exists");
  xmlcfg_get_str(reader.handle(), "", name, sizeof name, "velmora", "ch0", "devname", nullptr);
  EXPECT_FALSE(failing::stop());
  EXPECT_EQ(number, 7);
  EXPECT_STREQ(name, "a name");
}

TEST(AProgram, RunsOrFailsWhicheverMemoryIsRefused) {
  for (Rounds rounds; rounds.more();) {
    rounds.begin();
    const int status = orda_exec(0, 0, 0, "/bin/sh", "-c", "exit 42", nullptr);
    rounds.end();
    EXPECT_EQ(status, rounds.refused() ? -1 : 42);
  }
}

class ASoundCard : public testing::Test {
 protected:
  void SetUp() override {
    const std::string folder = "/run/usbdev-sim/cards/card3/";
    makeEmptyFolder(folder);
    writeFile(folder + "name", "A Card With a Name of More Than Fifteen Characters\n");
    for (const char *fact : {"entry_count", "channel_mode", "channel_count"}) writeFile(folder + fact, "1\n");
  }
};

TEST_F(ASoundCard, IsDescribedWhollyOrNotAtAllWhicheverMemoryIsRefused) {
  for (Rounds rounds; rounds.more();) {
    _acard_info info{};
    rounds.begin();
    const int result = ac_get_Acard_info(3, &info);
    rounds.end();
    EXPECT_EQ(result, rounds.refused() ? -1 : 0);
    EXPECT_STREQ(info.name, result == 0 ? "A Card With a Name of More Than Fifteen Characters" : "");
    EXPECT_EQ(info.channel_mode, result == 0 ? 1 : 0);
  }
}

TEST_F(ASoundCard, HasItsVolumeSetOrFailsWhicheverMemoryIsRefused) {
  for (Rounds rounds; rounds.more();) {
    rounds.begin();
    const int result = ac_set_audio_volume(3, 70);
    rounds.end();
    EXPECT_EQ(result, rounds.refused() ? -1 : 0);
  }
  EXPECT_EQ(readFile("/run/usbdev-sim/cards/card3/volume"), "70\n");
}

TEST(AnAbsentSoundCard, IsAFailureWhicheverMemoryIsRefused) {
  for (Rounds rounds; rounds.more();) {
    _acard_info info{};
    rounds.begin();
    const int result = ac_get_Acard_info(1000000000, &info) + ac_set_audio_volume(1000000000, 70);
    rounds.end();
    EXPECT_EQ(result, -2);
  }
}

int linesInTheEventLog() {
  sqlite3 *database = nullptr;
  sqlite3_stmt *count = nullptr;
  EXPECT_EQ(sqlite3_open_v2("/var/log/vl/event.db", &database, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
  EXPECT_EQ(sqlite3_prepare_v2(database, "SELECT count(*) FROM event", -1, &count, nullptr), SQLITE_OK);
  EXPECT_EQ(sqlite3_step(count), SQLITE_ROW);
  const int lines = sqlite3_column_int(count, 0);
  sqlite3_finalize(count);
  sqlite3_close(database);
  return lines;
}

TEST(TheEventLog, HasALineMoreOrFailsWhicheverMemoryIsRefused) {
  ASSERT_EQ(vq_sql_set_log(0, "the first line", 0), 0);
  for (Rounds rounds; rounds.more();) {
    const int before = linesInTheEventLog();
    rounds.begin();
    const int result = vq_sql_set_log(0, "a line", 0);
    rounds.end();
    EXPECT_EQ(linesInTheEventLog(), result == 0 ? before + 1 : before);
    EXPECT_TRUE(result == 0 || rounds.refused());
  }
}

}  // namespace
