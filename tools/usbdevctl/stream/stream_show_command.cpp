#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "output/output.h"
#include "stream/stream_command.h"
#include "stream/stream_settings.h"

namespace usbdevctl {

namespace {

struct Options {
  CameraArgument camera{CameraName::By::profile};
  bool json = false;
};

ExitStatus show(const Options &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  _streaminfo record;
  const ExitStatus status = readStream(profile, record);
  if (status == ExitStatus::ok) print(recordOutput(streamFields(record), options.json));
  return status;
}

}  // namespace

void addStreamShow(Command &stream) {
  auto options = std::make_shared<Options>();
  Command &command =
      stream.addCommand("show", "Show a profile's stream settings", [options] { return show(*options); });
  addCamera(command, options->camera);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
