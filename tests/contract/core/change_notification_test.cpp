// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The datagram that notifies the manager of a change.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class AChangeNotification : public ContractTest {
 protected:
  AChangeNotification() {
    for (size_t i = 0; i < datagram.size(); ++i) datagram[i] = static_cast<char>(0xFF - i);
  }

  int send() {
    OutputCapture output;
    const int result = vl_settingNotify(datagram.data());
    message = output.text();
    return result;
  }

  std::string datagram = std::string(56, '\0');
  std::string message;
};

TEST_F(AChangeNotification, IsSentAsOneDatagramToTheManager) {
  EXPECT_EQ(send(), 0);
  ASSERT_THAT(host.network.datagrams(), SizeIs(1));
  const Datagram sent = host.network.datagrams()[0];
  EXPECT_EQ(sent.address, "127.0.0.1");
  EXPECT_EQ(sent.port, 10171);
  EXPECT_EQ(sent.flags, 0);
}

TEST_F(AChangeNotification, IsSentByteForByte) {
  send();
  EXPECT_EQ(host.network.datagrams().at(0).bytes, datagram);
}

TEST_F(AChangeNotification, PrintsNothingAndReadsNoConfiguration) {
  send();
  EXPECT_EQ(message, "");
  EXPECT_EQ(host.journal.count("open r"), 0);
}

TEST_F(AChangeNotification, WithoutASocketFails) {
  host.network.failSockets();
  EXPECT_EQ(send(), -1);
  EXPECT_EQ(message, "create config change notify socket fail.\n");
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(AChangeNotification, ThatIsNotSentFails) {
  host.network.failSends();
  EXPECT_EQ(send(), -1);
  EXPECT_EQ(message, "socket send to manager error\n");
}

TEST_F(AChangeNotification, IsTriedOnceOnly) {
  host.network.failSends();
  send();
  EXPECT_THAT(host.network.datagrams(), SizeIs(1));
}

class APartlySentNotification : public AChangeNotification, public testing::WithParamInterface<ssize_t> {};

TEST_P(APartlySentNotification, Fails) {
  host.network.sendOnly(GetParam());
  EXPECT_EQ(send(), -1);
  EXPECT_EQ(message, "socket send to manager error\n");
}

INSTANTIATE_TEST_SUITE_P(OfAnySize, APartlySentNotification, testing::Values(0, 1, 55));

TEST_F(AChangeNotification, OfNothingIsRefusedBeforeASocketIsMade) {
  host.network.failSockets();
  OutputCapture output;
  EXPECT_EQ(vl_settingNotify(nullptr), -1);
  EXPECT_EQ(output.text(), "");
}

}  // namespace
}  // namespace contract
