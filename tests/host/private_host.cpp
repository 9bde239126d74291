// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "private_host.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

void require(bool done, const std::string &what) {
  if (!done) throw std::runtime_error("cannot " + what + ": " + strerror(errno));
}

/// An ordinary user becomes the root of a user namespace, which may mount in a mount namespace of its own.
void becomeRootOfOwnUserNamespace() {
  const std::string user = std::to_string(geteuid());
  const std::string group = std::to_string(getegid());
  require(unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0, "make a user namespace");
  writeFile("/proc/self/setgroups", "deny");
  writeFile("/proc/self/uid_map", "0 " + user + " 1");
  writeFile("/proc/self/gid_map", "0 " + group + " 1");
}

class PrivateHost : public testing::Environment {
 public:
  void SetUp() override {
    if (unshare(CLONE_NEWNS) != 0) becomeRootOfOwnUserNamespace();
    require(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "make the mounts private");
    for (const char *folder : {"/etc", "/run", "/var/log", kWorkFolder}) mountMemory(folder);
    makeFolder("/etc/config");
  }
};

[[maybe_unused]] testing::Environment *const kPrivateHost = testing::AddGlobalTestEnvironment(new PrivateHost);

}  // namespace

void mountMemory(const std::string &folder, const std::string &size) {
  const std::string options = size.empty() ? "" : "size=" + size;
  require(mount("tmpfs", folder.c_str(), "tmpfs", 0, options.c_str()) == 0, "mount on " + folder);
}

void makeReadOnly(const std::string &folder) {
  require(mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0, "protect " + folder);
}

void makeFolder(const std::string &path) { std::filesystem::create_directories(path); }

void makeEmptyFolder(const std::string &path) {
  std::filesystem::remove_all(path);
  makeFolder(path);
}

void writeFile(const std::string &path, const std::string &content) {
  std::ofstream file(path, std::ios::binary);
  file << content;
  file.close();
  require(!file.fail(), "write " + path);
}

std::string readFile(const std::string &path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

std::vector<std::string> namesIn(const std::string &folder) {
  std::vector<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}
