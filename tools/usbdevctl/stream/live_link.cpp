#include "stream/live_link.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>

#include "output/printable.h"

namespace usbdevctl {

namespace {

/// Empty for what is not a link.
std::string targetOf(const std::string &path) {
  char target[PATH_MAX];
  const ssize_t length = readlink(path.c_str(), target, sizeof target);
  return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
}

}  // namespace

LiveLink followLink(const std::string &folder, const std::string &name) {
  LiveLink link;
  if (name.empty()) return link;
  link.path = folder + "/" + name;
  link.target = targetOf(link.path);
  struct stat found = {};
  if (lstat(link.path.c_str(), &found) != 0) {
    link.state = LinkState::missing;
  } else {
    link.state = stat(link.path.c_str(), &found) == 0 ? LinkState::good : LinkState::nowhere;
  }
  return link;
}

std::string linkStateName(LinkState state) {
  switch (state) {
    case LinkState::missing:
      return "missing";
    case LinkState::nowhere:
      return "nowhere";
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
    case LinkState::good:
      return {printable(link.target)};
    case LinkState::none:
      break;
  }
  return {};
}

}  // namespace usbdevctl
