#include "commands/stream.h"

#include <usbdev/profiles.h>

#include "commands/commands.h"
#include "commands/configuration.h"

namespace usbdevctl {

namespace {

std::string whyWithoutStream(int profile, int result) {
  const std::string name = "profile " + std::to_string(profile);
  switch (result) {
    case -2:
      return "the device of " + name + " is not attached";
    case -3:
      return "the camera of " + name + " waits behind another one, or is not supported";
    case -4:
      return "the port of " + name + " is switched off";
    default:
      return name + " is bound to no device";
  }
}

}  // namespace

ExitStatus readStream(int profile, _streaminfo &record) {
  record = {};
  const int result = vl_get_stream_info(profile, &record);
  return result == 0 ? ExitStatus::ok : nothingApplies(whyWithoutStream(profile, result));
}

void addStream(Command &program) {
  Command &stream = program.addCommand("stream", "Show or change the stream settings of a profile");
  addStreamShow(stream);
  addStreamSet(stream);
}

}  // namespace usbdevctl
