// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The host's settings files, as readcfg reads them, and as the library reads the host's own.
#include <usbdev/usbdev.h>

#include <cstring>
#include <sstream>
#include <string>

#include "expect.h"
#include "fuzzed_host.h"
#include "host/tools/ini_file.h"
#include "input.h"
#include "trimmed.h"

namespace {

using fuzz::expect;

constexpr std::size_t kMostEntries = 8;  // more take longer and find no more

bool operator==(const IniEntry &a, const IniEntry &b) {
  return a.section == b.section && a.key == b.key && a.value == b.value;
}

std::vector<IniEntry> entriesOf(const std::string &text) {
  std::istringstream stream(text);
  return readIni(stream);
}

/// Would the entry's line begin like a comment or a section?
bool isTakenForOther(const IniEntry &entry) {
  const std::string line = entry.key + "=" + entry.value;
  return line[0] == '#' || line[0] == ';' || (line[0] == '[' && line.back() == ']');
}

void expectEntries(const std::string &text) {
  std::vector<IniEntry> entries = entriesOf(text);
  if (entries.size() > kMostEntries) entries.resize(kMostEntries);
  for (const IniEntry &entry : entries) {
    for (const std::string *part : {&entry.section, &entry.key, &entry.value}) {
      expect(part->find_first_of(" \t\r\n") != 0, "no part begins with a blank");
      expect(part->empty() || part->find_last_of(" \t\r\n") != part->size() - 1, "no part ends with a blank");
    }
    if (isTakenForOther(entry)) continue;
    const std::string section = entry.section.empty() ? "" : "[" + entry.section + "]\n";
    const std::vector<IniEntry> same = entriesOf(section + entry.key + " = " + entry.value + "\n");
    expect(same.size() == 1 && same[0] == entry, "an entry that is written again is read as it was");
  }
}

struct Setting {
  int result = 0;
  std::string value;
};

/// What the library is to find in the host's settings.
Setting settingIn(const std::string &text, const std::string &key, const std::string &before) {
  for (const std::string &line : fuzz::linesOf(text, 256)) {
    const bool is_last_section = line.find("[NTP]") != std::string::npos;
    if (!is_last_section && line.find('[') != std::string::npos) continue;
    const std::size_t equals = line.find('=');
    if (is_last_section || equals == std::string::npos) return {-1, before};
    if (fuzz::trimmed(line.substr(0, equals)) == key) return {0, fuzz::trimmed(line.substr(equals + 1)).substr(0, 31)};
  }
  return {0, before};
}

void expectSetting(const std::string &text, const std::string &key) {
  char value[33] = "before";
  value[32] = '!';
  const int result = get_nas_info(key.c_str(), value);
  expect(value[32] == '!', "a value takes at most 32 bytes");
  const Setting expected = settingIn(text, key, "before");
  expect(result == expected.result && value == expected.value,
         "a setting is the first of its name before the last section");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string text = input.text();
  const std::string key = input.text().c_str();
  expectEntries(text);
  fuzz::FuzzedHost host;
  host.allowLeftOpen("/etc/config/Tundrel.conf");
  host.files.write("/etc/config/Tundrel.conf", text);
  expectSetting(text, key);
  expectSetting(text, "Internal Model");
  return 0;
}
