// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzzed_host.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "expect.h"

namespace fuzz {
namespace {

// Every command of the library, with the shortest texts of the host in it.
constexpr const char *kCommands[] = {
    "/sbin/udevadm info --name=/dev/video0 --attribute-walk",
    "/sbin/udevadm info -a -n /dev/video0 | grep '{class}'",
    "/sbin/udevadm info -a -n /dev/video0 | grep 'looking at device'",
    "/bin/ps | /bin/grep \"v4l2-ctl\" | /bin/grep \"/dev/video0\" | /bin/grep -v grep | /bin/awk '{print $1}'",
    "/bin/ps | /bin/grep \"HDpipe 0\" | /bin/grep -v grep | /bin/awk '{print $1}'",
    "kill 1 &",
    "/bin/ls /sys/bus/usb/drivers/uvcvideo | grep \\: | /bin/awk '{print $1}'",
    "/bin/ls /sys/bus/usb/drivers/uvcvideo/x/video4linux | /bin/awk '{print $1}'",
    "/bin/ls /sys/bus/usb/drivers/uvcvideo/x\\:1.0/video4linux | /bin/awk '{print $1}'",
    "/sbin/readcfg \"x\" \"x\" -c -d READCFG_FAILD -f /etc/config/bndl.conf",
    contract::kProcessorCommand,
    "hwinfo_app --usb_get_port_id value='x'",
};

/// The characters of a command that a shell does not take as themselves.
std::string skeletonOf(const std::string &command) {
  std::string skeleton;
  char quote = '\0';
  for (const char c : command) {
    const char *special = "|&;<>()$`\\\"'*?[]{}#~\n\r";
    if (quote == '"') special = "$`\\\"\n\r";
    if (quote == '\'') special = "'\n\r";
    if (std::strchr(special, c) == nullptr) continue;
    skeleton += c;
    if (c == quote) {
      quote = '\0';
    } else if (quote == '\0' && (c == '"' || c == '\'')) {
      quote = c;
    }
  }
  return skeleton;
}

bool isKnown(const std::string &command) {
  static const std::set<std::string> skeletons = [] {
    std::set<std::string> all;
    for (const char *one : kCommands) all.insert(skeletonOf(one));
    return all;
  }();
  return skeletons.count(skeletonOf(command)) != 0;
}

}  // namespace

FuzzedHost::~FuzzedHost() {
  expect(journal.violations().empty(), "the library keeps to the interfaces of its host");
  expect(config.openHandles() == 0, "every configuration is closed");
  for (const std::string &path : files.leftOpen()) expect(mayStayOpen(path), "every file is closed");
  for (const std::string &command : commands.leftOpen()) expect(mayStayOpen(command), "every command is closed");
  expect(network.openSockets() == 0, "every socket is closed");
  for (const std::string &command : journal.commands())
    expect(isKnown(command), "a shell reads texts of the host as words");
}

bool FuzzedHost::mayStayOpen(const std::string &path) const {
  return std::any_of(allowed_open_.begin(), allowed_open_.end(),
                     [&](const std::string &start) { return path.rfind(start, 0) == 0; });
}

std::vector<std::string> linesOf(const std::string &text, std::size_t size) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t length = std::min(text.find('\n', at), text.size() - 1) + 1 - at;
    length = std::min(length, size - 1);
    lines.emplace_back(text.substr(at, length).c_str());  // up to the first zero
    at += length;
  }
  return lines;
}

std::string linesWith(const std::string &text, const std::string &part) {
  std::istringstream lines(text);
  std::string found;
  for (std::string line; std::getline(lines, line);) {
    if (line.find(part) != std::string::npos) found += line + "\n";
  }
  return found;
}

}  // namespace fuzz
