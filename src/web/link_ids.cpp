#include <sys/types.h>
#include <unistd.h>
#include <usbdev/web.h>

#include <cstdlib>
#include <cstring>
#include <ctime>

#include "core/lines.h"
#include "core/text.h"

int generate_ssid(char *out) {
  if (out == nullptr) return 0;
  // Seeded anew each time: two calls within a second give the same id, which callers accept.
  std::srand(static_cast<unsigned>(getpid() + std::time(nullptr)));
  char digits[16];
  usbdev::formatText(digits, "%08ld", static_cast<long>(std::rand()) % 100000000);
  usbdev::copyCut(out, digits, 8);
  return 0;
}

int generate_hash(char *out) {
  if (out == nullptr) return 0;
  char line[255];
  usbdev::CommandLines uuid("/bin/cat /proc/sys/kernel/random/uuid");
  if (!uuid.next(line)) return 0;
  char hash[sizeof line];
  strip(line, hash);
  usbdev::copyCut(out, hash, 32);
  return 0;
}

int strip(char *in, char *out) {
  if (in == nullptr || out == nullptr) return 0;
  usbdev::trim(in);  // meant for its effect on the end alone: leading blanks stay
  const int length = static_cast<int>(std::strlen(in));
  for (const char *c = in; *c != '\0'; ++c) {
    if (*c != '-') *out++ = *c;
  }
  *out = '\0';
  return length;
}
