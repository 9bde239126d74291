// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "report/captured.h"

namespace usbdevctl {

namespace {

constexpr char kMessage[] = "sim: ";

/// The text as one word of the shell.
std::string quoted(const std::string &text) {
  std::string word = "'";
  for (const char letter : text) word += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
  return word + "'";
}

}  // namespace

std::string captureCommand(int node, const std::string &folder) {
  const std::string target = folder.empty() ? "" : " -- " + quoted(folder);
  return "sim capture /dev/video" + std::to_string(node) + target + " 2>&1";
}

Captured readCaptured(const std::string &printed) {
  const std::string line = printed.substr(0, printed.find('\n'));
  const std::string message = kMessage;
  if (line.compare(0, message.size(), message) == 0) return {"", line.substr(message.size())};
  if (line.compare(0, 1, "/") == 0) return {line, ""};
  return {"", "this host has no simulator that can capture a camera" + (line.empty() ? "" : ": " + line)};
}

}  // namespace usbdevctl
