// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/profiles.h>

#include <memory>

#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "command_line/commands.h"
#include "output/output.h"
#include "profile/judgement.h"
#include "stream/channel_links.h"
#include "stream/stream_notice.h"

namespace usbdevctl {

namespace {

Json channelNumbers(const Cameras &cameras) {
  Json numbers = Json::array();
  for (const Camera &camera : cameras) numbers.append(camera.channel);
  return numbers;
}

std::string profileName(int profile) { return "profile " + std::to_string(profile); }

ExitStatus reportBound(const AssignmentOptions &options, const Camera &camera) {
  Fields members;
  members.add(forPrograms("changed", false)).add(forPrograms("now_waiting", Json::array()));
  print(changeOutput(profileName(options.profile) + " assigned already", members, camera, options.json));
  return ExitStatus::ok;
}

ExitStatus report(const AssignmentOptions &options, const Judgement &before) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  const int channel = before.camera.channel;
  const Camera camera = {channel, rows[static_cast<std::size_t>(channel)]};
  const Cameras waiting = waitingSince(before.rows, rows, channel);
  Fields members;
  members.add(forPrograms("changed", true)).add(forPrograms("now_waiting", channelNumbers(waiting)));
  print(changeOutput(profileName(options.profile) + " assigned", members, camera, options.json));
  for (const Camera &other : waiting) {
    if (!options.json) print("waits for it now: " + cameraText(other) + "\n");
  }
  if (const std::string lack = streamLackText(camera.row); !lack.empty()) complain("it does not stream: " + lack);
  return linksFollowed(channel, ChannelLinks());
}

ExitStatus assign(const AssignmentOptions &options) {
  Judgement judgement;
  const ExitStatus judged = judge(options, judgement);
  if (judged != ExitStatus::ok) return judged;
  const Assignment &assignment = judgement.assignment;
  if (assignment.verdict == Verdict::bound) {
    notifyOfStream(options.profile);
    return reportBound(options, judgement.camera);
  }
  if (!isPossible(assignment) || (!isHarmless(assignment) && !options.anyway)) {
    explainRefusal(judgement);
    return ExitStatus::failure;
  }
  std::string port = judgement.camera.row.slot;
  if (vl_set_usbchn_profile(port.data(), options.profile) != 0) {
    return refused(profileName(options.profile) + " could not be assigned to " + cameraText(judgement.camera));
  }
  notifyOfStream(options.profile);
  return report(options, judgement);
}

}  // namespace

void addAssign(Command &program) {
  auto options = std::make_shared<AssignmentOptions>();
  Command &command =
      program.addCommand("assign", "Assign a profile to a camera", [options] { return assign(*options); });
  addAssignmentOptions(command, *options);
  command.add("--anyway", &options->anyway, "Also where the camera would not stream, or stop another one");
}

}  // namespace usbdevctl
