// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/video_node.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <string_view>

#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr std::size_t kMostHolders = 8;

bool captures(int file) {
  v4l2_capability capability = {};
  if (ioctl(file, VIDIOC_QUERYCAP, &capability) != 0) return true;  // then something else is wrong with it
  const unsigned own =
      (capability.capabilities & V4L2_CAP_DEVICE_CAPS) != 0 ? capability.device_caps : capability.capabilities;
  return (own & (V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_VIDEO_CAPTURE_MPLANE)) != 0;
}

/// Asks for no buffers, which the driver refuses while another program has some.
bool isBusy(int file) {
  v4l2_requestbuffers none = {};
  none.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
  none.memory = V4L2_MEMORY_MMAP;
  return ioctl(file, VIDIOC_REQBUFS, &none) != 0 && errno == EBUSY;
}

bool isNumber(const std::string &text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char it) { return std::isdigit(it) != 0; });
}

std::string below(const std::string &folder, const std::string &name) { return folder + "/" + name; }

std::string holderText(const std::string &program, const std::string &process) {
  return printable(program) + " (process " + process + ")";
}

enum class Seen { no, yes, hidden };

Seen leadsTo(const std::string &link, const std::string &node) {
  char target[PATH_MAX] = "";
  const ssize_t length = readlink(link.c_str(), target, sizeof target);
  if (length < 0) return errno == EACCES || errno == EPERM ? Seen::hidden : Seen::no;
  return std::string_view(target, static_cast<std::size_t>(length)) == node ? Seen::yes : Seen::no;
}

/// The host's manager calls the programs of its streams so.
bool isOwnStream(const KernelFiles &files, const std::string &process, const std::string &node) {
  const std::string command = files.content(process + "/cmdline");
  const std::string name = command.substr(0, command.find('\0'));
  const std::string number = node.substr(node.find_last_not_of("0123456789") + 1);
  return name == "v4l2_read " + number || name == "HDpipe " + number;
}

/// Whether the process has the node open, as far as this program may know.
Seen holds(const KernelFiles &files, const std::string &process, const std::string &node) {
  const std::string folder = process + "/fd";
  if (faccessat(AT_FDCWD, files.path(folder).c_str(), R_OK, AT_EACCESS) != 0)
    return errno == EACCES ? Seen::hidden : Seen::no;
  Seen seen = Seen::no;
  for (const std::string &descriptor : files.names(folder)) {
    const Seen one = leadsTo(files.path(below(folder, descriptor)), node);
    if (one == Seen::yes) return one;
    if (one == Seen::hidden) seen = one;
  }
  return seen;
}

}  // namespace

NodeState askNode(const std::string &path, bool may_be_busy) {
  NodeState state;
  struct stat status = {};
  state.exists = stat(path.c_str(), &status) == 0;
  state.is_device = state.exists && S_ISCHR(status.st_mode);
  if (!state.is_device) return state;
  const int file = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) state.open_error = errno;
  if (file < 0) return state;
  state.captures = captures(file);
  state.busy = may_be_busy && state.captures && isBusy(file);
  close(file);
  return state;
}

NodeHolders holdersOf(const KernelFiles &files, const std::string &node) {
  NodeHolders holders;
  holders.all_seen = files.exists("/proc/1");  // a service may see no processes of other users
  for (const std::string &name : files.names("/proc")) {
    if (!isNumber(name) || name == std::to_string(getpid())) continue;
    const std::string process = "/proc/" + name;
    const Seen seen = holds(files, process, node);
    if (seen == Seen::hidden) holders.all_seen = false;
    if (seen != Seen::yes || isOwnStream(files, process, node)) continue;
    if (holders.programs.size() == kMostHolders) break;
    holders.programs.push_back(holderText(files.line(below(process, "comm")), name));
  }
  return holders;
}

}  // namespace usbdevctl
