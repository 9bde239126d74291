// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/judgement.h"

#include "camera/camera_lookup.h"
#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "command_line/shared_arguments.h"
#include "explain/collision_query.h"
#include "explain/support_query.h"
#include "output/output.h"

namespace usbdevctl {

void addAssignmentOptions(Command &command, AssignmentOptions &options) {
  addCamera(command, options.camera);
  addProfile(command, options.profile);
  addJsonFlag(command, options.json);
}

ExitStatus judge(const AssignmentOptions &options, Judgement &judgement) {
  if (!readChannels(judgement.rows)) return configurationUnreadable();
  const ExitStatus found = findCamera(options.camera.name(), judgement.rows, judgement.camera);
  if (found != ExitStatus::ok) return found;
  const int channel = judgement.camera.channel;
  ChannelRow &row = judgement.rows[static_cast<std::size_t>(channel)];
  if (whyUnsupported(row)) row.supported = false;
  judgement.assignment =
      judgeAssignment(judgement.rows, channel, options.profile, readCollisions(judgement.rows, channel));
  return ExitStatus::ok;
}

void explainRefusal(const Judgement &judgement) {
  complain(refusalText(judgement.assignment, judgement.rows));
  complain(adviceText(judgement.assignment, judgement.rows));
}

}  // namespace usbdevctl
