// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <cstdio>
#include <memory>

#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "completion/camera_words.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus hostWords(const std::string &kind) {
  FILE *nowhere = std::fopen("/dev/null", "we");
  if (nowhere == nullptr) return ExitStatus::failure;
  stderr = nowhere;  // a message would end up in the line that is completed
  Cameras cameras;
  const ExitStatus status = readCameras(cameras);
  if (status == ExitStatus::ok) print(kind == "ports" ? portWords(cameras) : cameraWords(cameras));
  return status;
}

}  // namespace

// Not for users: the completion scripts ask for what the host has.
void addHostWords(Command &program) {
  auto kind = std::make_shared<std::string>();
  Command &command = program.addCommand("__words", "Print the names that a shell may complete with",
                                        [kind] { return hostWords(*kind); });
  command.add("kind", kind.get(), "Kind of names").allow({"cameras", "ports"});
}

}  // namespace usbdevctl
