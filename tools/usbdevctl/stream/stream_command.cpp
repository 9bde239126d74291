#include "stream/stream_command.h"

#include <usbdev/profiles.h>

#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "explain/collision.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus explainLack(int profile) {
  Camera camera;
  const ExitStatus found = findCamera({CameraName::By::profile, profile, ""}, camera);
  if (found != ExitStatus::ok) return found;
  complain(cameraText(camera) + ": " + streamLackText(camera.row));
  return ExitStatus::nothing;
}

}  // namespace

ExitStatus readStream(int profile, _streaminfo &record) {
  record = {};
  return vl_get_stream_info(profile, &record) == 0 ? ExitStatus::ok : explainLack(profile);
}

void addStream(Command &program) {
  Command &stream = program.addCommand("stream", "Show or change the stream settings of a profile");
  addStreamShow(stream);
  addStreamSet(stream);
}

}  // namespace usbdevctl
