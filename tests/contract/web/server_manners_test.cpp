// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What logins make of servers that answer slowly, wrongly, too much or not at all.
#include <cstring>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "contract_test.h"
#include "hesitant_server.h"

namespace contract {
namespace {

using testing::Each;
using testing::ExitedWithCode;
using testing::SizeIs;

const std::string kStart = "<authSid><![CDATA[";
const std::string kEnd = "]]></authSid>";
const std::string kPassed = "<authPassed><![CDATA[";
const std::string kZero(1, '\0');

std::string session(const std::string &sid) { return kStart + sid + kEnd; }
std::string passed(const std::string &mark) { return kPassed + mark + "]]></authPassed>"; }
std::string filledTo(size_t size, const std::string &reply) { return std::string(size - reply.size(), ' ') + reply; }

Manner atOnce(const std::string &reply) { return reply.empty() ? Manner{} : Manner{{reply}}; }

Manner byteByByte(const std::string &reply) {
  Manner manner;
  for (const char byte : reply) manner.pieces.emplace_back(1, byte);
  return manner;
}

class AService : public ContractTest {
 protected:
  AService() {
    strcpy(record.host, "127.0.0.1");
    record.port = 58080;
    strcpy(record.user, "u");
    strcpy(record.password, "p");
  }
  // The session that a login is given, if any.
  std::optional<std::string> logIn(const Manner &manner) {
    std::string sid = "before" + std::string(122, '\0') + "###";
    const int result = ask(manner, [&] { return nas_auth(&record, sid.data()); });
    EXPECT_EQ(sid.substr(128), "###");
    if (result == 0) return sid.c_str();
    EXPECT_EQ(result, -1);
    EXPECT_STREQ(sid.c_str(), "before");
    return std::nullopt;
  }
  int checkSession(const Manner &manner) {
    return ask(manner, [&] { return nas_sid_auth(&record, "s1d"); });
  }
  int logOut(const Manner &manner) {
    return ask(manner, [&] { return nas_logout(&record, "s1d"); });
  }
  template <typename Question>
  int ask(const Manner &manner, Question question) {
    HesitantServer server(manner);
    host.network.serve(58080, server.port());
    OutputCapture errors;
    const int answer = question();
    said = errors.text();
    lengths = server.lengthsAskedFor();
    return answer;
  }

  NasServer record{};
  std::string said;
  std::vector<size_t> lengths;
};

struct Reply {
  const char *name;
  std::string bytes;
  std::optional<std::string> sid;
  bool valid = false;
};

void PrintTo(const Reply &reply, std::ostream *out) { *out << reply.name; }

class AReplyOfAService : public AService, public testing::WithParamInterface<Reply> {};

TEST_P(AReplyOfAService, IsTheSameAtOnceAndByteByByte) {
  for (const Manner &manner : {atOnce(GetParam().bytes), byteByByte(GetParam().bytes)}) {
    EXPECT_EQ(logIn(manner), GetParam().sid);
    EXPECT_EQ(checkSession(manner), GetParam().valid ? 0 : -1);
    EXPECT_EQ(logOut(manner), static_cast<int>(GetParam().bytes.size()));
    EXPECT_EQ(said, "");
  }
}

template <typename Parameter>
std::string nameOf(const testing::TestParamInfo<Parameter> &info) {
  return info.param.name;
}

constexpr std::nullopt_t kNothing = std::nullopt;

INSTANTIATE_TEST_SUITE_P(
    ThatSays, AReplyOfAService,
    testing::Values(Reply{"Nothing", "", kNothing}, Reply{"OneByte", "H", kNothing},
                    Reply{"LineEndsOnly", "\r\n\r\n\n\n", kNothing}, Reply{"ASession", session("s1d"), "s1d"},
                    Reply{"ThatItPassed", passed("1"), kNothing, true},
                    Reply{"BothAfterAHeader", "HTTP/1.0 200 OK\r\n\r\n" + session("s1d") + passed("1"), "s1d", true},
                    Reply{"BothAfterAFailure", "HTTP/1.0 500 No\r\n\r\n" + passed("1") + session("s1d"), "s1d", true},
                    Reply{"BothInChunks", "5\r\n<auth\r\n80\r\nSid><![CDATA[s1d" + kEnd, kNothing}),
    nameOf<Reply>);

INSTANTIATE_TEST_SUITE_P(WithMarkers, AReplyOfAService,
                         testing::Values(Reply{"OfWhichTheFirstIsMissing", "s1d" + kEnd, kNothing},
                                         Reply{"OfWhichTheSecondIsMissing", kStart + "s1d", kNothing},
                                         Reply{"OfWhichOnlyTheFirstIsThere", kStart, kNothing},
                                         Reply{"TheWrongWayRound", kEnd + "s" + kStart, kNothing},
                                         Reply{"BehindAnEnd", kEnd + session("s1d"), "s1d"},
                                         Reply{"Twice", session("a") + session("b"), "a"},
                                         Reply{"OfWhichTheFirstComesTwice", session("x" + kStart + "y"),
                                               "x" + kStart + "y"},
                                         Reply{"Nested", session(session("x")), kStart + "x"},
                                         Reply{"OfWhichTheSecondComesTwice", session("s1d") + kEnd, "s1d"},
                                         Reply{"WithABlankInside", "<authSid> <![CDATA[s1d" + kEnd, kNothing},
                                         Reply{"InSmallLetters", "<authsid><![cdata[s1d]]></authsid>", kNothing},
                                         Reply{"CutInTheFirst", "<authSid><![CDATA", kNothing},
                                         Reply{"CutInTheSecond", kStart + "s1d]]></authSid", kNothing},
                                         Reply{"BegunTwice", "<authSid><![CDA" + session("s1d"), "s1d"}),
                         nameOf<Reply>);

INSTANTIATE_TEST_SUITE_P(WithAZero, AReplyOfAService,
                         testing::Values(Reply{"InFront", kZero + session("s1d") + passed("1"), kNothing},
                                         Reply{"InTheFirstMarker", "<auth" + kZero + "Sid><![CDATA[s1d" + kEnd,
                                               kNothing},
                                         Reply{"InTheSession", session("s" + kZero + "d"), kNothing},
                                         Reply{"InTheSecondMarker", kStart + "s1d]]>" + kZero + "</authSid>", kNothing},
                                         Reply{"BehindTheSession", session("s1d") + kZero + passed("1"), "s1d"},
                                         Reply{"ForAMark", passed(kZero), kNothing},
                                         Reply{"AndNothingElse", std::string(100, '\0'), kNothing}),
                         nameOf<Reply>);

INSTANTIATE_TEST_SUITE_P(WithASession, AReplyOfAService,
                         testing::Values(Reply{"OfNoCharacters", session(""), ""},
                                         Reply{"OfTheMostCharacters", session(std::string(127, 's')),
                                               std::string(127, 's')},
                                         Reply{"OfOneCharacterMore", session(std::string(128, 's')), kNothing},
                                         Reply{"OfThousandsOfCharacters", session(std::string(4000, 's')), kNothing},
                                         Reply{"ToBeEscaped", session("a/b c~d?&=+"), "a/b c~d?&=+"},
                                         Reply{"OfControlCharacters", session("a\r\nb\tc"), "a\r\nb\tc"},
                                         Reply{"LikeAFormat", session("%s%n%x"), "%s%n%x"},
                                         Reply{"OfHighBytes", session("\xff\xfe\x80"), "\xff\xfe\x80"}),
                         nameOf<Reply>);

INSTANTIATE_TEST_SUITE_P(
    WithAMark, AReplyOfAService,
    testing::Values(Reply{"OfZero", passed("0"), kNothing}, Reply{"OfZeroAndMore", passed("01"), kNothing},
                    Reply{"OfABlank", passed(" 0"), kNothing, true}, Reply{"OfNothing", passed(""), kNothing, true},
                    Reply{"ThatIsCut", kPassed, kNothing}, Reply{"ThatBegins", "<authPassed><![CDATA", kNothing},
                    Reply{"Twice", passed("0") + passed("1"), kNothing},
                    Reply{"Nested", passed(passed("0")), kNothing, true}),
    nameOf<Reply>);

TEST_F(AService, IsReadByteForByte) {
  logIn(atOnce(session("s1d")));
  EXPECT_THAT(lengths, SizeIs(2));  // up to the wait for the second byte, before which all came
  EXPECT_THAT(lengths, Each(1U));
}

TEST_F(AService, MayLetTheProgramWaitAndCloseWithoutAnAnswer) {
  EXPECT_EQ(logIn({}), std::nullopt);
  EXPECT_EQ(checkSession({}), -1);
  EXPECT_EQ(logOut({}), 0);
}

// A reply of so many bytes whose last ones end the session; of which so many are kept.
struct Length {
  size_t bytes;
  int kept;
  bool found;
};

class ALongReply : public AService, public testing::WithParamInterface<Length> {
 protected:
  static std::string overflow() { return "buffer overflow, count=4096, bufsize=4096\n"; }
};

TEST_P(ALongReply, IsKeptUpToItsBuffer) {
  const auto found = GetParam().found ? std::optional<std::string>("s1d") : std::nullopt;
  EXPECT_EQ(logIn(atOnce(filledTo(GetParam().bytes, session("s1d")))), found);
  EXPECT_EQ(checkSession(atOnce(filledTo(GetParam().bytes, kPassed + "1"))), found ? 0 : -1);
  EXPECT_EQ(logOut(atOnce(std::string(GetParam().bytes, '\n'))), GetParam().kept);
  EXPECT_EQ(said, GetParam().kept == 4096 ? overflow() : "");
}

INSTANTIATE_TEST_SUITE_P(AroundIt, ALongReply,
                         testing::Values(Length{4095, 4095, true}, Length{4096, 4096, true}, Length{4097, 4096, false},
                                         Length{100000, 4096, false}));

TEST_F(ALongReply, ThatArrivesByteByByteIsCutToItsBufferToo) {
  EXPECT_EQ(logIn(byteByByte(filledTo(4096, session("s1d")))), "s1d");
  EXPECT_EQ(said, overflow());
}

TEST_F(ALongReply, WithoutEndIsLeftOnceItsBufferIsFull) {
  const Manner flood{{session("s1d"), std::string(100, 'x')}, Manner::End::none};
  EXPECT_EQ(logIn(flood), "s1d");
  EXPECT_EQ(said, overflow());
  EXPECT_EQ(checkSession(flood), -1);
  EXPECT_EQ(logOut({{std::string(1000, '\0')}, Manner::End::none}), 4096);
}

TEST_F(ALongReply, WithoutEndAndByteByByteIsLeftOnceItsBufferIsFull) {
  EXPECT_EQ(logIn({{"x"}, Manner::End::none}), std::nullopt);
  EXPECT_EQ(said, overflow());
  EXPECT_THAT(lengths, SizeIs(4097));  // the last byte is read and dropped
}

struct Break {
  const char *name;
  Manner manner;
};

void PrintTo(const Break &broken, std::ostream *out) { *out << broken.name; }

class ABreak : public AService, public testing::WithParamInterface<Break> {};
using ABreakDeathTest = ABreak;

TEST_P(ABreakDeathTest, OfTheConnectionEndsTheProgramWithoutAFailureStatus) {
  const auto log_out = [this] {  // the server's thread too: a program with threads cannot be copied safely
    HesitantServer server(GetParam().manner);
    host.network.serve(58080, server.port());
    nas_logout(&record, "s1d");
  };
  EXPECT_EXIT(log_out(), ExitedWithCode(0), "^ERROR reading from socket: Connection reset by peer\n");
}

INSTANTIATE_TEST_SUITE_P(That, ABreakDeathTest,
                         testing::Values(Break{"ComesAtOnce", {{}, Manner::End::reset}},
                                         Break{"LeavesTheRequestUnread", {{}, Manner::End::no_ears}},
                                         Break{"ComesAfterAByte", {{"H"}, Manner::End::reset}},
                                         Break{"ComesAfterTheSession", {{session("s1d")}, Manner::End::reset}},
                                         Break{"ComesInTheFullBuffer", {{std::string(4096, 'x')}, Manner::End::reset}}),
                         nameOf<Break>);

}  // namespace
}  // namespace contract
