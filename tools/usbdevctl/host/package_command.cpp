// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/hostinfo.h>

#include <memory>

#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/fields.h"
#include "output/output.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

struct PackageOptions {
  std::string name;
  bool json = false;
};

bool isRegistered(const BndlInfo &info) {
  return info.version[0] != '\0' || info.build[0] != '\0' || info.install_path[0] != '\0' || info.enabled != 0;
}

Fields describe(const std::string &name, const BndlInfo &info) {
  return Fields()
      .add(textField("package", name))
      .add(textField("version", fieldText(info.version)))
      .add(textField("build", fieldText(info.build)))
      .add(textField("install_path", fieldText(info.install_path)))
      .add(answerField("enabled", info.enabled != 0));
}

ExitStatus package(const PackageOptions &options) {
  BndlInfo info = {};
  vl_get_bndl_info(options.name.c_str(), &info);
  if (!isRegistered(info)) {
    complain("the host has no package '" + printable(options.name) + "'");
    return ExitStatus::nothing;
  }
  print(recordOutput(describe(options.name, info), options.json));
  return ExitStatus::ok;
}

}  // namespace

void addPackage(Command &program) {
  auto options = std::make_shared<PackageOptions>();
  Command &command = program.addCommand("package", "Show what the host's registry stores about an application package",
                                        [options] { return package(*options); });
  command.add("name", &options->name, "Name of the package");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
