#include <usbdev/profiles.h>

#include <memory>

#include "commands/commands.h"
#include "commands/configuration.h"
#include "commands/shared_arguments.h"
#include "output/output.h"
#include "output/printable.h"
#include "parts/profiles.h"

namespace usbdevctl {

namespace {

ExitStatus profiles(bool json) {
  std::array<_usbdev_entry, USBDEV_PROFILES> entries = {};
  if (vl_get_profile_list(entries.data()) != 0) return configurationUnreadable();
  Profiles profiles;
  for (std::size_t i = 0; i < profiles.size(); ++i) {
    profiles[i] = {entries[i], followLink(kApplicationFolder, fieldText(entries[i].hlspath))};
  }
  print(listOutput("profiles", profileFields(profiles), json));
  return ExitStatus::ok;
}

}  // namespace

void addProfiles(Command &program) {
  auto json = std::make_shared<bool>(false);
  Command &command = program.addCommand("profiles", "Show the four profiles, the camera of each and its live-view link",
                                        [json] { return profiles(*json); });
  addJsonFlag(command, *json);
}

}  // namespace usbdevctl
