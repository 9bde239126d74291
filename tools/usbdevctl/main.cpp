#include "command_line/commands.h"
#include "command_line/program.h"
#include "output/own_streams.h"

int main(int argc, char **argv) {
  usbdevctl::keepStreamsFromCommands();
  usbdevctl::Command program("usbdevctl", "Drives the USB camera library as the application would.");
#define USBDEVCTL_COMMAND(name) usbdevctl::name(program);
#define USBDEVCTL_GROUP(heading) program.beginGroup(heading);
#include "command_line/commands.def"
#undef USBDEVCTL_GROUP
#undef USBDEVCTL_COMMAND
  return static_cast<int>(usbdevctl::runProgram(program, argc, argv));
}
