// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <memory>

#include "command_line/commands.h"
#include "output/output.h"
#include "profile/judgement.h"

namespace usbdevctl {

namespace {

std::string asText(const Judgement &judgement, bool allowed) {
  if (!allowed) {
    return "refused: " + refusalText(judgement.assignment, judgement.rows) + "\n" +
           adviceText(judgement.assignment, judgement.rows) + "\n";
  }
  const bool bound = judgement.assignment.verdict == Verdict::bound;
  return std::string(bound ? "assigned already: " : "allowed: ") + cameraText(judgement.camera) + "\n";
}

std::string asJson(const Judgement &judgement, bool allowed) {
  Fields fields;
  fields.add(forPrograms("allowed", allowed)).add(forPrograms("unassigned", !judgement.camera.row.profile));
  addCameraMembers(fields, judgement.camera);
  return assignmentMembers(judgement.assignment, judgement.rows).addTo(fields.addTo(Json::document())).text();
}

ExitStatus check(const AssignmentOptions &options) {
  Judgement judgement;
  const ExitStatus judged = judge(options, judgement);
  if (judged != ExitStatus::ok) return judged;
  const bool allowed = isHarmless(judgement.assignment);
  print(options.json ? asJson(judgement, allowed) : asText(judgement, allowed));
  return allowed ? ExitStatus::ok : ExitStatus::nothing;
}

}  // namespace

void addCheck(Command &program) {
  auto options = std::make_shared<AssignmentOptions>();
  Command &command = program.addCommand("check", "Check whether a camera can get a profile, and if not, show why",
                                        [options] { return check(*options); });
  addAssignmentOptions(command, *options);
}

}  // namespace usbdevctl
