// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A made-up host: everything outside the library, scripted and watched. While one exists, the library lives in it.
//
//   host.channel(3).exists(1).slot("3-1").name("HD Webcam").profile(1).vnode(2);
//   host.camera(2, "3-1").ids("046d", "0825").listing(text);
#pragma once

#include <string>

#include "fake_chance.h"
#include "fake_clock.h"
#include "fake_commands.h"
#include "fake_config.h"
#include "fake_files.h"
#include "fake_network.h"
#include "fake_sound.h"
#include "host_camera.h"
#include "host_channel.h"
#include "journal.h"
#include "outside_calls.h"

namespace contract {

// The commands that note the processor's vendor, and that ask for a field of an application package.
inline constexpr char kProcessorCommand[] = "/bin/cat /proc/cpuinfo | /bin/grep vendor_id > /tmp/vl_cpu.info";
inline std::string packageQuery(const std::string &package, const std::string &field) {
  return "/sbin/readcfg \"" + package + "\" \"" + field + "\" -c -d READCFG_FAILD -f /etc/config/bndl.conf";
}

class Host {
 public:
  Host();
  ~Host();
  Host(const Host &) = delete;
  Host &operator=(const Host &) = delete;

  // The file or command that an open stream reads; "" for another stream.
  std::string streamName(FILE *stream) const;

  // The one that exists now, or null.
  static Host *current();

  HostChannel channel(int number) { return HostChannel(config, number); }
  HostCamera camera(int node, const std::string &slot) { return HostCamera(commands, node, slot); }

  // The "vendor_id" line of the processor; "" (the default) for a processor without one, as on ARM.
  void processor(const std::string &vendor);
  // The "Internal Model" of the host.
  void model(const std::string &name);
  // One field of an installed application package.
  void package(const std::string &name, const std::string &field, const std::string &value);
  // An AMD host of a model that serves one channel only.
  void limitToOneChannel();

  OutsideCalls calls;
  Journal journal;
  FakeConfig config{journal};
  FakeFiles files{journal};
  FakeCommands commands;
  FakeNetwork network{journal};
  FakeSound sound{journal};
  FakeChance chance;
  FakeClock clock;
};

}  // namespace contract
