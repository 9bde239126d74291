// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "fake_files.h"

#include <algorithm>
#include <cerrno>

namespace contract {

void FakeFiles::write(const std::string &path, const std::string &content) {
  std::lock_guard<std::mutex> guard(mutex_);
  files_[path] = content;
}

void FakeFiles::makeUnreadable(const std::string &path) {
  std::lock_guard<std::mutex> guard(mutex_);
  unreadable_.insert(path);
}

void FakeFiles::link(const std::string &path, const std::string &target) {
  std::lock_guard<std::mutex> guard(mutex_);
  links_[path] = target;
}

void FakeFiles::remove(const std::string &path) {
  std::lock_guard<std::mutex> guard(mutex_);
  files_.erase(path);
  links_.erase(path);
  unreadable_.erase(path);
}

bool FakeFiles::contains(const std::string &path) const {
  std::lock_guard<std::mutex> guard(mutex_);
  return files_.count(path) != 0;
}

std::string FakeFiles::content(const std::string &path) const {
  std::lock_guard<std::mutex> guard(mutex_);
  const auto found = files_.find(path);
  return found == files_.end() ? "" : found->second;
}

bool FakeFiles::isHostPath(const std::string &path) {
  const auto prefixes = {"/etc/config", "/tmp/vl_", "/tmp/gpuinfo.type", "/proc/cpuinfo", "/sys/", "/home/httpd",
                         "/mnt/",       "/share/"};
  return std::any_of(prefixes.begin(), prefixes.end(),
                     [&path](const char *prefix) { return path.rfind(prefix, 0) == 0; });
}

FILE *FakeFiles::open(const std::string &path, const std::string &mode) {
  if (mode != "re") journal_.violation("file opened with mode " + mode + " instead of re: " + path);
  bool readable = false;
  {
    std::lock_guard<std::mutex> guard(mutex_);
    readable = files_.count(path) != 0 && unreadable_.count(path) == 0;
  }
  journal_.add((readable ? "fopen " : "fopen failed ") + path);
  if (readable) return streams_.open(path, content(path));
  errno = ENOENT;
  return nullptr;
}

int FakeFiles::close(FILE *stream) {
  journal_.add("fclose " + streams_.close(stream));
  return 0;
}

bool FakeFiles::exists(const std::string &path) const {
  std::lock_guard<std::mutex> guard(mutex_);
  const auto link = links_.find(path);
  const std::string &target = link == links_.end() ? path : link->second;
  return files_.count(target) != 0 || unreadable_.count(target) != 0;
}

bool FakeFiles::existsItself(const std::string &path) const {
  std::lock_guard<std::mutex> guard(mutex_);
  return links_.count(path) != 0 || files_.count(path) != 0 || unreadable_.count(path) != 0;
}

}  // namespace contract
