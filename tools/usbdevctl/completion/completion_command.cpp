// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <memory>

#include "command_line/commands.h"
#include "completion/completion.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus completion(const Command &program, const std::string &shell) {
  if (shell == "fish") {
    print(fishCompletion(program));
  } else {
    print(shell == "bash" ? bashCompletion(program) : zshCompletion(program));
  }
  return ExitStatus::ok;
}

}  // namespace

void addCompletion(Command &program) {
  auto shell = std::make_shared<std::string>();
  Command &command = program.addCommand("completion", "Print the script that completes usbdevctl's commands in a shell",
                                        [&program, shell] { return completion(program, *shell); });
  command.add("shell", shell.get(), "Shell").allow({"bash", "zsh", "fish"});
}

}  // namespace usbdevctl
