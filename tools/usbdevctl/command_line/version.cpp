// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "command_line/version.h"

#include <dlfcn.h>

#include <cstdlib>
#include <memory>

#include "output/printable.h"

namespace usbdevctl {

namespace {

/// The library exports no version.
std::string versionOf(const std::string &file) {
  const std::string mark = ".so.";
  const std::size_t at = file.rfind(mark);
  return at == std::string::npos ? "of unknown version" : file.substr(at + mark.size());
}

}  // namespace

std::string programVersion() { return USBDEVCTL_VERSION; }

std::string libraryFile() {
  Dl_info found = {};
  const void *function = dlsym(RTLD_DEFAULT, "mn_sync_usbdev_conf");
  if (function == nullptr || dladdr(function, &found) == 0) return "unknown";
  const std::unique_ptr<char, decltype(&std::free)> path(realpath(found.dli_fname, nullptr), &std::free);
  return path ? path.get() : found.dli_fname;
}

std::string versionText() {
  const std::string file = libraryFile();
  return "usbdevctl " + programVersion() + "\nlibusbdevlib " + printable(versionOf(file)) + " (" + printable(file) +
         ")";
}

}  // namespace usbdevctl
