// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "costs.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace contract {

namespace {

int size(const Lines &lines) { return static_cast<int>(lines.size()); }

int countOpens(const Journal &journal, const std::string &mode) {
  const Lines opens = journal.only({"open"});
  const auto matches = [&mode](const std::string &line) { return line.rfind("open " + mode, 0) == 0; };
  return static_cast<int>(std::count_if(opens.begin(), opens.end(), matches));
}

}  // namespace

Lines repeatedOn(const Host &host) {
  std::set<std::string> seen;
  Lines repeated;
  for (const std::string &line : host.journal.only({"popen", "system", "exec"})) {
    if (!seen.insert(line).second) repeated.push_back(line);
  }
  return repeated;
}

Costs countedOn(const Host &host) {
  const Journal &journal = host.journal;
  Costs costs;
  costs.answers = size(journal.only({"popen"}));
  costs.effects = size(journal.only({"system"}));
  costs.programs = size(journal.only({"exec"}));
  costs.read_opens = countOpens(journal, "r");
  costs.keys_read = host.config.reads();
  costs.write_opens = countOpens(journal, "w");
  costs.keys_written = size(host.config.writes());
  costs.files = size(journal.only({"fopen"}));
  costs.repeats = size(repeatedOn(host));
  return costs;
}

std::string describe(const Costs &costs) {
  std::string text;
  for (const CostColumn &column : kCostColumns) {
    if (costs.*column.count == 0) continue;
    text += (text.empty() ? "" : ", ") + std::string(column.title) + " " + std::to_string(costs.*column.count);
  }
  for (char &c : text) c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
  return text.empty() ? "nothing" : text;
}

}  // namespace contract
