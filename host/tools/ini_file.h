/* Plain settings files: [section] lines with "key = value" lines below them; # and ; begin a comment line. */
#ifndef HOST_TOOLS_INI_FILE_H
#define HOST_TOOLS_INI_FILE_H

#include <string>
#include <vector>

struct IniEntry {
  std::string section;  // empty above the first section
  std::string key;
  std::string value;
};

/* The entries in the file's order; none when the file cannot be read. Lines that are none of the above are skipped. */
std::vector<IniEntry> read_ini_file(const std::string &path);

#endif
