#include "commands/commands.h"
#include "output/own_streams.h"
#include "program.h"

int main(int argc, char **argv) {
  usbdevctl::keepStreamsFromCommands();
  usbdevctl::Command program("usbdevctl", "Drives the USB camera library as the application would.");
#define USBDEVCTL_COMMAND(name) usbdevctl::name(program);
#define USBDEVCTL_GROUP(heading) program.beginGroup(heading);
#include "commands/commands.def"
#undef USBDEVCTL_GROUP
#undef USBDEVCTL_COMMAND
  return static_cast<int>(usbdevctl::runProgram(program, argc, argv));
}
