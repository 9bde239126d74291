// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "resources.h"

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

namespace soak {

namespace {

namespace fs = std::filesystem;

size_t entriesOf(const char *folder) {
  return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

long residentKilobytes() {
  malloc_trim(0);
  long pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

size_t attachedSegments() {
  std::ifstream maps("/proc/self/maps");
  size_t count = 0;
  for (std::string line; std::getline(maps, line);) count += line.find("/SYSV") != std::string::npos ? 1 : 0;
  return count;
}

std::vector<std::string> temporaryFiles() {
  std::vector<std::string> names;
  for (const char *folder : {"/etc", "/run", "/var/log"}) {
    for (const auto &entry : fs::recursive_directory_iterator(folder)) names.push_back(entry.path());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

Resources Resources::now() {
  const bool children = waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD;
  return {residentKilobytes(), entriesOf("/proc/self/fd"), entriesOf("/proc/self/task"), attachedSegments(), children,
          temporaryFiles()};
}

}  // namespace soak
