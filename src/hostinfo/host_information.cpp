// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hostinfo/host_information.h"

#include "core/lines.h"
#include "core/shell_text.h"
#include "core/text.h"

namespace usbdev {
namespace {

using Answer = char[127];

/// False when the package registry answers nothing, or the name could not be asked for.
bool askRegistry(const char *package, const char *key, Answer &answer) {
  char command[256];
  if (!isSafeWord(package) || !formatText(command, "/sbin/readcfg %s %s -f /etc/config/bndl.conf", package, key)) {
    return false;
  }
  CommandLines registry("%s", command);
  if (!registry.next(answer)) return false;
  cutAtLineFeed(answer);
  return true;
}

void askFor(const char *package, const char *key, TextBuffer field) {
  Answer answer;
  if (askRegistry(package, key, answer)) copyText(field, answer);
}

}  // namespace

HostSetting readWebPort(int &port) {
  char value[256];
  const HostSetting setting = copyHostSetting("Web Access Port", value);
  if (setting == HostSetting::found) port = toInt(value);
  return setting;
}

HostSetting readHostVersion(TextBuffer version) { return copyHostSetting("Version", version); }

void readPackage(const char *package, BndlInfo &info) {
  askFor(package, "Version", info.version);
  askFor(package, "Build", info.build);
  askFor(package, "Install_Path", info.install_path);
  Answer enabled = "";
  info.enabled = askRegistry(package, "Enable", enabled) && isSame(enabled, "TRUE") ? 1 : 0;
}

}  // namespace usbdev
