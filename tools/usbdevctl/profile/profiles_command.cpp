// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <memory>

#include "channel/configuration.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/output.h"
#include "profile/profile_query.h"
#include "profile/profiles.h"

namespace usbdevctl {

namespace {

ExitStatus profiles(bool json) {
  Profiles profiles;
  if (!readProfiles(profiles)) return configurationUnreadable();
  print(listOutput("profiles", profileFields(profiles), json));
  const bool unread = std::any_of(profiles.begin(), profiles.end(),
                                  [](const Profile &profile) { return profile.link.state == LinkState::unreadable; });
  if (!unread) return ExitStatus::ok;
  complain("a live link cannot be read");
  return ExitStatus::failure;
}

}  // namespace

void addProfiles(Command &program) {
  auto json = std::make_shared<bool>(false);
  Command &command = program.addCommand("profiles", "Show the four profiles, the camera of each and its live link",
                                        [json] { return profiles(*json); });
  addJsonFlag(command, *json);
}

}  // namespace usbdevctl
