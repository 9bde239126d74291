// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The random identifiers of the links.
#include <unistd.h>

#include <string>

#include "contract_test.h"
#include "stream_links.h"

namespace contract {
namespace {

using testing::ElementsAre;

class AShareId : public ContractTest {
 protected:
  std::string idFrom(int random) {
    host.chance.random = random;
    return make();
  }
  // Nine bytes are all that a caller must provide.
  std::string make() {
    std::string out(16, '#');
    EXPECT_EQ(generate_ssid(out.data()), 0);
    EXPECT_EQ(out.substr(9), std::string(7, '#'));
    return out.c_str();
  }
};

TEST_F(AShareId, IsPaddedWithZerosToEightDigits) { EXPECT_EQ(idFrom(4711), "00004711"); }

TEST_F(AShareId, MayBeAllZeros) { EXPECT_EQ(idFrom(0), "00000000"); }

TEST_F(AShareId, MayBeAllNines) { EXPECT_EQ(idFrom(99999999), "99999999"); }

TEST_F(AShareId, IsTheRestBelowAHundredMillion) { EXPECT_EQ(idFrom(100000000), "00000000"); }

TEST_F(AShareId, TakesTheLargestRandomNumber) { EXPECT_EQ(idFrom(2147483647), "47483647"); }

TEST_F(AShareId, IsSeededFromProcessAndTimeAtEveryCall) {
  host.clock.stopAt("2023-11-14 22:13:20");
  make();
  make();
  EXPECT_EQ(host.chance.seedings, 2);
  EXPECT_EQ(host.chance.seed, static_cast<unsigned>(getpid()) + 1700000000U);
}

TEST_F(AShareId, IsTheSameTwiceWithinASecond) {
  host.clock.stopAt("2023-11-14 22:13:20");
  const std::string first = make();
  EXPECT_EQ(make(), first);
}

class ALinkHash : public ContractTest {
 protected:
  std::string hashFrom(const std::string &printed) {
    host.commands.prints(kUuidCommand, printed);
    return make();
  }
  std::string make() {
    std::string out = std::string(33, '\0') + "###";
    EXPECT_EQ(generate_hash(out.data()), 0);
    EXPECT_EQ(out.substr(33), "###");
    return out.c_str();
  }
};

TEST_F(ALinkHash, IsTheKernelsUuidWithoutItsHyphens) {
  EXPECT_EQ(hashFrom("1b4e28ba-2fa1-11d2-883f-0016d3cca427\n"), "1b4e28ba2fa111d2883f0016d3cca427");
}

TEST_F(ALinkHash, IsReadWithOneCommandThatIsClosed) {
  make();
  EXPECT_THAT(host.journal.lines(),
              ElementsAre(std::string("popen ") + kUuidCommand, std::string("pclose ") + kUuidCommand));
}

TEST_F(ALinkHash, IsMadeOfTheFirstLineOnly) { EXPECT_EQ(hashFrom("ab-cd\nef\n"), "abcd"); }

TEST_F(ALinkHash, LongerThanItsOutputIsCut) {
  EXPECT_EQ(hashFrom(std::string(33, 'a') + "\n"), std::string(32, 'a'));
  EXPECT_EQ(hashFrom(std::string(1000, 'b')), std::string(32, 'b'));
}

TEST_F(ALinkHash, IsNotChangedWhenTheCommandPrintsNothing) {
  char out[33] = "before";
  EXPECT_EQ(generate_hash(out), 0);
  EXPECT_STREQ(out, "before");
}

TEST_F(ALinkHash, IsNotChangedWhenTheCommandCannotStart) {
  host.commands.cannotStart(kUuidCommand);
  char out[33] = "before";
  EXPECT_EQ(generate_hash(out), 0);
  EXPECT_STREQ(out, "before");
}

struct Stripped {
  std::string in;
  std::string out;
  int result;
};

class AStrippedText : public testing::TestWithParam<Stripped> {};

TEST_P(AStrippedText, LosesHyphensAndItsTrailingRest) {
  std::string in = GetParam().in;
  std::string out(in.size() + 1, '#');
  EXPECT_EQ(strip(in.data(), out.data()), GetParam().result);
  EXPECT_STREQ(out.c_str(), GetParam().out.c_str());
}

INSTANTIATE_TEST_SUITE_P(OfEveryShape, AStrippedText,
                         testing::Values(Stripped{"ab-cd\n", "abcd", 5}, Stripped{" -x", " x", 3},
                                         Stripped{"\t\"a", "\t\"a", 3}, Stripped{"a \"\r\n", "a", 1},
                                         Stripped{"---", "", 3}, Stripped{"", "", 0}, Stripped{"\r\n", "", 0},
                                         Stripped{"a-\t", "a\t", 3}));

TEST(ALinkIdWithoutAPlace, IsNotMade) {
  char text[] = "ab-cd\n";
  EXPECT_EQ(generate_ssid(nullptr), 0);
  EXPECT_EQ(generate_hash(nullptr), 0);
  EXPECT_EQ(strip(nullptr, text), 0);
  EXPECT_EQ(strip(text, nullptr), 0);
  EXPECT_STREQ(text, "ab-cd\n");
}

TEST(AStrippedInput, IsTrimmedInPlace) {
  char in[] = "ab-cd \n";
  char out[8] = "";
  strip(in, out);
  EXPECT_STREQ(in, "ab-cd");
}

}  // namespace
}  // namespace contract
