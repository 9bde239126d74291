// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Owners: what they open is closed once, by the last one that it was moved to.
#include <fcntl.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <usbdev/usbdev.hpp>
#include <utility>
#include <vector>

#include "contract_test.h"
#include "real_function.h"
#include "scripted_server.h"

namespace contract {
namespace {

using testing::_;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using usbdev::Connection;
using usbdev::Session;
using usbdev::TimeoutCounters;

// A segment of the test's own, so that the counters of a real system stay as they are.
int segment() {
  static const int id = realFunction<int(key_t, size_t, int)>("shmget")(IPC_PRIVATE, 16, 0600);
  return id;
}

int attachments() {
  shmid_ds state = {};
  return shmctl(segment(), IPC_STAT, &state) == 0 ? static_cast<int>(state.shm_nattch) : -1;
}

}  // namespace
}  // namespace contract

namespace {

bool segments_fail = false;

}  // namespace

extern "C" int shmget(key_t, size_t, int) noexcept { return segments_fail ? -1 : contract::segment(); }

namespace contract {
namespace {

class Counters : public ContractTest {
 protected:
  ~Counters() override { segments_fail = false; }
  static void TearDownTestSuite() { shmctl(segment(), IPC_RMID, nullptr); }
};

TEST_F(Counters, AreThoseOfTheHostUntilTheyAreCleared) {
  auto counters = TimeoutCounters::attach();
  ASSERT_TRUE(counters);
  counters->clear();
  vl_add_shm_timeout_log(2);
  EXPECT_THAT(counters->values(), ElementsAre(0U, 0U, 1U, 0U));
  counters->clear();
  EXPECT_THAT(counters->values(), ElementsAre(0U, 0U, 0U, 0U));
}

TEST_F(Counters, WithoutASegmentAreNotAttached) {
  segments_fail = true;
  const OutputCapture output;
  EXPECT_FALSE(TimeoutCounters::attach());
}

TEST_F(Counters, AreAttachedOnceAndDetachedAtTheEnd) {
  const int before = attachments();
  {
    auto counters = TimeoutCounters::attach();
    ASSERT_TRUE(counters);
    const TimeoutCounters moved = std::move(*counters);
    EXPECT_EQ(attachments(), before + 1);
    EXPECT_EQ(moved.values().size(), 4U);
  }
  EXPECT_EQ(attachments(), before);
}

TEST_F(Counters, AreReplacedByThoseThatAreAssigned) {
  const int before = attachments();
  {
    auto first = TimeoutCounters::attach();
    auto second = TimeoutCounters::attach();
    *first = std::move(*second);
    EXPECT_EQ(attachments(), before + 1);
    EXPECT_EQ(first->values().size(), 4U);
  }
  EXPECT_EQ(attachments(), before);
}

bool isOpen(int descriptor) { return fcntl(descriptor, F_GETFD) != -1; }

// The far end of a connection, and the descriptor that the connection owns.
class AConnectionOwner : public ContractTest {
 protected:
  AConnectionOwner() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_), 0); }
  ~AConnectionOwner() override { close(ends_[1]); }
  int near() const { return ends_[0]; }
  void peerSends(const std::string &text) {
    EXPECT_EQ(write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }

 private:
  int ends_[2] = {-1, -1};
};

TEST_F(AConnectionOwner, ClosesItsSocketOnce) {
  {
    Connection first(near());
    const Connection second = std::move(first);
    EXPECT_TRUE(isOpen(near()));
  }
  EXPECT_FALSE(isOpen(near()));
}

TEST_F(AConnectionOwner, ClosesItsSocketWhenItGetsAnother) {
  const int other = fcntl(near(), F_DUPFD_CLOEXEC, 0);
  Connection first(near());
  first = Connection(other);
  EXPECT_EQ(first.socket(), other);
  EXPECT_FALSE(isOpen(near()));
  EXPECT_TRUE(isOpen(other));
}

TEST_F(AConnectionOwner, ReadsTheHeadALineAndTheRest) {
  Connection connection(near());
  peerSends("HTTP/1.0 200 OK\n\n\n\nline\nrest");
  char buffer[8];
  EXPECT_TRUE(connection.skipHead());
  EXPECT_EQ(*connection.readLine(buffer), "line");
  EXPECT_EQ(*connection.receive(std::span(buffer).first<4>()), "res");
  EXPECT_EQ(*connection.receive(buffer), "t");
  EXPECT_FALSE(connection.receive({}));
  EXPECT_FALSE(connection.readLine({}));
}

TEST_F(AConnectionOwner, ReadsALineOfAsManyBytesAsThereIsRoomFor) {
  Connection connection(near());
  peerSends("four and more\n");
  char buffer[4];
  EXPECT_EQ(*connection.readLine(buffer), "four");
}

TEST_F(AConnectionOwner, ReportsAHeadThatIsNoSuccess) {
  Connection connection(near());
  peerSends("HTTP/1.0 404 Not Found\n\n\n\n");
  EXPECT_EQ(connection.skipHead().error(), -2);
}

TEST_F(AConnectionOwner, ReportsAHeadThatDoesNotEnd) {
  Connection connection(near());
  peerSends("HTTP/1.0 200 OK\n" + std::string(600, 'x'));
  EXPECT_EQ(connection.skipHead().error(), -1);
}

TEST_F(AConnectionOwner, WithoutASocketFails) {
  const Connection connection(-1);
  char buffer[8];
  const OutputCapture output;
  EXPECT_FALSE(connection.skipHead());
  EXPECT_FALSE(connection.readLine(buffer));
  EXPECT_FALSE(connection.receive(buffer));
  EXPECT_FALSE(connection.request("host", "/page", "user", "password"));
}

TEST_F(AConnectionOwner, RefusesTextsThatDoNotFit) {
  Connection connection(near());
  EXPECT_FALSE(connection.request("host", std::string(2048, '/'), "user", "password"));
  EXPECT_FALSE(connection.request(std::string(256, 'h'), "/page", "user", "password"));
  EXPECT_FALSE(connection.request("host", "/page", std::string(129, 'u'), ""));
  EXPECT_FALSE(connection.request("host", "/page", "", std::string(129, 'p')));
  EXPECT_FALSE(connection.request("host", std::string_view("/\0", 2), "user", "password"));
  EXPECT_TRUE(connection.request("host", "/page", "user", "password"));
}

TEST_F(AConnectionOwner, SendsEveryUserAndPasswordThatTheLibraryTakes) {
  const Connection connection(near());
  EXPECT_TRUE(connection.request("host", "/page", std::string(128, 'u'), ""));
  EXPECT_TRUE(connection.request("host", "/page", "", std::string(128, 'p')));
}

TEST_F(AConnectionOwner, OfAnUnknownHostDoesNotExist) {
  OutputCapture output(stdout);
  EXPECT_FALSE(Connection::open("nowhere"));
}

constexpr char kReply[] = "<authSid><![CDATA[s1d]]></authSid>";

class ASession : public ContractTest {
 protected:
  ASession() {
    strcpy(server_.host, "127.0.0.1");
    server_.port = 58080;
  }
  NasServer server_{};
};

TEST_F(ASession, LogsOutOnceAtTheEnd) {
  ScriptedServer service({Answer{kReply}, Answer{"<authPassed><![CDATA[1]]></authPassed>"}, Answer{"bye"}});
  host.network.serve(58080, service.port());
  {
    auto session = Session::logIn(server_);
    ASSERT_TRUE(session);
    Session moved = std::move(*session);
    EXPECT_EQ(moved.id(), "s1d");
    EXPECT_TRUE(moved.isValid());
  }
  EXPECT_THAT(service.requests(), ElementsAre(HasSubstr("authLogin"), HasSubstr("sid=s1d"), HasSubstr("authLogout")));
}

TEST_F(ASession, LogsOutWhenItGetsAnother) {
  ScriptedServer service({Answer{kReply}, Answer{"<authSid><![CDATA[s2d]]></authSid>"}, Answer{"bye"}, Answer{"bye"}});
  host.network.serve(58080, service.port());
  {
    auto other = Session::logIn(server_);
    auto session = Session::logIn(server_);
    ASSERT_TRUE(other && session);
    *session = std::move(*other);
    EXPECT_EQ(session->id(), "s1d");
  }
  const auto logs_out = [](const char *id) { return AllOf(HasSubstr("authLogout"), HasSubstr(id)); };
  EXPECT_THAT(service.requests(), ElementsAre(_, _, logs_out("s2d"), logs_out("s1d")));
}

TEST_F(ASession, ThatTheHostForgotIsNotValid) {
  ScriptedServer service({Answer{kReply}, Answer{"<authPassed><![CDATA[0]]></authPassed>"}, Answer{"bye"}});
  host.network.serve(58080, service.port());
  auto session = Session::logIn(server_);
  ASSERT_TRUE(session);
  EXPECT_FALSE(session->isValid());
}

TEST_F(ASession, ThatIsRefusedIsNotLoggedOut) {
  ScriptedServer service({Answer{"no"}});
  host.network.serve(58080, service.port());
  EXPECT_FALSE(Session::logIn(server_));
  EXPECT_THAT(service.requests(), ElementsAre(HasSubstr("authLogin")));
}

}  // namespace
}  // namespace contract
