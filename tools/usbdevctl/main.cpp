#include "commands/commands.h"
#include "program.h"

int main(int argc, char **argv) {
  usbdevctl::Program program;
#define USBDEVCTL_COMMAND(name) usbdevctl::name(program);
#include "commands/commands.def"
#undef USBDEVCTL_COMMAND
  return program.run(argc, argv);
}
