// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The steps of a request to a camera's or a recorder's web service.
#include <string>

#include "connection.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

}  // namespace
}  // namespace contract
