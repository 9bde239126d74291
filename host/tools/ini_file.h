// Plain settings files: [section] lines with "key = value" lines below them; # and ; begin a comment line.
#pragma once

#include <string>
#include <vector>

struct IniEntry {
  std::string section;  // empty above the first section
  std::string key;
  std::string value;
};

/// The entries in the file's order; none when the file cannot be read. Other lines are skipped.
std::vector<IniEntry> readIniFile(const std::string &path);
