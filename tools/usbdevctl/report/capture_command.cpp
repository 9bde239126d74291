// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "format/format_query.h"
#include "output/output.h"
#include "output/printable.h"
#include "report/captured.h"

namespace usbdevctl {

namespace {

struct CaptureOptions {
  CameraOptions camera{CameraName::By::video_node};
  std::string folder;
};

ExitStatus capture(const CaptureOptions &options) {
  int node = 0;
  const ExitStatus found = findVideoNode(options.camera.camera.name(), node);
  if (found != ExitStatus::ok) return found;
  const Captured captured = readCaptured(outputOf(captureCommand(node, options.folder)));
  if (!captured.wrong.empty()) {
    complain(captured.wrong);
    return ExitStatus::failure;
  }
  print(options.camera.json ? Json::document().set("folder", captured.folder).text()
                            : "captured: " + printable(captured.folder) + "\n");
  return ExitStatus::ok;
}

}  // namespace

void addCapture(Command &program) {
  auto options = std::make_shared<CaptureOptions>();
  Command &command = program.addCommand("capture", "Write a folder from which the simulator makes the same camera",
                                        [options] { return capture(*options); });
  addCameraOptions(command, options->camera);
  command.add("--folder", &options->folder, "The new folder; by default one in this folder, named after the camera");
}

}  // namespace usbdevctl
