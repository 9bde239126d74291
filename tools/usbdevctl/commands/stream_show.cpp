#include <memory>

#include "commands/shared_arguments.h"
#include "commands/stream.h"
#include "output/output.h"
#include "parts/stream_settings.h"

namespace usbdevctl {

namespace {

struct Options {
  int profile = 0;
  bool json = false;
};

ExitStatus show(const Options &options) {
  _streaminfo record;
  const ExitStatus status = readStream(options.profile, record);
  if (status == ExitStatus::ok) print(recordOutput(streamFields(record), options.json));
  return status;
}

}  // namespace

void addStreamShow(Command &stream) {
  auto options = std::make_shared<Options>();
  Command &command =
      stream.addCommand("show", "Show a profile's stream settings", [options] { return show(*options); });
  addProfile(command, options->profile);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
