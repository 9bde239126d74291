#include "output/own_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace usbdevctl {

namespace {

/// The descriptor that a stream has from now on; negative where the program was started without it.
int ownCopyOf(int descriptor) { return fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1); }

void move(FILE *&stream, int own, int descriptor, int nothing) {
  FILE *moved = own < 0 ? nullptr : fdopen(own, "w");
  if (moved == nullptr) return;
  stream = moved;
  dup2(nothing, descriptor);
}

}  // namespace

void keepStreamsFromCommands() {
  const int own_output = ownCopyOf(STDOUT_FILENO);
  const int own_error = ownCopyOf(STDERR_FILENO);
  const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
  move(stdout, own_output, STDOUT_FILENO, nothing);
  move(stderr, own_error, STDERR_FILENO, nothing);
  std::setvbuf(stderr, nullptr, _IONBF, 0);
  close(nothing);
}

}  // namespace usbdevctl
