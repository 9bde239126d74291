// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "random_day.h"

#include <algorithm>
#include <random>
#include <sstream>

#include "operations.h"
#include "output_capture.h"

namespace model {

namespace {

// Each happening as often as its weight says, so that a byte chooses one.
std::vector<Happening> weighted() {
  std::vector<Happening> all;
  for (const auto *happenings : {&deviceHappenings(), &settingHappenings(), &sharingHappenings(), &queryHappenings()}) {
    for (const Happening &happening : *happenings)
      all.insert(all.end(), static_cast<size_t>(happening.weight), happening);
  }
  return all;
}

}  // namespace

History historyOf(const uint8_t *bytes, size_t size) {
  History history;
  if (size != 0) history.kind_of_host = bytes[0];
  for (size_t at = 1; at + sizeof(Operation) <= size; at += sizeof(Operation)) {
    Operation operation;
    std::copy_n(bytes + at, operation.size(), operation.begin());
    history.operations.push_back(operation);
  }
  return history;
}

History randomHistory(unsigned seed, int operations) {
  std::mt19937 random(seed);
  std::vector<uint8_t> bytes(1 + static_cast<size_t>(operations) * sizeof(Operation));
  for (uint8_t &byte : bytes) byte = static_cast<uint8_t>(random());
  return historyOf(bytes.data(), bytes.size());
}

std::string happen(TwinWorlds &worlds, const Operation &operation) {
  static const std::vector<Happening> happenings = weighted();
  Choices choose(operation, worlds.world);
  worlds.begin(static_cast<unsigned>(operation.back() % 3));
  happenings[operation[0] % happenings.size()].run(worlds, choose);
  return worlds.difference();
}

std::string differenceIn(const History &history) {
  const contract::OutputCapture silence;
  RandomDay day(history.kind_of_host);
  std::ostringstream report;
  report << "kind of host " << history.kind_of_host % 16 << "\n";
  for (const Operation &operation : history.operations) {
    const std::string difference = day.step(operation);
    report << day.worlds().operation() << "\n" << difference;
    if (!difference.empty()) return report.str();
  }
  return "";
}

History shortest(History history) {
  for (size_t i = history.operations.size(); i-- > 0;) {
    History shorter = history;
    shorter.operations.erase(shorter.operations.begin() + static_cast<std::ptrdiff_t>(i));
    if (!differenceIn(shorter).empty()) history = shorter;
  }
  return history;
}

}  // namespace model
