// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Loaded before the libraries of a whole program (LD_PRELOAD), it makes a call of the program fail, and then nothing
// more, those of its name, or everything. FAILING is "NAME NUMBER ERROR nothing|alike|everything FILE": the name may be
// "any", and the file has the size of a Progress, which it contains afterwards. The programs that it runs are left
// alone.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "failing.h"

namespace {

struct Wanted {
  char name[32];
  int number;
  int error;
  char then[16];
  char file[256];
};

bool read(Wanted &wanted) {
  const char *text = std::getenv("FAILING");
  return text != nullptr && std::sscanf(text, "%31s %d %d %15s %255s", wanted.name, &wanted.number, &wanted.error,
                                        wanted.then, wanted.file) == 5;
}

failing::Then thenOf(const Wanted &wanted) {
  if (std::strcmp(wanted.then, "nothing") == 0) return failing::Then::nothing;
  return std::strcmp(wanted.then, "alike") == 0 ? failing::Then::alike : failing::Then::everything;
}

void countIn(const char *file) {
  const int opened = open(file, O_RDWR | O_CLOEXEC);
  void *mapped = mmap(nullptr, sizeof(failing::Progress), PROT_READ | PROT_WRITE, MAP_SHARED, opened, 0);
  if (mapped == MAP_FAILED) std::abort();
  close(opened);
  failing::countIn(*static_cast<failing::Progress *>(mapped));
}

[[gnu::constructor]] void begin() {
  static Wanted wanted;  // the plan keeps the name
  if (!read(wanted)) return;
  countIn(wanted.file);
  unsetenv("LD_PRELOAD");
  unsetenv("FAILING");
  const std::string_view name = std::strcmp(wanted.name, "any") == 0 ? failing::kAny : wanted.name;
  failing::fail(name, wanted.number, wanted.error, thenOf(wanted));
}

}  // namespace
