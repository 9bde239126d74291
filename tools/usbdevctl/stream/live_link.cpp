// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/live_link.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "output/printable.h"

namespace usbdevctl {

namespace {

bool saysMissing(int error) { return error == ENOENT || error == ENOTDIR || error == ELOOP; }

/// Empty for what is not a link; false where the system does not tell.
bool readTarget(const std::string &path, std::string &target) {
  char read[PATH_MAX];
  const ssize_t length = readlink(path.c_str(), read, sizeof read);
  if (length > 0) target.assign(read, static_cast<std::size_t>(length));
  return length > 0 || errno == EINVAL;
}

LinkState stateOf(const std::string &path, std::string &target) {
  struct stat found = {};
  if (lstat(path.c_str(), &found) != 0) return saysMissing(errno) ? LinkState::missing : LinkState::unreadable;
  if (!readTarget(path, target)) return LinkState::unreadable;
  if (stat(path.c_str(), &found) == 0) return LinkState::good;
  return saysMissing(errno) ? LinkState::nowhere : LinkState::unreadable;
}

}  // namespace

LiveLink followLink(const std::string &folder, const std::string &name) {
  LiveLink link;
  if (name.empty()) return link;
  link.path = folder + "/" + name;
  link.state = stateOf(link.path, link.target);
  return link;
}

std::string linkStateName(LinkState state) {
  switch (state) {
    case LinkState::missing:
      return "missing";
    case LinkState::nowhere:
      return "nowhere";
    case LinkState::unreadable:
      return "unreadable";
    case LinkState::good:
      return "good";
    case LinkState::none:
      break;
  }
  return "none";
}

Cell linkCell(const LiveLink &link) {
  switch (link.state) {
    case LinkState::missing:
      return {"missing", Style::bad};
    case LinkState::nowhere:
      return {"leads nowhere: " + printable(link.target), Style::bad};
    case LinkState::unreadable:
      return {"cannot be read", Style::bad};
    case LinkState::good:
      return {printable(link.target)};
    case LinkState::none:
      break;
  }
  return {};
}

}  // namespace usbdevctl
