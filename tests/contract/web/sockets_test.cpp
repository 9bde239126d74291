// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The timed socket helpers, and the connection to a camera's or a recorder's web service.
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "connection.h"
#include "scripted_server.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(AConnection, IsReadIntoATerminatedBuffer) {
  peerSends("abc");
  EXPECT_EQ(read(8), 3);
  EXPECT_EQ(received.substr(0, 5), std::string("abc\0#", 5));
  EXPECT_THAT(host.network.waits(), ElementsAre("read 120.0"));
}

TEST_F(AConnection, IsReadUpToTheLengthAskedFor) {
  peerSends("abcdef");
  EXPECT_EQ(read(4), 4);
  EXPECT_EQ(received.substr(0, 6), std::string("abcd\0#", 6));
  EXPECT_EQ(read(4), 2);
}

TEST_F(AConnection, GivesAZeroAloneToAReaderOfNothing) {
  peerSends("abc");
  EXPECT_EQ(read(0), 0);
  EXPECT_EQ(received.substr(0, 2), std::string("\0#", 2));
}

TEST_F(AConnection, TakesAnEmptyText) { EXPECT_EQ(write(""), 0); }

TEST_F(AConnection, ClosedByItsPeerGivesNoBytesAndAZero) {
  peerCloses();
  EXPECT_EQ(read(8), 0);
  EXPECT_EQ(received.substr(0, 2), std::string("\0#", 2));
}

TEST_F(AConnection, IsWrittenWhole) {
  EXPECT_EQ(write("abc"), 3);
  EXPECT_EQ(peerReceives(), "abc");
  EXPECT_THAT(host.network.waits(), ElementsAre("write 120.0"));
}

TEST_F(AConnection, ClosedByItsPeerCannotBeWritten) {
  peerCloses();
  EXPECT_EQ(write("abc"), -3);
  EXPECT_EQ(said, "socket write: error send()ing request:\n");
}

TEST_F(AConnection, WithAnInvalidSocketCannotBeRead) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  char byte[2];
  OutputCapture output;
  EXPECT_EQ(socket_read(listener, byte, 1), -3);
  EXPECT_EQ(output.text(), "sock_read:error recv()ing reply\n");
  close(listener);
}

TEST_F(AConnection, ThatBreaksIsReadUpToTheBreak) {
  breakBehind("abc");
  EXPECT_EQ(read(8), 3);
  EXPECT_EQ(read(8), -3);
  EXPECT_EQ(said, "sock_read:error recv()ing reply\n");
  EXPECT_EQ(received, std::string(16, '#'));
}

TEST_F(AConnection, ThatBreaksInALineGivesNoLine) {
  breakBehind("abc");
  EXPECT_EQ(readLine(8), -1);
}

struct Wait {
  int answer;
  int result;
  const char *reading;
  const char *writing;
};

class AWait : public AConnection, public testing::WithParamInterface<Wait> {};

TEST_P(AWait, IsReportedByAReader) {
  peerSends("abc");
  host.network.answerSelect(GetParam().answer);
  EXPECT_EQ(read(8), GetParam().result);
  EXPECT_EQ(said, GetParam().reading);
  EXPECT_EQ(received, std::string(16, '#'));
}

TEST_P(AWait, IsReportedByAWriter) {
  host.network.answerSelect(GetParam().answer);
  EXPECT_EQ(write("abc"), GetParam().result);
  EXPECT_EQ(said, GetParam().writing);
  EXPECT_EQ(peerReceives(), "");
}

INSTANTIATE_TEST_SUITE_P(InVain, AWait,
                         testing::Values(Wait{-1, -1, "sock_read: select:error\n", "socket write: select: error\n"},
                                         Wait{0, -2, "socket_read: timeout\n", "socket write: timeout\n"},
                                         Wait{1, -4, "sock_read: error: case not handled.",
                                              "socket write: error: case not handled."}));

TEST_F(AConnection, OfANumberThatCannotBeWaitedForFails) {
  char byte[2];
  OutputCapture output;
  for (const int number : {-1, -2147483647, static_cast<int>(FD_SETSIZE), 2147483647}) {
    EXPECT_EQ(socket_read(number, byte, 1), -1);
    EXPECT_EQ(socket_write(number, "a"), -1);
  }
  EXPECT_THAT(host.network.waits(), IsEmpty());
}

TEST_F(AConnection, IsNotUsedWithoutABuffer) {
  EXPECT_EQ(socket_read(sock(), nullptr, 1), -1);
  EXPECT_EQ(socket_write(sock(), nullptr), -1);
  EXPECT_EQ(http_read_line(sock(), nullptr, 1), -1);
  EXPECT_EQ(read(-1), -1);
}

TEST_F(AConnection, GivesALineWithItsCarriageReturn) {
  peerSends("HTTP/1.0 200 OK\r\nnext");
  received = std::string(32, '#');
  EXPECT_EQ(http_read_line(sock(), received.data(), 31), 16);
  EXPECT_EQ(received.substr(0, 18), std::string("HTTP/1.0 200 OK\r\0#", 18));
  EXPECT_EQ(readLine(4), 4);
  EXPECT_EQ(received.substr(0, 4), "next");
}

TEST_F(AConnection, GivesAnEmptyLine) {
  peerSends("\n");
  EXPECT_EQ(readLine(8), 0);
  EXPECT_EQ(received.substr(0, 2), std::string("\0#", 2));
}

TEST_F(AConnection, GivesALineThatFillsItsBufferUnterminated) {
  peerSends("abcde\n");
  EXPECT_EQ(readLine(4), 4);
  EXPECT_EQ(received.substr(0, 6), "abcd##");
}

TEST_F(AConnection, GivesALineOfOneByte) {
  peerSends("ab");
  EXPECT_EQ(readLine(1), 1);
  EXPECT_EQ(received.substr(0, 2), "a#");
}

TEST_F(AConnection, ClosedByItsPeerGivesALineOfZeros) {
  peerCloses();
  EXPECT_EQ(readLine(8), 8);
  EXPECT_EQ(received, std::string(8, '\0') + "########");
}

TEST_F(AConnection, GivesNoLineWithoutRoom) {
  peerSends("a\n");
  EXPECT_EQ(readLine(0), 0);
  EXPECT_EQ(readLine(-1), 0);
  EXPECT_THAT(host.network.waits(), IsEmpty());
}

TEST_F(AConnection, ThatFailsGivesNoLine) {
  host.network.answerSelect(0);
  EXPECT_EQ(readLine(8), -1);
}

class AWebService : public ContractTest {
 protected:
  int open(const std::string &name) {
    OutputCapture errors;
    OutputCapture output(stdout);
    const int result = http_open(&sock, name.c_str());
    said = errors.text();
    printed = output.text();
    return result;
  }

  int sock = -7;
  std::string said;
  std::string printed;
};

TEST_F(AWebService, IsReachedAtPortEighty) {
  ScriptedServer server({Answer{"hello", Answer::End::close, ""}});
  host.network.serve(80, server.port());
  host.network.nameHost("camera.example");
  EXPECT_EQ(open("camera.example"), 0);
  EXPECT_THAT(host.journal.lines(), ElementsAre("connect 127.0.0.1:80"));
  char line[8] = "";
  EXPECT_EQ(socket_read(sock, line, 5), 5);
  EXPECT_EQ(http_close(sock), 0);
  EXPECT_EQ(host.network.openSockets(), 0);
}

TEST_F(AWebService, OfAnUnknownNameIsNotReached) {
  EXPECT_EQ(open("nowhere.example"), -1);
  EXPECT_EQ(printed, "hp = NULL\n");
  EXPECT_EQ(said, "");
  EXPECT_EQ(sock, -7);
}

TEST_F(AWebService, ThatDoesNotListenIsNotReached) {
  EXPECT_EQ(open("127.0.0.1"), -1);
  EXPECT_EQ(said, "http_open:Failed to connect\n");
  EXPECT_EQ(sock, -7);
}

TEST_F(AWebService, IsNotReachedWithoutASocket) {
  host.network.failSockets();
  EXPECT_EQ(open("127.0.0.1"), -1);
  EXPECT_EQ(said, "http_open:Failed to socket\n");
  EXPECT_EQ(sock, -7);
}

TEST_F(AWebService, IsNotReachedWithoutArguments) {
  EXPECT_EQ(http_open(nullptr, "127.0.0.1"), -1);
  EXPECT_EQ(http_open(&sock, nullptr), -1);
}

TEST(AClosedNumber, BelowZeroIsIgnored) { EXPECT_EQ(http_close(-1), 0); }

TEST(AFirstLine, IsCopiedWithoutItsEnd) {
  char out[] = "########";
  EXPECT_EQ(get_next_line("abc\ndef\n", out), 3);
  EXPECT_STREQ(out, "abc#####");
  EXPECT_EQ(get_next_line("\n", out), 0);
}

TEST(AFirstLine, WithoutALineFeedIsNotFound) {
  char out[] = "before";
  EXPECT_EQ(get_next_line("abc", out), -1);
  EXPECT_EQ(get_next_line("", out), -1);
  EXPECT_EQ(get_next_line(nullptr, out), -1);
  EXPECT_EQ(get_next_line("a\n", nullptr), -1);
  EXPECT_STREQ(out, "before");
}

}  // namespace
}  // namespace contract
