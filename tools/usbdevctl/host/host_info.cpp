// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "host/host_info.h"

#include <usbdev/hostinfo.h>

#include <memory>

#include "command_line/shared_arguments.h"
#include "output/fields.h"
#include "output/output.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

struct HostInfo {
  std::string version;
  std::optional<int> web_port;
};

// For a value that the host does not have, the library fails or succeeds without storing one, depending on where the
// host's file ends.
HostInfo askHost() {
  HostInfo info;
  char version[256] = "";
  int port = 0;
  if (vl_get_nas_version(version) == 0) info.version = fieldText(version);
  if (vl_get_nas_HTTPport(&port) == 0 && port != 0) info.web_port = port;
  return info;
}

ExitStatus hostInfo(bool json) {
  const HostInfo info = askHost();
  if (info.version.empty() && !info.web_port) {
    complain("the host's system configuration cannot be read, or has neither version nor web port");
    return ExitStatus::failure;
  }
  const Fields fields =
      Fields().add(absentIfEmpty(textField("version", info.version))).add(numberField("web_port", info.web_port));
  print(recordOutput(fields, json));
  return ExitStatus::ok;
}

}  // namespace

void addHostInfo(Command &host) {
  auto json = std::make_shared<bool>(false);
  Command &command = host.addCommand("info", "Show the host's version and the TCP port of its web pages",
                                     [json] { return hostInfo(*json); });
  addJsonFlag(command, *json);
}

}  // namespace usbdevctl
