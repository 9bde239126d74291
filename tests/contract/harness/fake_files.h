// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The files of the host, in memory, for fopen, fclose, stat and lstat. Only the paths of a host are taken over; the
// test program's own files are untouched.
#pragma once

#include <cstdio>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include "journal.h"
#include "open_streams.h"

namespace contract {

class FakeFiles {
 public:
  explicit FakeFiles(Journal &journal) : journal_(journal) {}

  // A readable file; it exists for stat and lstat too.
  void write(const std::string &path, const std::string &content);
  // A file that stat finds and fopen cannot open.
  void makeUnreadable(const std::string &path);
  // A symbolic link: lstat finds it; stat only if its target exists.
  void link(const std::string &path, const std::string &target);
  void remove(const std::string &path);
  bool contains(const std::string &path) const;
  std::string content(const std::string &path) const;

  // Paths of the files that are open now.
  Lines leftOpen() const { return streams_.names(); }

  // The interface itself.
  static bool isHostPath(const std::string &path);
  FILE *open(const std::string &path, const std::string &mode);
  bool owns(FILE *stream) const { return streams_.owns(stream); }
  std::string nameOf(FILE *stream) const { return streams_.nameOf(stream); }
  int close(FILE *stream);
  bool exists(const std::string &path) const;  // follows links
  bool existsItself(const std::string &path) const;

 private:
  Journal &journal_;
  mutable std::mutex mutex_;
  std::map<std::string, std::string> files_;
  std::map<std::string, std::string> links_;
  std::set<std::string> unreadable_;
  OpenStreams streams_;
};

}  // namespace contract
