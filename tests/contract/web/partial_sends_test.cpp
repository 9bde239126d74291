// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A connection that takes only a part of what is sent to it at once.
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#include <string>

#include "contract_test.h"
#include "scripted_server.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::StartsWith;

class AConnectionThatTakesParts : public ContractTest {
 protected:
  // Every send takes half of its bytes; the one of this number (1 = the first) has another result.
  void takeHalves(int number = 0, int result = kNone) {
    host.calls.ask([number, result, sends = 0](const std::string &name, const std::string &) mutable {
      if (name != "send") return std::optional<int>();
      return std::optional<int>(++sends == number ? result : kHalfOfTheBytes);
    });
  }
  std::string sent() const {
    std::string bytes;
    for (const std::string &part : host.network.sent()) bytes += part;
    return bytes;
  }
  int request() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    const OutputCapture output(stdout);
    const int result = http_send_cmd(ends[0], "camera", "/", "a", "b");
    host.calls.askNobody();
    for (const int end : ends) close(end);
    return result;
  }

  static constexpr int kNone = 0;
  static constexpr int kBroken = -1;
};

TEST_F(AConnectionThatTakesParts, GetsAWholeRequest) {
  takeHalves();
  EXPECT_EQ(request(), 0);
  EXPECT_EQ(sent(), "GET / HTTP/1.0\r\nAuthorization: Basic YTpi\r\nHost: camera\r\n\r\n");
}

TEST_F(AConnectionThatTakesParts, AndThenNothingFailsTheRequest) {
  takeHalves(2);
  EXPECT_EQ(request(), -1);
}

TEST_F(AConnectionThatTakesParts, AndThenBreaksFailsTheRequest) {
  takeHalves(2, kBroken);
  const OutputCapture errors;
  EXPECT_EQ(request(), -1);
}

NasServer server() {
  NasServer record{};
  strcpy(record.host, "127.0.0.1");
  record.port = 8080;
  memset(NVR_CGI, 0, sizeof NVR_CGI);
  strcpy(NVR_CGI, "/path");
  return record;
}

TEST_F(AConnectionThatTakesParts, GetsAWholeRequestOfTheClient) {
  ScriptedServer scripted({Answer{"reply"}});
  host.network.serve(8080, scripted.port());
  const NasServer record = server();
  char reply[16];
  takeHalves();
  EXPECT_EQ(connect_host(&record, reply, sizeof reply, 1, 0), 5);
  host.calls.askNobody();
  EXPECT_THAT(scripted.requests(), ElementsAre("GET /path HTTP/1.0\r\nHost: 127.0.0.1:8080\r\n\r\n"));
}

TEST_F(AConnectionThatTakesParts, AndThenNothingEndsTheProcessOfTheClient) {
  const auto ask = [this] {
    ScriptedServer scripted({Answer{"reply", Answer::End::close, ""}});
    host.network.serve(8080, scripted.port());
    const NasServer record = server();
    char reply[16];
    takeHalves(2);
    connect_host(&record, reply, sizeof reply, 1, 0);
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), StartsWith("ERROR writing to socket"));
}

}  // namespace
}  // namespace contract
