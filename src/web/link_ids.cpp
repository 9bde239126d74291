// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/link_ids.h"

#include <sys/types.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <ctime>

#include "core/lines.h"

namespace usbdev {

void makeShareId(TextBuffer out) {
  // Intended: Two share ids made in one second are the same.
  std::srand(static_cast<unsigned>(getpid() + std::time(nullptr)));
  formatText(out, "%08ld", static_cast<long>(std::rand()) % 100000000);
}

void makeHash(TextBuffer out) {
  char line[255];
  CommandLines uuid("/bin/cat /proc/sys/kernel/random/uuid");
  if (!uuid.next(line)) return;
  char hash[sizeof line];
  strip(line, hash);
  hash[kHashSize - 1] = '\0';
  copyText(out, hash);
}

std::size_t strip(char *text, char *out) {
  // Intended: Leading blanks stay in an identifier.
  trim(text);
  const std::size_t length = std::strlen(text);
  for (const char *c = text; *c != '\0'; ++c) {
    if (*c != '-') *out++ = *c;
  }
  *out = '\0';
  return length;
}

}  // namespace usbdev
