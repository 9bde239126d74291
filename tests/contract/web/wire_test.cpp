// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The web part on real sockets with the real C library, in a network of its own.
#include <arpa/inet.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <cstring>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "own_network.h"

namespace {

std::vector<std::string> addresses;  // that were connected to, byte for byte
std::mutex addresses_lock;
int seconds_slept = 0;

// Listens on the loopback address; answers each connection whose bytes ended as asked.
class Service {
 public:
  explicit Service(int port) : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(bind(listener_, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    listen(listener_, 8);
  }
  ~Service() { close(listener_); }
  Service(const Service &) = delete;
  Service &operator=(const Service &) = delete;

  // What the next connection brings, up to its end or to an empty line, which is then answered.
  std::string serve(const std::string &reply) const {
    pollfd coming{listener_, POLLIN, 0};
    // The library's commands end meanwhile, which may interrupt a wait.
    if (TEMP_FAILURE_RETRY(poll(&coming, 1, 20000)) != 1) return "nobody came";
    const auto connection = static_cast<int>(TEMP_FAILURE_RETRY(accept(listener_, nullptr, nullptr)));
    std::string request;
    char part[512];
    const auto receive = [&] { return TEMP_FAILURE_RETRY(recv(connection, part, sizeof part, 0)); };
    for (ssize_t got = receive(); got > 0; got = receive()) {
      request.append(part, static_cast<size_t>(got));
      if (request.find("\r\n\r\n") != std::string::npos) break;
    }
    if (!reply.empty()) send(connection, reply.data(), reply.size(), MSG_NOSIGNAL);
    close(connection);
    return request;
  }

 private:
  int listener_;
};

class AHostOfItsOwn : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(contract::enterNetworkOfItsOwn());
    addresses.clear();
    seconds_slept = 0;
  }
};

TEST_F(AHostOfItsOwn, IsLookedUpByItsNameInManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    const char *const name = i % 2 == 0 ? "localhost" : "127.0.0.1";
    threads.emplace_back([name] {
      for (int round = 0; round < 2000; ++round) {
        int sock = -7;
        EXPECT_EQ(http_open(&sock, name), -1);  // nobody listens there
        EXPECT_EQ(sock, -7);
      }
    });
  }
  for (std::thread &thread : threads) thread.join();
}

TEST_F(AHostOfItsOwn, IsSignalledByThirtyTwoBytes) {
  const Service streaming(10170);
  auto received = std::async(std::launch::async, [&] { return streaming.serve(""); });
  const std::string message(40, '\x07');
  EXPECT_EQ(vl_StreamNotify(message.data()), 0);
  EXPECT_EQ(received.get(), message.substr(0, 32));
}

// Family, port 10170 and address 0.0.0.0, then what fills the rest.
TEST_F(AHostOfItsOwn, IsSignalledAtAnAddressFilledUpWithZeroCharacters) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(vl_StreamNotify(std::string(32, 'm').data()), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "StreamNotify -- Connect Failed.\n");
  ASSERT_EQ(addresses.size(), 1U);
  EXPECT_EQ(addresses[0].substr(2), std::string("\x27\xba\0\0\0\0", 6) + "00000000");
}

TEST_F(AHostOfItsOwn, WithoutACommandForItsTcpPortIsAskedAtTheUsualOne) {
  const Service web(58080);
  auto request = std::async(std::launch::async, [&] { return web.serve("<authPassed><![CDATA[1]]></authPassed>"); });
  testing::internal::CaptureStderr();  // the shell's
  EXPECT_EQ(vl_sid_auth("s1d"), 0);
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(request.get(), "GET /cgi-bin/authLogin.cgi?sid=s1d HTTP/1.0\r\nHost: 127.0.0.1:58080\r\n\r\n");
}

TEST_F(AHostOfItsOwn, LogsAUserInAndOutAgain) {
  const Service web(58080);
  auto requests = std::async(std::launch::async, [&] {
    const std::string login = web.serve("<authSid><![CDATA[s1d]]></authSid>");
    return std::pair(login, web.serve("bye"));
  });
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  EXPECT_EQ(vl_auth("admin", "secret"), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "[admin] authentication OK, get sid:[s1d]...\n");
  testing::internal::GetCapturedStderr();
  const std::string rest = " HTTP/1.0\r\nAuthorization: Basic YWRtaW46c2VjcmV0\r\nHost: 127.0.0.1:58080\r\n\r\n";
  EXPECT_EQ(requests.get(), std::pair("GET /cgi-bin/authLogin.cgi?user=admin&pwd=c2VjcmV0" + rest,
                                      "GET /cgi-bin/authLogout.cgi?logout=1&sid=s1d" + rest));
  EXPECT_EQ(seconds_slept, 1);
}

TEST_F(AHostOfItsOwn, IsReachedByItsNumberAtPortEighty) {
  const Service web(80);
  auto request = std::async(std::launch::async, [&] { return web.serve("HTTP/1.0 200 OK\n\n\n\nbody"); });
  int connection = -1;
  ASSERT_EQ(http_open(&connection, "127.0.0.1"), 0);
  EXPECT_EQ(http_send_cmd(connection, "camera", "/state", "u", "p"), 0);
  EXPECT_EQ(http_skip_nvr_http_header(connection), 1);
  char body[16];
  EXPECT_EQ(socket_read(connection, body, 15), 4);
  EXPECT_STREQ(body, "body");
  EXPECT_EQ(http_close(connection), 0);
  EXPECT_EQ(request.get(), "GET /state HTTP/1.0\r\nAuthorization: Basic dTpw\r\nHost: camera\r\n\r\n");
}

TEST_F(AHostOfItsOwn, IsReachedByAProcessWithoutStandardInput) {
  const Service web(80);
  auto request = std::async(std::launch::async, [&] { return web.serve("body"); });
  const int input = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  int connection = -1;
  EXPECT_EQ(http_open(&connection, "127.0.0.1"), 0);
  EXPECT_EQ(connection, 0);
  EXPECT_EQ(http_send_cmd(connection, "camera", "/", "u", "p"), 0);
  char body[16];
  EXPECT_EQ(http_read_line(connection, body, 4), 4);
  EXPECT_EQ(http_close(connection), 0);
  EXPECT_EQ(fcntl(connection, F_GETFD), -1) << "it is still open";
  dup2(input, STDIN_FILENO);
  close(input);
  EXPECT_THAT(request.get(), testing::StartsWith("GET / HTTP/1.0"));
}

TEST_F(AHostOfItsOwn, IsSignalledByAProcessWithoutStandardInput) {
  const Service streaming(10170);
  const int input = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  EXPECT_EQ(vl_StreamNotify(std::string(32, 'm').data()), 0);
  EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1) << "the socket is still open";
  dup2(input, STDIN_FILENO);
  close(input);
  // Served only now: a thread that accepts the connection could be given the number 0.
  EXPECT_EQ(streaming.serve(""), std::string(32, 'm'));
}

}  // namespace

extern "C" {

int connect(int descriptor, const sockaddr *address, socklen_t size) {
  static auto *const real = reinterpret_cast<int (*)(int, const sockaddr *, socklen_t)>(dlsym(RTLD_NEXT, "connect"));
  if (address->sa_family == AF_INET) {
    const std::lock_guard<std::mutex> guard(addresses_lock);
    addresses.emplace_back(reinterpret_cast<const char *>(address), size);
  }
  return real(descriptor, address, size);
}

unsigned sleep(unsigned seconds) {
  seconds_slept += static_cast<int>(seconds);
  return 0;
}

}  // extern "C"
