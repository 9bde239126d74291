// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// gpuinfo_app: shows the host's graphics processors. /etc/config/gpuinfo.conf has a section for each, with its name,
// its details and its state:
//
//   [card0]
//   details = integrated graphics
//   driver_installed = 1
#include <getopt.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "ini_file.h"

namespace {

constexpr char kFile[] = "/etc/config/gpuinfo.conf";
constexpr char kUsage[] =
    "Usage: gpuinfo_app -l | -s NAME\n"
    "Shows the host's graphics processors, as /etc/config/gpuinfo.conf lists them.\n"
    "\n"
    "  -l          list them, each as \"name: details\"\n"
    "  -s NAME     print one's state as key=value lines, driver_installed first\n"
    "      --help  print this and end\n"
    "\n"
    "Exit status: 0 printed, 1 no such graphics processor, 2 wrong usage, 3 it could not be read or printed.\n";

enum ExitStatus { kPrinted = 0, kNotFound = 1, kWrongUsage = 2 };

void listAll() {
  for (const auto &entry : readIniFile(kFile))
    if (entry.key == "details") printf("%s: %s\n", entry.section.c_str(), entry.value.c_str());
}

ExitStatus printState(const std::string &name) {
  auto entries = readIniFile(kFile);
  entries.erase(std::remove_if(entries.begin(), entries.end(),
                               [&](const auto &entry) { return entry.section != name || entry.key == "details"; }),
                entries.end());
  // Callers read only the first line.
  std::stable_partition(entries.begin(), entries.end(),
                        [](const auto &entry) { return entry.key == "driver_installed"; });
  for (const auto &entry : entries) printf("%s=%s\n", entry.key.c_str(), entry.value.c_str());
  return entries.empty() ? kNotFound : kPrinted;
}

/// Joins the arguments: names contain blanks, and callers do not quote them.
std::string joined(const std::string &first, int count, char **rest) {
  std::string name = first;
  for (int i = 0; i < count; ++i) name.append(" ").append(rest[i]);
  return name;
}

ExitStatus wrongUsage() {
  fputs(kUsage, stderr);
  return kWrongUsage;
}

int run(int count, char **arguments) {
  const option long_options[] = {{"help", no_argument, nullptr, 'h'}, {}};
  switch (getopt_long(count, arguments, "+ls:", long_options, nullptr)) {
    case 'h':
      fputs(kUsage, stdout);
      return kPrinted;
    case 'l':
      if (optind < count) return wrongUsage();
      listAll();
      return kPrinted;
    case 's':
      return printState(joined(optarg, count - optind, arguments + optind));
    default:
      return wrongUsage();
  }
}

}  // namespace

int main(int count, char **arguments) {
  return checked([&] { return run(count, arguments); });
}
