// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "host.h"

#include <atomic>

namespace contract {

namespace {

// Constant-initialised, as the C library's functions are called before any constructor runs.
std::atomic<Host *> current_host{nullptr};

}  // namespace

Host::Host()
    : commands(journal,
               [this] { return std::string(config.openInThisThread() ? "command inside a critical section" : ""); }) {
  processor("");
  current_host = this;
}

Host::~Host() { current_host = nullptr; }

std::string Host::streamName(FILE *stream) const {
  const std::string name = files.nameOf(stream);
  return name.empty() ? commands.nameOf(stream) : name;
}

Host *Host::current() { return current_host; }

void Host::processor(const std::string &vendor) {
  const std::string line = vendor.empty() ? "" : "vendor_id\t: " + vendor + "\n";
  commands.does(kProcessorCommand, [this, line] { files.write("/tmp/vl_cpu.info", line); });
}

void Host::model(const std::string &name) {
  files.write("/etc/config/Tundrel.conf", "[System]\nInternal Model = " + name + "\n[NTP]\n");
}

void Host::package(const std::string &name, const std::string &field, const std::string &value) {
  commands.prints(packageQuery(name, field), value + "\n");
}

void Host::limitToOneChannel() {
  processor("AuthenticAMD");
  model("TS-K41");
}

}  // namespace contract
