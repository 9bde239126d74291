// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The timed socket helpers and the steps of a request to a camera's or a recorder's web service.
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "contract_test.h"
#include "scripted_server.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// One end of a connection for the library, the other for the test.
class AConnection : public ContractTest {
 protected:
  AConnection() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends_), 0); }
  ~AConnection() override {
    close(ends_[0]);
    if (ends_[1] >= 0) close(ends_[1]);
  }

  int sock() const { return ends_[0]; }
  void peerSends(const std::string &bytes) {
    EXPECT_EQ(write(ends_[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  void peerCloses() {
    close(ends_[1]);
    ends_[1] = -1;
  }
  // What the peer has not read when it closes breaks a connection of this kind.
  void breakBehind(const std::string &bytes) {
    EXPECT_EQ(write("unread"), 6);
    peerSends(bytes);
    peerCloses();
  }
  std::string peerReceives() {
    char bytes[8192];
    const ssize_t got = recv(ends_[1], bytes, sizeof bytes, MSG_DONTWAIT);
    return got < 0 ? "" : std::string(bytes, static_cast<size_t>(got));
  }
  // A read of at most this length, into a buffer with guards.
  int read(int length) {
    received = std::string(16, '#');
    OutputCapture output;
    const int result = socket_read(sock(), received.data(), length);
    said = output.text();
    return result;
  }
  int write(const std::string &text) {
    OutputCapture output;
    const int result = socket_write(sock(), text.c_str());
    said = output.text();
    return result;
  }
  int readLine(int max) {
    received = std::string(16, '#');
    OutputCapture output;
    return http_read_line(sock(), received.data(), max);
  }

  std::string received;
  std::string said;

 private:
  static ssize_t write(int descriptor, const char *bytes, size_t size) { return ::write(descriptor, bytes, size); }
  int ends_[2] = {-1, -1};
};

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

class AReplysHeader : public AConnection {
 protected:
  int skip(const std::string &reply) {
    peerSends(reply);
    OutputCapture output;
    const int result = http_skip_nvr_http_header(sock());
    said = output.text();
    return result;
  }
  int skipBehindStatus(const std::string &header) { return skip("HTTP/1.0 200 OK\r\n" + header); }
};

TEST_F(AReplysHeader, EndsWithThreeLineFeeds) {
  EXPECT_EQ(skipBehindStatus("Server: x\r\n\n\nbody"), 1);
  EXPECT_EQ(read(8), 4);
  EXPECT_EQ(received.substr(0, 4), "body");
}

TEST_F(AReplysHeader, MayBeNothingButItsEnd) { EXPECT_EQ(skipBehindStatus("\n\n\n"), 1); }

TEST_F(AReplysHeader, IsNotEndedByLineFeedsWithCarriageReturns) {
  EXPECT_EQ(skipBehindStatus("A: b\r\n\r\n\r\n" + std::string(600, 'x')), 0);
  EXPECT_EQ(read(8), 8);
}

TEST_F(AReplysHeader, IsNotEndedByTwoLineFeeds) {
  EXPECT_EQ(skipBehindStatus("A: b\n\nc\n\n" + std::string(503, 'x') + "rest"), 0);
  read(8);
  EXPECT_EQ(received.substr(0, 5), std::string("rest\0", 5));
}

TEST_F(AReplysHeader, IsReadUpToFiveHundredAndTwelveBytes) {
  EXPECT_EQ(skipBehindStatus(std::string(512, 'x') + "\n\n\n"), 0);
  EXPECT_EQ(read(8), 3);
}

TEST_F(AReplysHeader, WhoseEndBeginsBeforeTheLimitIsFollowedBeyondIt) {
  EXPECT_EQ(skipBehindStatus(std::string(511, 'x') + "\n\n\n"), 1);
}

TEST_F(AReplysHeader, OfAConnectionThatClosesEndsAtTheLimit) {
  peerSends("HTTP/1.0 200 OK\r\nA: b\r\n");
  peerCloses();
  EXPECT_EQ(http_skip_nvr_http_header(sock()), 0);
}

TEST_F(AReplysHeader, OfAnotherStatusIsReported) {
  EXPECT_EQ(skip("HTTP/1.1 404 Not Found\n"), -2);
  EXPECT_EQ(said, "skip nvr http header:[HTTP/1.1 404 Not Found]\n");
}

TEST_F(AReplysHeader, WithoutAnyStatusIsReported) {
  peerCloses();
  OutputCapture output;
  EXPECT_EQ(http_skip_nvr_http_header(sock()), -2);
  EXPECT_EQ(output.text(), "skip nvr http header:[]\n");
}

TEST_F(AReplysHeader, WithAStatusThatFillsItsBufferIsReportedCut) {
  EXPECT_EQ(skip(std::string(300, 's') + "\n"), -2);
  EXPECT_EQ(said, "skip nvr http header:[" + std::string(256, 's') + "]\n");
}

TEST_F(AReplysHeader, ThatCannotBeReadFails) {
  host.network.answerSelect(0);
  EXPECT_EQ(skip(""), -1);
}

TEST_F(AReplysHeader, ThatBreaksOffFails) {
  breakBehind("HTTP/1.0 200 OK\r\nA: b\r\n");
  OutputCapture output;
  EXPECT_EQ(http_skip_nvr_http_header(sock()), -1);
}

TEST_F(AReplysHeader, MayHaveAnyStatusLineThatContains200Ok) {
  EXPECT_EQ(skip("ICY 200 OK, more or less\n\n\n\n"), 1);
  EXPECT_EQ(skip("HTTP/1.0 200 ok\n"), -2);
}

class ARequest : public AConnection {
 protected:
  int request(const std::string &path, const std::string &user = "u", const std::string &name = "cam") {
    OutputCapture errors;
    OutputCapture output(stdout);
    const int result = http_send_cmd(sock(), name.c_str(), path.c_str(), user.c_str(), "p");
    said = output.text();
    return result;
  }
};

TEST_F(ARequest, IsSentLineByLine) {
  EXPECT_EQ(request("/x?a=b c"), 0);
  EXPECT_THAT(host.network.sent(),
              ElementsAre("GET /x?a=b c HTTP/1.0\r\n", "Authorization: Basic dTpw\r\n", "Host: cam\r\n", "\r\n"));
  EXPECT_EQ(said, "");
}

TEST_F(ARequest, ThatCannotBeSentIsReported) {
  host.network.answerSelect(0);
  EXPECT_EQ(request("/x"), -1);
  EXPECT_EQ(said, "ERROR writing to socket");
  EXPECT_EQ(host.network.waits().size(), 1U);
}

TEST_F(ARequest, MayHaveALineOf2047Bytes) {
  EXPECT_EQ(request(std::string(2047 - 15, 'x')), 0);
  EXPECT_EQ(host.network.sent().at(0).size(), 2047U);
}

TEST_F(ARequest, WithALongerLineIsNotSentAtAll) {
  EXPECT_EQ(request(std::string(2048 - 15, 'x')), -1);
  EXPECT_EQ(request("/x", "u", std::string(2048 - 8, 'h')), -1);
  EXPECT_EQ(request("/x", std::string(128, 'u')), -1);  // with the colon and a password of one character
  EXPECT_THAT(host.network.sent(), IsEmpty());
}

TEST_F(ARequest, IsRefusedWithoutItsTexts) {
  EXPECT_EQ(http_send_cmd(sock(), nullptr, "/", "u", "p"), -1);
  EXPECT_EQ(http_send_cmd(sock(), "h", nullptr, "u", "p"), -1);
  EXPECT_EQ(http_send_cmd(sock(), "h", "/", nullptr, "p"), -1);
  EXPECT_EQ(http_send_cmd(sock(), "h", "/", "u", nullptr), -1);
  EXPECT_THAT(host.network.sent(), IsEmpty());
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
