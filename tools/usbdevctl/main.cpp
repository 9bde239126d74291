#include "commands/commands.h"
#include "program.h"

int main(int argc, char **argv) {
  usbdevctl::Command program("usbdevctl", "Drives the USB camera library as the application would.");
#define USBDEVCTL_COMMAND(name) usbdevctl::name(program);
#include "commands/commands.def"
#undef USBDEVCTL_COMMAND
  return static_cast<int>(usbdevctl::runProgram(program, argc, argv));
}
