// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "format/format_query.h"
#include "format/format_survey.h"
#include "format/formats.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

/// Looks into the listing itself only where the library found nothing in it.
FormatSurvey surveyUnlessFound(int node, const CameraFormats &camera) {
  return camera.count == 0 ? surveyFormats(formatListing(node)) : FormatSurvey();
}

std::string asJson(int node, const CameraFormats &camera, const FormatSurvey &survey) {
  Json listed = Json::array();
  for (const std::string &code : survey.codes) listed.append(code);
  return Json::document()
      .set("node", node)
      .set("over_60", camera.over_60)
      .set("formats", formatsJson(camera))
      .set("unread", std::move(listed))
      .set("layout_read", survey.layout != FormatSurvey::Layout::newer)
      .text();
}

void complainOfNoFormat(const std::string &device, const FormatSurvey &survey) {
  const std::string layout = layoutText(survey);
  complain(device +
           " offers no format that can be used: " + (layout.empty() ? "v4l2-ctl lists " + codesText(survey) : layout));
  if (!layout.empty()) complain(kLayoutAdvice);
}

ExitStatus formats(const CameraOptions &options) {
  int node = 0;
  const ExitStatus found = findVideoNode(options.camera.name(), node);
  if (found != ExitStatus::ok) return found;
  const CameraFormats camera = readFormats(node);
  const std::string device = "/dev/video" + std::to_string(node);
  if (camera.count < 0) {
    complain("the format query of " + device + " cannot be started");
    return ExitStatus::failure;
  }
  const FormatSurvey survey = surveyUnlessFound(node, camera);
  print(options.json ? asJson(node, camera, survey) : formatsText(camera, outputTakesColour()));
  if (camera.over_60) complain("warning: " + device + " has rates above 60 frames per second; decoding may fail");
  if (camera.count > 0) return ExitStatus::ok;
  complainOfNoFormat(device, survey);
  return ExitStatus::nothing;
}

}  // namespace

void addFormats(Command &program) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::video_node);
  Command &command = program.addCommand("formats", "Show the sizes and frame rates that a camera offers",
                                        [options] { return formats(*options); });
  addCameraOptions(command, *options);
}

}  // namespace usbdevctl
