// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "report/redaction.h"

#include <algorithm>
#include <regex>

#include "output/reading.h"

namespace usbdevctl {

namespace {

constexpr char kReplacement[] = "[removed]";
// A shorter serial number, such as "1", would be found in every other text.
constexpr std::size_t kShortestTelling = 4;

/// Nothing for a line without a device's serial number.
std::string serialIn(const std::string &line, std::smatch &found) {
  static const std::regex serial_line(R"(^(\s*ATTRS?\{serial\}==")(.*)("\s*)$)");
  static const std::regex pci_address(R"(^[0-9a-f]{4}:[0-9a-f]{2}:[0-9a-f]{2}\.[0-7]$)");
  if (line.find("{serial}") == std::string::npos || !std::regex_match(line, found, serial_line)) return "";
  const std::string serial = found[2];
  return std::regex_match(serial, pci_address) ? "" : serial;
}

}  // namespace

void Redaction::add(const std::string &secret) {
  if (secret.empty()) return;
  const auto longer = [&secret](const std::string &other) { return other.size() <= secret.size(); };
  secrets_.insert(std::find_if(secrets_.begin(), secrets_.end(), longer), secret);
}

std::string Redaction::apply(std::string text) const {
  const std::size_t length = sizeof kReplacement - 1;
  for (const std::string &secret : secrets_) {
    for (std::size_t at = text.find(secret); at != std::string::npos; at = text.find(secret, at + length)) {
      text.replace(at, secret.size(), kReplacement);
    }
  }
  return text;
}

void addSerialNumbers(Redaction &redaction, const std::string &walk) {
  std::istringstream lines = readerOf(walk);
  std::smatch found;
  for (std::string line; std::getline(lines, line);) {
    const std::string serial = serialIn(line, found);
    if (serial.size() >= kShortestTelling) redaction.add(serial);
  }
}

std::string withoutSerialNumbers(const std::string &walk) {
  std::istringstream lines = readerOf(walk);
  std::smatch found;
  std::string result;
  for (std::string line; std::getline(lines, line);) {
    result += serialIn(line, found).empty() ? line : found[1].str() + kReplacement + found[3].str();
    result += '\n';
  }
  return result;
}

}  // namespace usbdevctl
