// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The list files of devices: which names a list has.
#include <usbdev/usbdev.h>

#include <algorithm>
#include <string>

#include "expect.h"
#include "fuzzed_host.h"
#include "input.h"

namespace {

constexpr char kNoSupportList[] = "/etc/config/.usbnosupportlist.dat";
constexpr char kOtherList[] = "/etc/config/.usbH264list.dat";

/// The lines as the library compares them: without the line feed.
std::vector<std::string> entriesOf(const std::string &list) {
  std::vector<std::string> entries = fuzz::linesOf(list, 256);
  for (std::string &entry : entries) entry.erase(std::min(entry.find('\n'), entry.size()));
  return entries;
}

int isWholeIn(const std::vector<std::string> &entries, const std::string &name) {
  return std::count(entries.begin(), entries.end(), name) != 0 ? 1 : 0;
}

int isPartIn(const std::vector<std::string> &entries, const std::string &name) {
  return std::any_of(entries.begin(), entries.end(),
                     [&](const std::string &entry) { return name.find(entry) != std::string::npos; })
             ? 1
             : 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const auto number = static_cast<std::size_t>(input.number(256));
  const std::string list = input.text();
  const std::string name = input.text().c_str();
  const std::vector<std::string> entries = entriesOf(list);

  fuzz::FuzzedHost host;
  host.files.write(kNoSupportList, list);
  host.files.write(kOtherList, list);
  fuzz::expect(devlistcmp(name.c_str(), kNoSupportList) == isWholeIn(entries, name),
               "the no-support list names whole products");
  fuzz::expect(devlistcmp(name.c_str(), kOtherList) == isPartIn(entries, name),
               "any other list names parts of products");
  if (entries.empty()) return 0;
  const std::string &entry = entries[number % entries.size()];
  fuzz::expect(devlistcmp(entry.c_str(), kNoSupportList) == 1, "every entry is in its list");
  return 0;
}
