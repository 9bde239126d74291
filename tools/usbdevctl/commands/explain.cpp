#include <memory>

#include "commands/cameras.h"
#include "commands/collisions.h"
#include "commands/commands.h"
#include "commands/configuration.h"
#include "commands/shared_arguments.h"
#include "commands/support_facts.h"
#include "output/output.h"
#include "parts/explanation.h"

namespace usbdevctl {

namespace {

struct Options {
  CameraArgument camera{CameraName::By::channel};
  bool json = false;
};

ExitStatus explain(const Options &options) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  Camera camera;
  const ExitStatus found = findCamera(options.camera.name(), rows, camera);
  if (found != ExitStatus::ok) return found;
  const Reasons reasons =
      explain(rows, camera.channel, readCollisions(rows, camera.channel), whyUnsupported(camera.row));
  print(options.json ? explanationJson(camera, reasons).text() : explanationText(camera, reasons));
  return ExitStatus::ok;
}

}  // namespace

void addExplain(Command &program) {
  auto options = std::make_shared<Options>();
  Command &command = program.addCommand("explain", "Say why a camera does not stream, and what would change it",
                                        [options] { return explain(*options); });
  addCamera(command, options->camera);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
