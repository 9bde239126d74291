// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Plain settings files: [section] lines with "key = value" lines below them; # and ; begin a comment line.
#pragma once

#include <functional>
#include <istream>
#include <string>
#include <vector>

struct IniEntry {
  std::string section;  // empty before the first section
  std::string key;
  std::string value;
};

/// Reads the entries in the file's order; none when the file is missing. Skips other lines. Throws where it cannot
/// read.
std::vector<IniEntry> readIniFile(const std::string &path);

/// The same for the text of such a file.
std::vector<IniEntry> readIni(std::istream &text);

/// Runs a program whose result is its exit status, and checks that what it printed was written: returns kBroken where
/// that, reading, or memory failed.
constexpr int kBroken = 3;
int checked(const std::function<int()> &program);
