// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// readcfg: prints one value of a settings file.
#include <getopt.h>
#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "ini_file.h"

namespace {

constexpr char kUsage[] =
    "Usage: readcfg SECTION KEY [-c] [-d DEFAULT] [-f FILE]\n"
    "Prints the value of KEY in [SECTION] of a settings file.\n"
    "\n"
    "  -c          take section names that differ in case only as the same\n"
    "  -d DEFAULT  print this when there is no such value\n"
    "  -f FILE     read this file instead of /etc/config/Tundrel.conf\n"
    "      --help  print this and end\n"
    "\n"
    "Exit status: 0 printed, 1 no such value and no default, 2 wrong usage, 3 it could not be read or printed.\n";

enum ExitStatus { kPrinted = 0, kNoValue = 1, kWrongUsage = 2 };

struct Query {
  std::string file = "/etc/config/Tundrel.conf";
  std::string section;
  std::string key;
  const char *default_value = nullptr;
  bool any_case = false;
  bool help = false;
};

bool parse(int count, char **arguments, Query &query) {
  const option long_options[] = {{"help", no_argument, nullptr, 'h'}, {}};
  for (int choice = 0; (choice = getopt_long(count, arguments, "cd:f:", long_options, nullptr)) != -1;) {
    if (choice == 'c')
      query.any_case = true;
    else if (choice == 'd')
      query.default_value = optarg;
    else if (choice == 'f')
      query.file = optarg;
    else if (choice == 'h')
      query.help = true;
    else
      return false;
  }
  if (query.help) return true;
  if (count - optind != 2) return false;
  query.section = arguments[optind];
  query.key = arguments[optind + 1];
  return true;
}

bool answers(const IniEntry &entry, const Query &query) {
  bool same_section =
      query.any_case ? strcasecmp(entry.section.c_str(), query.section.c_str()) == 0 : entry.section == query.section;
  return same_section && entry.key == query.key;
}

ExitStatus printAnswer(const Query &query) {
  const auto entries = readIniFile(query.file);
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const auto &entry) { return answers(entry, query); });
  if (found == entries.end() && !query.default_value) return kNoValue;
  puts(found == entries.end() ? query.default_value : found->value.c_str());
  return kPrinted;
}

int run(int count, char **arguments) {
  Query query;
  if (!parse(count, arguments, query)) {
    fputs(kUsage, stderr);
    return kWrongUsage;
  }
  if (!query.help) return printAnswer(query);
  fputs(kUsage, stdout);
  return kPrinted;
}

}  // namespace

int main(int count, char **arguments) {
  return checked([&] { return run(count, arguments); });
}
