// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A slot is switched beside one other camera: every state that the other may be in, on ports as real hosts have them.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

// A port and where udevadm sees it.
struct Port {
  const char *slot;
  const char *controller;
  const char *bus;
  int bridges;
};

constexpr Port kHubPort1{"3-1.1", "/devices/pci0000:00/0000:00:02.0/0000:01:00.0", "/usb3/3-1/3-1.1/3-1.1:1.0", 1};
constexpr Port kHubPort2{"3-1.2", "/devices/pci0000:00/0000:00:02.0/0000:01:00.0", "/usb3/3-1/3-1.2/3-1.2:1.0", 1};
constexpr Port kItsFastHalf{"4-1", "/devices/pci0000:00/0000:00:02.0/0000:01:00.0", "/usb4/4-1/4-1:1.0", 1};
constexpr Port kBehindSwitch{"5-1", "/devices/pci0000:00/0000:00:03.0/0000:02:00.0/0000:03:00.0/0000:04:00.0",
                             "/usb5/5-1/5-1:1.0", 3};
constexpr Port kOnBoard2{"1-2", "/devices/pci0000:00/0000:00:14.0", "/usb1/1-2/1-2:1.0", 0};
constexpr Port kOnBoard4{"1-4", "/devices/pci0000:00/0000:00:14.0", "/usb1/1-4/1-4:1.0", 0};
constexpr Port kPlatform1{"7-1", "/devices/platform/vhci_hcd.0", "/usb7/7-1/7-1:1.0", 0};
constexpr Port kPlatform4{"7-4", "/devices/platform/vhci_hcd.0", "/usb7/7-4/7-4:1.0", 0};

struct Topology {
  const char *name;
  Port own;
  Port other;
  bool one_channel;
  bool conflict;
};

constexpr Topology kTopologies[] = {
    {"SameRootPort", kHubPort1, kHubPort2, false, true},
    {"SameBridge", kHubPort1, kItsFastHalf, false, true},
    {"OtherBridge", kHubPort1, kBehindSwitch, false, false},
    {"OtherWithoutBridge", kHubPort1, kOnBoard2, false, false},
    {"OwnWithoutBridge", kOnBoard2, kHubPort1, false, false},
    {"NoBridge", kOnBoard2, kOnBoard4, false, false},
    {"NoPci", kPlatform1, kPlatform4, false, false},
    {"OneChannelHost", kOnBoard2, kOnBoard4, true, true},
};

// Channel 7, whose camera is the other one.
struct Other {
  const char *name;
  int exists;
  int vnode;
  int conflict;
  int profile;
  int slot_switch;  // -1 = never stored
  enum class Role { left_alone, parked_by_a_switch_on, has_the_bus } role;
};

constexpr Other kOthers[] = {
    {"streams", 1, 2, -1, 1, 1, Other::Role::has_the_bus},
    {"streams, its switch never stored", 1, 2, -1, 1, -1, Other::Role::has_the_bus},
    {"was displaced", -1, 2, -1, 1, 1, Other::Role::has_the_bus},
    {"is switched off", 1, 2, -1, 1, 0, Other::Role::parked_by_a_switch_on},
    {"has no profile", 1, 2, -1, -1, 1, Other::Role::parked_by_a_switch_on},
    {"has no profile and is off", 1, 2, -1, -1, 0, Other::Role::parked_by_a_switch_on},
    {"is gone", 0, 2, -1, 1, 1, Other::Role::left_alone},
    {"has no camera", 1, -1, -1, 1, 1, Other::Role::left_alone},
    {"is parked", 1, 2, 5, 1, 1, Other::Role::left_alone},
    {"is unsupported", 1, 2, 999, -1, 1, Other::Role::left_alone},
};

void plug(Host &host, const Port &port, int node) {
  std::string classes = "    ATTRS{class}==\"0x0c0330\"\n";
  for (int i = 0; i < port.bridges; ++i) classes += "    ATTRS{class}==\"0x060400\"\n";
  host.commands.prints(classCommand(node), classes);
  host.commands.prints(deviceLineCommand(node), "  looking at device '" + std::string(port.controller) + port.bus +
                                                    "/video4linux/video" + std::to_string(node) + "':\n");
}

struct Case {
  Topology topology;
  Other other;
  bool on;
  int own_profile;
  int own_conflict;
};

void describe(Host &host, const Case &c) {
  if (c.topology.one_channel) host.limitToOneChannel();
  plug(host, c.topology.own, 0);
  host.channel(4).exists(1).slot(c.topology.own.slot).vnode(0).profile(c.own_profile).conflict(c.own_conflict);
  plug(host, c.topology.other, 2);
  HostChannel other = host.channel(7).exists(c.other.exists).slot(c.topology.other.slot).vnode(c.other.vnode);
  other.profile(c.other.profile).conflict(c.other.conflict);
  if (c.other.slot_switch != -1) other.slotSwitch(c.other.slot_switch);
}

bool yields(const Case &c) { return c.topology.conflict && c.other.role == Other::Role::has_the_bus; }

Lines expectedWrites(const Case &c) {
  Lines writes{c.on ? "ch4/slot_switch=1" : "ch4/slot_switch=0"};
  if (c.on && c.own_profile != -1 && c.topology.conflict && c.other.role == Other::Role::parked_by_a_switch_on) {
    writes.emplace_back("ch7/conflictch=4");
  }
  writes.emplace_back(yields(c) ? "ch4/conflictch=7" : "ch4/conflictch=-1");
  return writes;
}

// What follows the write pass: the hand-over, which finds no waiting channel, the line and the notification.
Lines expectedRest(const Case &c) {
  Lines lines;
  const std::string profile = std::to_string(c.own_profile);
  if (c.on) {
    if (c.topology.one_channel && yields(c)) lines = {"open r", "close"};
    lines.push_back(std::string("log 0 USB slot [") + c.topology.own.slot + "] has been enabled.");
    if (!yields(c)) {
      lines.push_back("notify event=6 profile=" + profile + " video=0 audio=1 flag=0 target=" + profile);
    }
    return lines;
  }
  if (c.own_conflict == -1) {
    lines = {"open r", "close"};
    if (!yields(c)) lines.insert(lines.end(), {"open w", "close"});
  }
  lines.push_back(std::string("log 0 USB slot [") + c.topology.own.slot + "] has been disabled.");
  if (c.own_profile != -1) {
    lines.push_back("notify event=7 profile=" + profile + " video=-1 audio=-1 flag=0 target=-1");
  }
  return lines;
}

void check(const Case &c) {
  Host host;
  describe(host, c);
  ASSERT_EQ(vl_set_usbslot_switch(c.topology.own.slot, c.on ? "enable" : "disable", "192.168.1.2"), 0);
  ASSERT_EQ(host.config.writes(), expectedWrites(c));
  const Lines lines = host.journal.only({"open", "close", "log", "notify"});
  const Lines passes{"open r", "close", "open r", "close", "open w", "close"};
  ASSERT_GE(lines.size(), passes.size());
  ASSERT_EQ(Lines(lines.begin(), lines.begin() + 6), passes);
  ASSERT_EQ(Lines(lines.begin() + 6, lines.end()), expectedRest(c));
  ASSERT_TRUE(host.journal.violations().empty());
}

class APortNextToAnother : public testing::TestWithParam<Topology> {};

TEST_P(APortNextToAnother, IsSwitchedAsTheOthersStateAndPortAskFor) {
  for (const Other &other : kOthers) {
    for (const bool on : {false, true}) {
      for (const int own_profile : {-1, 0, 3}) {
        for (const int own_conflict : {-1, 8}) {
          SCOPED_TRACE(std::string(on ? "on" : "off") + ", the other " + other.name + ", own profile " +
                       std::to_string(own_profile) + ", own mark " + std::to_string(own_conflict));
          check({GetParam(), other, on, own_profile, own_conflict});
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(On, APortNextToAnother, testing::ValuesIn(kTopologies),
                         [](const auto &topology) { return std::string(topology.param.name); });

}  // namespace
}  // namespace contract
