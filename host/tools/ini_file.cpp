// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "ini_file.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <fstream>
#include <system_error>

namespace {

std::string trimmed(const std::string &text) {
  const char *blanks = " \t\r";
  std::size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool isComment(const std::string &line) { return line.front() == '#' || line.front() == ';'; }

bool isSection(const std::string &line) { return line.front() == '[' && line.back() == ']'; }

}  // namespace

std::vector<IniEntry> readIniFile(const std::string &path) {
  std::ifstream file(path);
  if (!file && errno != ENOENT) throw std::system_error(errno, std::generic_category(), path);
  file.exceptions(std::ios::badbit);  // or else the file would seem to end where it cannot be read
  return readIni(file);
}

std::vector<IniEntry> readIni(std::istream &text) {
  std::vector<IniEntry> entries;
  std::string section;
  for (std::string raw; std::getline(text, raw);) {
    std::string line = trimmed(raw);
    if (line.empty() || isComment(line)) continue;
    std::size_t separator = line.find('=');
    if (isSection(line))
      section = trimmed(line.substr(1, line.size() - 2));
    else if (separator != std::string::npos)
      entries.push_back({section, trimmed(line.substr(0, separator)), trimmed(line.substr(separator + 1))});
  }
  return entries;
}

int checked(const std::function<int()> &program) {
  try {
    const int status = program();
    return fflush(stdout) == 0 && ferror(stdout) == 0 ? status : kBroken;
  } catch (const std::exception &problem) {
    fprintf(stderr, "%s\n", problem.what());
    return kBroken;
  }
}
