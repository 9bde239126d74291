// Plain settings files: [section] lines with "key = value" lines below them; # and ; begin a comment line.
#pragma once

#include <string>
#include <vector>

struct IniEntry {
  std::string section;  // empty before the first section
  std::string key;
  std::string value;
};

/// Reads the entries in the file's order; none when the file cannot be read. Skips other lines.
std::vector<IniEntry> readIniFile(const std::string &path);
